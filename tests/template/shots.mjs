// Screenshots of every fixture, for people to look at: node shots.mjs FOLDER [PAGE...]

import path from "node:path";
import { choose, launch, open, search, settle } from "./browser.mjs";
import { runs } from "./fixtures.mjs";
import { fixture, samplePages } from "./pages.mjs";

const [folder = "shots", ...names] = process.argv.slice(2);
const views = [
  { name: "light-ru", colorScheme: "light", locale: "ru-RU" },
  { name: "light-en", colorScheme: "light", locale: "en-US" },
  { name: "dark-ru", colorScheme: "dark", locale: "ru-RU" },
  { name: "dark-en", colorScheme: "dark", locale: "en-US" },
  { name: "narrow-ru", colorScheme: "light", locale: "ru-RU", viewport: { width: 390, height: 844 } },
  { name: "forced-en", colorScheme: "dark", forcedColors: "active", locale: "en-US" },
];

const pages = [...Object.keys(runs).map((name) => ({ name, address: fixture(name) })), ...samplePages()];
const chosen = pages.filter(({ name }) => !names.length || names.includes(name));

const browser = await launch();
for (const { name: pageName, address } of chosen) {
  const fileOf = (view) => path.join(folder, `${pageName.replaceAll(" ", "-")}-${view}`);
  for (const { name, ...view } of views) {
    const page = await open(browser, address, view);
    await settle(page);
    await page.screenshot({ path: fileOf(`${name}.png`) });
    await page.context().close();
  }
  const page = await open(browser, address);
  await choose(page, "Ветви", "Развернуть всё");
  await page.locator("[data-kind=message]").click();
  await search(page, "пункта -невязка");
  await page.locator("#alike").click();
  await settle(page);
  await page.screenshot({ path: fileOf("filtered.png") });
  await page.pdf({ path: fileOf("printed.pdf") });
  await page.context().close();
}
await browser.close();
