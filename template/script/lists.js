import { buildRows, isHollow, heavyListRows, makeHollowRows } from "./item.js";

const atOnce = 200;

const isPlaced = ({ built }) => Boolean(built?.isConnected);

/** Puts lines that follow each other in a branch into its list, behind what is there before them. */
function placeRows(lines) {
  const [first] = lines;
  if (isHollow(first)) buildRows(lines);
  const { children, lists } = first.parent;
  let before = first.place - 1;
  while (before >= 0 && !isPlaced(children[before])) --before;
  const made = first.built.parentNode?.childNodes ?? lines.map((line) => line.built);
  if (before < 0) lists[0].prepend(...made);
  else children[before].built.after(...made);
}

/** Puts a row into its list if it is not there yet. */
export function placeRow(row) {
  if (!isPlaced(row)) placeRows([row]);
}

/** Puts all rows that are not there yet into their lists, some at each step. */
export function* fillLists({ branches }) {
  const isFresh = (row) => row && isHollow(row) && row.plain !== null;
  for (const { children } of branches) {
    if (children.length >= heavyListRows)
      makeHollowRows(children.filter((row) => !row.built && isFresh(row)));
    let at = 0;
    while (at < children.length) {
      const from = at;
      while (at < from + atOnce && isFresh(children[at])) ++at;
      if (at > from) placeRows(children.slice(from, at));
      else placeRow(children[at++]);
      yield;
    }
  }
}
