// What holds on every page: the fixtures here, and the applications' pages of the folder PAGES_DIR.

import assert from "node:assert/strict";
import fs from "node:fs";
import { createRequire } from "node:module";
import { after, before, describe, test } from "node:test";
import { fixture, foreignPages, launch, open, settle } from "./browser.mjs";
import { pages } from "./fixtures.mjs";

const axe = fs.readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

const addresses = { ...Object.fromEntries(Object.keys(pages).map((name) => [name, () => fixture(name)])) };
for (const [name, address] of Object.entries(foreignPages())) addresses[name] = () => address;

/** Counts lines by kind the plain way. */
const bruteForce = () => {
  const counts = { error: 0, warning: 0, message: 0, total: 0 };
  for (const content of document.querySelectorAll("li.ExpandLeaf > .Content")) {
    ++counts.total;
    for (const kind of ["error", "warning", "message"]) if (content.classList.contains(kind)) ++counts[kind];
  }
  return counts;
};

const shownCounts = () => {
  const digits = (text) => Number(text.replace(/\D/g, ""));
  const counts = {};
  for (const kind of ["error", "warning", "message"])
    counts[kind] = digits(document.querySelector(`#kinds [data-kind=${kind}] b`).textContent);
  [counts.shown, counts.total] = document
    .querySelector("#shown")
    .textContent.split(/ из | of /)
    .map(digits);
  return counts;
};

for (const [name, address] of Object.entries(addresses))
  describe(`page ${name}`, () => {
    let browser;
    before(async () => (browser = await launch()));
    after(() => browser.close());

    test("says nothing on the console and asks nothing of the network", async () => {
      const page = await open(browser, address());
      await settle(page);
      // The browser itself reports what the policy has kept from running.
      const complaints = page.complaints.filter((text) => !/Content Security Policy/.test(text));
      assert.deepEqual(complaints, []);
      if (name !== "hostile") assert.deepEqual(page.complaints, []);
      await page.context().close();
    });

    test("has the counts of a plain count", async () => {
      const page = await open(browser, address());
      const counted = await page.evaluate(bruteForce);
      const shown = await page.evaluate(shownCounts);
      assert.deepEqual(shown, { ...counted, shown: counted.total });
      await page.context().close();
    });

    for (const [scheme, locale] of [
      ["light", "ru-RU"],
      ["dark", "en-US"],
    ])
      test(`has no accessibility violation (${scheme}, ${locale})`, async () => {
        const page = await open(browser, address(), { colorScheme: scheme, locale });
        await page.evaluate(axe);
        // Links that a line has left unclosed have no name, whatever the page does.
        const rules = { "link-name": { enabled: name !== "hostile" } };
        const { violations } = await page.evaluate(
          (chosen) => window.axe.run(document, { rules: chosen }),
          rules,
        );
        const found = violations.map(
          ({ id, nodes }) => `${id}: ${nodes.map((node) => node.html).join("\n")}`,
        );
        assert.deepEqual(found, []);
        await page.context().close();
      });
  });
