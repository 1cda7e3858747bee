import { linkedItems, pathOf, textOf } from "./model.js";
import { say } from "./texts.js";

const nameOfKind = (line) => say(`${line.kind}One`);

function asText(lines) {
  let path = "";
  const rows = [];
  for (const line of lines) {
    const own = pathOf(line).join(" / ");
    if (own !== path) rows.push((rows.length ? "\n" : "") + own);
    path = own;
    rows.push(`[${nameOfKind(line)}] ${textOf(line).replace(/\n/g, "\n    ")}`);
  }
  return rows.join("\n") + "\n";
}

const quote = (value) => (/[",\r\n]/.test(value) ? `"${value.replaceAll('"', '""')}"` : value);

function asCsv(lines) {
  const rows = [["kind", "path", "text", "items"].map((key) => say(key))];
  for (const line of lines) {
    const ids = linkedItems(line).map((item) => item.id);
    rows.push([nameOfKind(line), pathOf(line).join(" / "), textOf(line), ids.join(" ")]);
  }
  return "\ufeff" + rows.map((row) => row.map(quote).join(",") + "\r\n").join("");
}

function asJson(lines, run) {
  const own = lines.map((line) => ({
    id: line.id,
    kind: line.kind,
    path: pathOf(line),
    text: textOf(line),
    items: linkedItems(line),
  }));
  return JSON.stringify({ ...run, lines: own }, null, 1) + "\n";
}

/** The forms in which lines can be taken along: file name ending, media type, and how they are written. */
export const forms = {
  txt: { type: "text/plain;charset=utf-8", write: asText },
  csv: { type: "text/csv;charset=utf-8", write: asCsv },
  json: { type: "application/json", write: asJson },
};
