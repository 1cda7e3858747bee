// The runs of the test pages as a journal for orvel-replay.

import { itemTypes, project, protocolTypes } from "./fixtures.mjs";

const reports = { 738001: "Ведомость превышений", 738002: "Каталог высот" };
const generalType = 1710060288;
const statistics = 2;
const writers = {
  error: "writeError",
  warning: "writeWarning",
  message: "writeMessage",
  service: "write",
};

const record = (value, internal, singular, plural) => ({ do: "enum", value, internal, singular, plural });

const linesOf = ({ lines = [], stages = [], runs = [] }) => [
  ...lines,
  ...[...stages, ...runs].flatMap(linesOf),
];

/** An item for each one that the lines link to, as its link says. */
function itemsOf(runs) {
  const link = /<a href="survey:[^"]*type=(\w+)&id=(\d+)&[^"]*">([^<]*)<\/a>/g;
  const items = new Map();
  for (const { text } of runs.flatMap(linesOf))
    for (const [, type, id, name] of text.matchAll(link))
      items.set(id, { do: "item", id, type: itemTypes[type].value, name });
  return [...items.values()];
}

const written = (lines) => lines.map(({ kind, text }) => ({ do: writers[kind], text }));

function* commandsOf(run) {
  const type = protocolTypes[run.type];
  yield { do: "begin", type };
  yield* written((run.service ?? []).map((text) => ({ kind: "service", text })));
  for (const text of run.statistics ?? []) yield { do: "add", type, kind: statistics, text };
  yield* written(run.lines ?? []);
  for (const { name, lines } of run.stages ?? []) {
    yield { do: "startStage", text: name };
    yield* written(lines);
    yield { do: "finishStage" };
  }
  yield { do: "end" };
}

function* paged(name, run) {
  const to = `${name}.html`;
  if (run.runs) {
    for (const each of run.runs) yield* commandsOf(each);
    yield { do: "itemPage", id: String(run.item), to };
  } else {
    yield* commandsOf(run);
    yield { do: "page", type: protocolTypes[run.type], to };
  }
}

/** The journal that makes the pages of `runs` (name to run), with or without report generator. */
export function journalOf(runs, hasReports) {
  const { Compile, Adjust } = protocolTypes;
  const commands = [
    record(generalType, "Undefined", "", ""),
    ...Object.entries(itemTypes).map(([name, type]) => record(type.value, name, type.singular, type.plural)),
    ...Object.entries(reports).map(([id, name]) => record(Number(id), `Report${id}`, name, "")),
    { do: "project", name: project, reportGenerator: hasReports },
    ...[Compile, Adjust].map((type) => ({
      do: "reportTypes",
      type,
      reports: Object.keys(reports).map(Number),
    })),
    ...itemsOf(Object.values(runs)),
  ];
  const played = Object.entries(runs).flatMap(([name, run]) => [...paged(name, run)]);
  return [...commands, ...played].map((command) => JSON.stringify(command) + "\n").join("");
}
