// Which branches are open and which alike lines unfolded, kept for a reload of the page and in what a browser saves of it.

const keyOf = () => `orvel-folds ${location.pathname}`;
const isReload = () => /^(?:reload|back_forward)$/.test(performance.getEntriesByType("navigation")[0]?.type);
const isFoldable = ({ parent, isLine }) => Boolean(parent) && !isLine;

/**
 * The branches' states as the lengths of runs of equal ones, the first of open ones; of alike lines that are
 * unfolded the number of the one that stood for them.
 */
export function foldsOf(model, unfolded) {
  const runs = [0];
  let wasOpen = true;
  for (const node of model.branches) {
    if (!isFoldable(node)) continue;
    if (node.isOpen !== wasOpen) runs.push(0);
    ++runs[runs.length - 1];
    wasOpen = node.isOpen;
  }
  const alike = Array.from(unfolded, ({ number }) => number);
  return JSON.stringify({ rows: model.items.length, runs, alike });
}

export function keepFolds(model, unfolded) {
  try {
    sessionStorage.setItem(keyOf(), foldsOf(model, unfolded));
  } catch {
    // Without storage a page opens as it did first.
  }
}

/** What was kept before a reload. */
export function keptFolds() {
  try {
    return isReload() ? sessionStorage.getItem(keyOf()) : null;
  } catch {
    return null;
  }
}

/** Has every branch and all alike lines opened or folded as told; false when it is not told of these rows. */
export function restoreFolds(model, unfolded, folds, setOpen) {
  const kept = JSON.parse(folds);
  if (kept?.rows !== model.items.length) return false;
  const nodes = model.branches.filter(isFoldable);
  let at = 0;
  kept.runs.forEach((length, run) => {
    for (const node of nodes.slice(at, at + length)) setOpen(node, run % 2 === 0);
    at += length;
  });
  // A page written before this one may have kept branches only.
  for (const number of kept.alike ?? []) unfolded.add(model.items[number]);
  return true;
}
