// Screenshots for people to look at: node shots.mjs FOLDER [WORD...]
//
// Each is named by page, state, width, look and language, "staged_view_390_dark_en.png"; words choose those whose names
// have all of them. "print" is what comes out on paper of that width.

import path from "node:path";
import { browserName, launch, open, search, settle } from "./browser.mjs";
import { linkTo, makeLines, makeRun, point, runs } from "./fixtures.mjs";
import { fixture, pageOf, samplePages } from "./pages.mjs";

const [folder = "shots", ...words] = process.argv.slice(2);

const heights = { 1280: 800, 768: 1024, 390: 844 };
const languages = { ru: "ru-RU", en: "en-US" };

const forcedColors = "active";
const looks = {
  light: { colorScheme: "light" },
  dark: { colorScheme: "dark" },
  "forced-light": { colorScheme: "light", forcedColors },
  "forced-dark": { colorScheme: "dark", forcedColors },
  print: {},
};

const opens = (menu) => (page) => page.locator("#menus > button").nth(menu).click();
const chooses = (menu, role, entry) => async (page) => {
  await opens(menu)(page);
  await page.locator(`[role=${role}]`).nth(entry).click();
};

/** What a page is brought to. */
const states = {
  opened: () => {},
  found: async (page) => {
    await search(page, "1");
    await page.locator("#query").blur();
    await page.keyboard.press("e");
  },
  nothing: (page) => search(page, "zzz"),
  wrong: (page) => search(page, "/("),
  errors: (page) => page.keyboard.press("x"),
  worst: (page) => page.keyboard.press("s"),
  alike: chooses(2, "menuitemcheckbox", 2),
  branches: opens(0),
  export: opens(1),
  view: opens(2),
  help: chooses(2, "menuitem", 1),
  row: async (page) => {
    await page.keyboard.press("e");
    await page.keyboard.press("Shift+F10");
  },
};
const onPaper = ["opened", "found", "nothing", "worst", "alike"];

/** Names with and without blanks, wider than any window. */
const longName = (name) => (name.length % 2 ? "М".repeat(200) : "Пункт триангуляции ".repeat(11)) + name;
const longLines = makeLines(30, { items: 12 }).map(({ kind, text }) => ({
  kind,
  text: text.replace(/(?<=">)[^<]+/g, longName),
}));

const manyStages = Array.from({ length: 200 }, (_, at) => ({
  name: `Приближение ${at + 1}`,
  lines: makeLines(3, { seed: at + 1 }),
}));

/** What only looks need: what is empty, alone, long or many. */
const shapes = {
  "stages-200": { ...makeRun("staged", 0), stages: manyStages },
  "long-names": makeRun("grouped", 30, longLines),
  "one-line": makeRun("flat", 1),
  "only-other": {
    item: 5,
    hasReports: true,
    runs: [{ type: "Compile", lines: [{ kind: "service", text: `Обработан пункт ${linkTo(point(5))}` }] }],
  },
};

const fixtures = [
  ...Object.keys(runs).map((name) => ({ name, address: fixture(name) })),
  ...Object.entries(shapes).map(([name, run]) => ({ name, address: pageOf(name, run) })),
];

/** What is asked for. */
function* shots() {
  for (const [language, locale] of Object.entries(languages))
    for (const { name, address } of [...fixtures, ...samplePages(language)])
      for (const look of Object.keys(looks))
        for (const width of Object.keys(heights))
          for (const state of look === "print" ? onPaper : Object.keys(states)) {
            const title = [name.replaceAll(" ", "-"), state, width, look, language];
            if (words.every((word) => title.includes(word)))
              yield {
                file: path.join(folder, title.join("_")),
                address,
                look,
                width: Number(width),
                state,
                locale,
              };
          }
}

// The driver of Firefox takes inches for centimetres.
const pixel = browserName === "firefox" ? 2.54 : 1;
const onPaperOf = (size) => `${Math.round(size * pixel)}px`;

async function take(browser, { file, address, look, width, state, locale }) {
  const viewport = { width, height: heights[width] };
  const page = await open(browser, address, { locale, viewport, ...looks[look] });
  await states[state](page);
  await settle(page);
  if (look === "print")
    await page.pdf({ path: `${file}.pdf`, width: onPaperOf(width), height: onPaperOf(heights[width]) });
  else await page.screenshot({ path: `${file}.png` });
  await page.context().close();
}

const browser = await launch();
for (const shot of shots()) await take(browser, shot);
await browser.close();
