// How the page looks in narrow windows, with forced colours, on paper, and in the other language.

import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import { launch, lookPrinted, open } from "./browser.mjs";
import { linkTo, makeLines, makeRun, point } from "./fixtures.mjs";
import { fixture, pageOf, samplePages } from "./pages.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const phone = { viewport: { width: 390, height: 844 } };
const adjustment = () => samplePages().find(({ name }) => name === "blunder Adjust").address;

/** The last entry of the menu "View". */
async function openHelp(page) {
  await page.locator("#menus > button").last().click();
  await page.locator("[role=menuitem]").last().click();
}

describe("the help", () => {
  const windows = [
    [1280, 800],
    [390, 844],
    [320, 400],
  ];
  for (const [width, height] of windows)
    for (const locale of ["ru-RU", "en-US"])
      test(`begins at its top and is whole across, ${width} × ${height}, ${locale}`, async () => {
        const page = await open(browser, fixture("flat"), { locale, viewport: { width, height } });
        await openHelp(page);
        const seen = await page.locator("dialog").evaluate((dialog) => {
          const box = dialog.getBoundingClientRect();
          const parts = [...dialog.querySelectorAll("h2, dt, dd, p, button")];
          const cut = parts.filter((part) => {
            const { left, right } = part.getBoundingClientRect();
            return left < box.left || right > box.right || part.scrollWidth > part.clientWidth + 1;
          });
          return {
            scrolled: dialog.scrollTop,
            outside: box.left < 0 || box.right > innerWidth || box.top < 0 || box.bottom > innerHeight,
            cut: cut.map((part) => part.textContent),
          };
        });
        assert.deepEqual(seen, { scrolled: 0, outside: false, cut: [] });
        await page.keyboard.press("Escape");
        await page.locator("dialog").waitFor({ state: "detached" });
        await page.context().close();
      });

  test("says what to type in the page's language, and it finds that", async () => {
    for (const [locale, expected] of [
      ["ru-RU", "вид:ошибка этап:2 объект:12"],
      ["en-US", "kind:error stage:2 item:12"],
    ]) {
      const page = await open(browser, fixture("staged"), { locale });
      await openHelp(page);
      const terms = await page.locator("dt", { hasText: ":" }).textContent();
      assert.equal(terms.replace(/\s+/g, " "), expected);
      await page.keyboard.press("Escape");
      await page.locator("#query").fill(terms.split(/\s+/)[0]);
      const [shown, errors] = await page.evaluate(() =>
        ["#shown", "[data-kind=error] b"].map((part) =>
          Number(/\d+/.exec(document.querySelector(part).textContent)),
        ),
      );
      assert.ok(errors > 0);
      assert.equal(shown, errors);
      await page.context().close();
    }
  });
});

describe("in a window 390 wide", () => {
  test("the first stage has its counts in view", async () => {
    const name = "Состав сети и предварительные высоты определяемых пунктов";
    const run = makeRun("staged", 30);
    const page = await open(
      browser,
      pageOf("long-stage", { ...run, stages: [{ ...run.stages[0], name }] }),
      phone,
    );
    const { x, width } = await page.locator("#stages button").boundingBox();
    assert.ok(x + width <= 390, `${x} + ${width}`);
    await page.context().close();
  });

  test("the histogram's letters are large enough, and its sums stand together", async () => {
    const page = await open(browser, adjustment(), phone);
    await page.locator("#chart").waitFor();
    const [size, lines] = await page.evaluate(() => {
      const text = document.querySelector("#chart text");
      const sums = document.querySelector("#chart b");
      return [
        parseFloat(getComputedStyle(text).fontSize) * text.getScreenCTM().a,
        sums.offsetHeight / parseFloat(getComputedStyle(sums).lineHeight),
      ];
    });
    assert.ok(size >= 10, `${size} px`);
    assert.equal(Math.round(lines), 1);
    await page.context().close();
  });
});

describe("the languages told to assistive software", () => {
  const langs = (page) =>
    page.evaluate(() =>
      ["html", "#title", "#facts", "#stages", "#protocol", "#chart", "#row-menu"].map(
        (part) => document.querySelector(part)?.closest("[lang]").lang,
      ),
    );

  test("of an English protocol with Russian names are English in a Russian browser", async () => {
    const { address } = samplePages("en").find(({ name }) => name === "blunder Adjust");
    const page = await open(browser, address);
    await page.locator("#chart").waitFor();
    assert.deepEqual(await langs(page), ["ru", "en", "en", "en", "en", "ru", "ru"]);
    await page.context().close();
  });

  test("of a Russian protocol in an English browser leave what the page says English", async () => {
    const page = await open(browser, adjustment(), { locale: "en-US" });
    await page.locator("#chart").waitFor();
    assert.deepEqual(await langs(page), ["en", "ru", "ru", "ru", "ru", "en", "en"]);
    await page.context().close();
  });

  test("of an item's page leave its title to the page", async () => {
    const page = await open(browser, fixture("item"), { locale: "en-US" });
    assert.deepEqual((await langs(page)).slice(0, 5), ["en", "en", "en", "ru", "ru"]);
    await page.context().close();
  });
});

describe("in every theme", () => {
  /** The text of an element, or of a sign before it, and its contrast to what is behind it. */
  const contrasts = (selectors) => {
    const channels = (color) => color.match(/[\d.]+/g).map(Number);
    const luminance = (color) => {
      const [red, green, blue] = channels(color)
        .map((value) => value / 255)
        .map((value) => (value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4));
      return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    };
    return selectors.map((selector) => {
      const [owner, part] = selector.split("::");
      let at = document.querySelector(owner);
      const { color, backgroundColor } = getComputedStyle(at, part && `::${part}`);
      let ground = backgroundColor;
      for (; (channels(ground)[3] ?? 1) === 0; at = at.parentElement)
        ground = getComputedStyle(at).backgroundColor;
      const [dark, light] = [luminance(color), luminance(ground)].sort((one, another) => one - another);
      return [selector, (light + 0.05) / (dark + 0.05)];
    });
  };
  const texts = [
    "#verdict",
    "#shown",
    "#alike",
    "#worst",
    ".toggle .word",
    ...["error", "warning", "message", "other"].flatMap((kind) => [
      `#kinds .${kind}.mark::before`,
      `#stages .${kind}.mark::before`,
    ]),
    ".ExpandLeaf > .error::before",
    ".ExpandLeaf > .warning::before",
    ".ExpandLeaf > .message::before",
    "[data-worst=error]::after",
    "[aria-expanded] > .Content::before",
    "#lines a",
  ];
  for (const look of [
    { colorScheme: "light" },
    { colorScheme: "dark" },
    { colorScheme: "light", forcedColors: "active" },
    { colorScheme: "dark", forcedColors: "active" },
  ])
    test(`texts and signs are read: ${Object.values(look).join(", ")}`, async () => {
      const page = await open(browser, fixture("item"), look);
      const weak = (await page.evaluate(contrasts, texts)).filter(([, contrast]) => !(contrast >= 4.5));
      assert.deepEqual(weak, []);
      await page.context().close();
    });
});

describe("where colours are forced", () => {
  test("what the search has found stands on the system's ground", async () => {
    const page = await open(browser, fixture("flat"), { forcedColors: "active", colorScheme: "dark" });
    await page.locator("#query").fill("пункта");
    const [found, system] = await page.evaluate(() => {
      const { backgroundColor, color } = getComputedStyle(
        document.querySelector("main"),
        "::highlight(found)",
      );
      const probe = document.body.appendChild(document.createElement("p"));
      probe.style.cssText = "background: Highlight; color: HighlightText";
      const style = getComputedStyle(probe);
      return [
        [backgroundColor, color],
        [style.backgroundColor, style.color],
      ];
    });
    assert.deepEqual(found, system);
    await page.context().close();
  });

  test("only errors, warnings and messages have a frame around their signs", async () => {
    const page = await open(browser, fixture("item"), { forcedColors: "active", colorScheme: "dark" });
    const frames = await page.evaluate(() =>
      ["error", "warning", "message", "other"].map((kind) => {
        const sign = document.querySelector(`#kinds [data-kind=${kind}] .mark`);
        return getComputedStyle(sign, "::before").borderTopColor;
      }),
    );
    const [text, canvas] = ["rgb(255, 255, 255)", "rgb(0, 0, 0)"];
    assert.deepEqual(frames, [text, text, text, canvas]);
    await page.context().close();
  });
});

test("the menu of a line with a long name is whole", async () => {
  const text = `Невязка хода через ${linkTo(point(1, "М".repeat(200)))} равна 12 мм`;
  const page = await open(browser, pageOf("long-name", makeRun("flat", 0, [{ kind: "error", text }])), phone);
  await page.keyboard.press("e");
  await page.keyboard.press("Shift+F10");
  const menu = await page.locator("[role=menu]").evaluate((list) => {
    const { left, right } = list.getBoundingClientRect();
    return [
      left >= 0,
      right <= innerWidth,
      list.scrollWidth <= list.clientWidth,
      /М{200}/.test(list.textContent),
    ];
  });
  assert.deepEqual(menu, [true, true, true, true]);
  await page.context().close();
});

describe("on narrow paper", () => {
  test("the verdict is in words, and stages are whole", async () => {
    const page = await open(browser, adjustment(), phone);
    await lookPrinted(page);
    const seen = await page.evaluate(() => {
      const verdict = document.querySelector("#verdict");
      const cut = [...document.querySelectorAll("#stages button, #stages b")].filter(
        (part) => part.getBoundingClientRect().right > innerWidth || part.scrollWidth > part.clientWidth + 1,
      );
      return {
        size: parseFloat(getComputedStyle(verdict).fontSize) > 0,
        sign: getComputedStyle(verdict, "::after").content,
        cut: cut.map((part) => part.textContent),
      };
    });
    assert.deepEqual(seen, { size: true, sign: "none", cut: [] });
    await page.context().close();
  });
});

test("a line's menu stays at its line when the histogram comes", async () => {
  const lines = [
    { kind: "error", text: `Невязка хода через ${linkTo(point(1))} равна 12 мм, допуск 10 мм` },
    ...makeLines(20).filter(({ kind }) => kind === "message"),
  ];
  const page = await open(browser, pageOf("menu-chart", makeRun("flat", 0, lines)), {
    prepare: () => {
      const held = new Promise((done) => (window.goOn = done));
      window.requestIdleCallback = (act) => held.then(() => setTimeout(act));
    },
  });
  await page.keyboard.press("e");
  await page.keyboard.press("Shift+F10");
  await page.evaluate(() => window.goOn());
  await page.locator("#chart").waitFor();
  const [button, menu] = await page.evaluate(() =>
    ["#row-menu", "[role=menu]"].map((part) => document.querySelector(part).getBoundingClientRect().toJSON()),
  );
  assert.equal(Math.round(menu.top - button.bottom), 4);
  await page.context().close();
});
