import { makeRange, textParts } from "./dom.js";

/** The places in a line's texts that an expression marks. */
function* rangesIn(caption, marks) {
  const parts = [];
  let text = "";
  for (const part of textParts(caption)) {
    if (part) parts.push({ part, start: text.length });
    text += part ? part.data : "\n";
  }
  const placeOf = (offset, isEnd) => {
    const own = parts.findLast(({ start }) => (isEnd ? start < offset : start <= offset));
    return own && [own.part, Math.min(offset - own.start, own.part.length)];
  };
  for (const mark of marks)
    for (const hit of text.matchAll(mark)) {
      const from = hit[0] && placeOf(hit.index, false);
      const to = from && placeOf(hit.index + hit[0].length, true);
      if (!to) continue;
      const range = makeRange();
      range.setStart(...from);
      range.setEnd(...to);
      yield range;
    }
}

/** Highlights what the search found in the given lines. The tree's mark-up stays as it is. */
export function highlight(lines, marks) {
  if (!window.CSS?.highlights) return;
  CSS.highlights.delete("found");
  if (!marks.length) return;
  const found = new Highlight();
  for (const line of lines) for (const range of rangesIn(line.caption, marks)) found.add(range);
  CSS.highlights.set("found", found);
}
