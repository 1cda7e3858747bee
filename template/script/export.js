import { linkedItems, pathOf, textOf } from "./item.js";
import { say } from "./texts.js";

const nameOfKind = (line) => say(`${line.kind}One`);

/** Lines that show the same record become one, with the branches in which it stands. */
function recordsOf(lines) {
  const records = new Map();
  for (const line of lines) {
    if (!records.has(line.record)) records.set(line.record, { line, paths: [] });
    records.get(line.record).paths.push(pathOf(line));
  }
  return [...records.values()];
}

const join = (path) => path.join(" / ");

function asText(lines) {
  let heading = "";
  const rows = [];
  for (const { line, paths } of recordsOf(lines)) {
    const own = join(paths[0]);
    if (own !== heading) rows.push((rows.length ? "\n" : "") + own);
    heading = own;
    rows.push(`[${nameOfKind(line)}] ${textOf(line).replace(/\n/g, "\n    ")}`);
  }
  return rows.join("\n") + "\n";
}

/** A cell that a spreadsheet would take for a formula is told from one by an apostrophe. */
const guard = (value) =>
  /^(?:\s*[=+\-@\uff1d\uff0b\uff0d\uff20]|[\t\r\n])/.test(value) && !/^-?\d+$/.test(value)
    ? `'${value}`
    : value;

const quote = (value) => (/[",\r\n]/.test(value) ? `"${value.replaceAll('"', '""')}"` : value);

function asCsv(lines) {
  const rows = [["kind", "path", "text", "items"].map((key) => say(key))];
  for (const { line, paths } of recordsOf(lines)) {
    const ids = linkedItems(line).map((item) => item.id);
    rows.push([nameOfKind(line), paths.map(join).join("; "), textOf(line), ids.join(" ")]);
  }
  return "\ufeff" + rows.map((row) => row.map((cell) => quote(guard(cell))).join(",") + "\r\n").join("");
}

function asJson(lines, run) {
  const own = recordsOf(lines).map(({ line, paths }) => ({
    id: line.id,
    kind: line.kind,
    paths,
    text: textOf(line),
    items: linkedItems(line),
  }));
  return JSON.stringify({ ...run, lines: own }, null, 1) + "\n";
}

/** The forms in which lines can be exported: file name ending, media type, and how they are written. */
export const forms = {
  txt: { type: "text/plain;charset=utf-8", write: asText },
  csv: { type: "text/csv;charset=utf-8", write: asCsv },
  json: { type: "application/json", write: asJson },
};
