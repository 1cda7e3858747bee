// Pages that the built programs write: the replay those of the fixtures, the desk those of the sample networks.

import { execFileSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { runs } from "./fixtures.mjs";
import { journalOf } from "./journal.mjs";

const root = fileURLToPath(new URL("../..", import.meta.url));
const build = path.resolve(process.env.BUILD_DIR ?? path.join(root, "build/release"));

const folder = fs.mkdtempSync(path.join(os.tmpdir(), "protocol-pages-"));
process.on("exit", () => fs.rmSync(folder, { recursive: true, force: true }));

const fileOf = (name) => path.join(folder, `${name}.html`);
const addressOf = (name) => pathToFileURL(fileOf(name)).href;

function execute(program, options, language = "ru") {
  const env = { ...process.env, QT_QPA_PLATFORM: "offscreen", LANGUAGE: language };
  return execFileSync(path.join(build, "bin", program), options, { cwd: folder, env, encoding: "utf8" });
}

/** Has the pages of runs made, in one project for those with and one for those without report generator. */
function makePages(made) {
  for (const hasReports of [true, false]) {
    const own = Object.entries(made).filter(([, run]) => run.hasReports === hasReports);
    if (!own.length) continue;
    const journal = path.join(folder, `${own[0][0]}.jsonl`);
    fs.writeFileSync(journal, journalOf(Object.fromEntries(own), hasReports));
    execute("orvel-replay", [journal]);
    fs.rmSync(journal);
  }
}

/** The address of the page of a run. */
export function pageOf(name, run) {
  makePages({ [name]: run });
  return addressOf(name);
}

let areMade = false;

/** The address of a small page. */
export function fixture(name) {
  if (!areMade) makePages(runs);
  areMade = true;
  return addressOf(name);
}

const open = '<div id="lines">';

/** The generated part of a page that was made. */
export function bodyOf(name) {
  const page = fs.readFileSync(fileOf(name), "utf8");
  return page.slice(page.indexOf(open) + open.length, page.lastIndexOf("</div>"));
}

/** How many rows of lines the library wrote into a page. */
export const writtenRows = (name) => bodyOf(name).split('<li class="Node ExpandLeaf').length - 1;

/** Where another program may write a page of this name. */
export const reserveFile = (name) => ({ directory: folder, name, address: addressOf(name) });

/** Writes a whole page; answers its address. */
export function writeFile(name, text) {
  fs.writeFileSync(fileOf(name), text);
  return addressOf(name);
}

/** Writes a page with another generated part, around the template or around another one; answers its address. */
export function writePage(name, body, template) {
  fixture("blank");
  const whole = template ?? fs.readFileSync(fileOf("blank"), "utf8");
  const split = whole.lastIndexOf("</div>");
  return writeFile(name, whole.slice(0, split) + body + whole.slice(split));
}

const samples = ["two-benchmarks", "one-benchmark", "blunder"];

const madeSamples = new Map();

/**
 * The pages of the sample networks, in Russian or English, with the numbers of errors, warnings and messages that the
 * desk told: { name, address, counts }.
 */
export function samplePages(language = "ru") {
  if (!madeSamples.has(language)) madeSamples.set(language, makeSamplePages(language));
  return madeSamples.get(language);
}

function makeSamplePages(language) {
  return samples.flatMap((sample) => {
    const runOptions = ["compile", "adjust", "l1"].flatMap((run) => ["--run", run]);
    const input = path.join(root, "samples", `${sample}.gkf`);
    const into = path.join(folder, language, sample);
    const output = ["--export", path.join(folder, "heights.csv"), "--pages", into];
    const told = execute("orvel-desk", ["--headless", "--import", input, ...runOptions, ...output], language);
    return told
      .trim()
      .split("\n")
      .map((line) => {
        const [, ...found] = /: \D*(\d+), \D*(\d+), \D*(\d+); (.*)$/.exec(line);
        const file = found.pop();
        return {
          name: `${sample} ${path.basename(file, ".html")}`,
          address: pathToFileURL(file).href,
          counts: found.map(Number),
        };
      });
  });
}
