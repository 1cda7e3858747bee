// The lines of a run as a report of tests, made by the generator that folder peer brings.

import { execFileSync } from "node:child_process";
import fs from "node:fs";
import { createRequire } from "node:module";
import { fileURLToPath } from "node:url";
import { reserveFile } from "./pages.mjs";

const folder = fileURLToPath(new URL("peer", import.meta.url));

/** The id of the element that shows the first line. */
export const firstLineId = "line-0";

const states = { error: "failed", warning: "pending" };

/** A line as a test: an error has failed, a warning has been left out. */
function testOf({ kind, text }, at) {
  const title = text.replace(/<[^>]*>/g, "");
  const state = states[kind] ?? "passed";
  return {
    uuid: at ? `line-${at}` : firstLineId,
    title,
    fullTitle: title,
    timedOut: false,
    duration: 1,
    state,
    speed: null,
    pass: state === "passed",
    fail: state === "failed",
    pending: state === "pending",
    skipped: false,
    context: null,
    code: "",
    err: kind === "error" ? { message: title } : {},
    isHook: false,
  };
}

function runOf(lines) {
  const tests = lines.map(testOf);
  const own = (state) => tests.filter((test) => test.state === state);
  const ids = (state) => own(state).map(({ uuid }) => uuid);
  const [passes, failures, pending] = ["passed", "failed", "pending"].map(ids);
  const now = new Date().toISOString();
  const suite = {
    uuid: "suite",
    title: "lines",
    fullFile: "",
    file: "",
    beforeHooks: [],
    afterHooks: [],
    tests,
    suites: [],
    passes,
    failures,
    pending,
    skipped: [],
    duration: tests.length,
    root: false,
    rootEmpty: false,
    _timeout: 2000,
  };
  const stats = {
    suites: 1,
    tests: tests.length,
    passes: passes.length,
    pending: pending.length,
    failures: failures.length,
    start: now,
    end: now,
    duration: tests.length,
    testsRegistered: tests.length,
    passPercent: (100 * passes.length) / tests.length,
    pendingPercent: (100 * pending.length) / tests.length,
    other: 0,
    hasOther: false,
    skipped: 0,
    hasSkipped: false,
  };
  const root = { ...suite, uuid: "root", title: "", tests: [], suites: [suite], root: true, rootEmpty: true };
  return { stats, results: [{ ...root, passes: [], failures: [], pending: [] }], meta: {} };
}

/** The address of a report of the lines; the generator is installed when it is missing. */
export function reportOf(lines) {
  if (!fs.existsSync(`${folder}/node_modules`))
    execFileSync("npm", ["ci", "--prefix", folder, "--no-audit", "--no-fund"], { stdio: "ignore" });
  const { createSync } = createRequire(`${folder}/package.json`)("mochawesome-report-generator");
  const { directory, name, address } = reserveFile("report");
  createSync(runOf(lines), { reportDir: directory, reportFilename: name, inline: true, overwrite: true });
  return address;
}
