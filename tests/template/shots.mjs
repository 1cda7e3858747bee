// Screenshots of every fixture, for people to look at: node shots.mjs FOLDER [FIXTURE...]

import path from "node:path";
import { choose, fixture, launch, open, search, settle } from "./browser.mjs";
import { pages } from "./fixtures.mjs";

const [folder = "shots", ...names] = process.argv.slice(2);
const views = [
  { name: "light-ru", colorScheme: "light", locale: "ru-RU" },
  { name: "dark-en", colorScheme: "dark", locale: "en-US" },
  { name: "narrow-ru", colorScheme: "light", locale: "ru-RU", viewport: { width: 390, height: 844 } },
  { name: "forced-en", colorScheme: "dark", forcedColors: "active", locale: "en-US" },
];

const browser = await launch();
for (const fixtureName of names.length ? names : Object.keys(pages)) {
  for (const { name, ...view } of views) {
    const page = await open(browser, fixture(fixtureName), view);
    await settle(page);
    await page.screenshot({ path: path.join(folder, `${fixtureName}-${name}.png`) });
    await page.context().close();
  }
  const page = await open(browser, fixture(fixtureName));
  await choose(page, "Ветви", "Развернуть всё");
  await page.locator("[data-kind=message]").click();
  await search(page, "пункта -невязка");
  await page.locator("#alike").click();
  await settle(page);
  await page.screenshot({ path: path.join(folder, `${fixtureName}-filtered.png`) });
  await page.pdf({ path: path.join(folder, `${fixtureName}.pdf`) });
  await page.context().close();
}
await browser.close();
