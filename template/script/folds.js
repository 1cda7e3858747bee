// Which branches are open, kept for a reload of the same page.

const keyOf = () => `orvel-folds ${location.pathname}`;
const isReload = () => /^(?:reload|back_forward)$/.test(performance.getEntriesByType("navigation")[0]?.type);
const foldable = ({ branches }) => branches.filter((node) => node.parent && !node.isLine);

/** Keeps the branches' states as the lengths of runs of equal ones, the first of open ones. */
export function keepFolds(model) {
  const runs = [0];
  let wasOpen = true;
  for (const { isOpen } of foldable(model)) {
    if (isOpen !== wasOpen) runs.push(0);
    ++runs[runs.length - 1];
    wasOpen = isOpen;
  }
  try {
    sessionStorage.setItem(keyOf(), JSON.stringify({ rows: model.items.length, runs }));
  } catch {
    // Without storage a page opens as it did first.
  }
}

/** After a reload: has every branch opened or folded as it was kept; false when nothing was kept for these rows. */
export function restoreFolds(model, setOpen) {
  let kept = null;
  try {
    if (isReload()) kept = JSON.parse(sessionStorage.getItem(keyOf()));
  } catch {
    // As above.
  }
  if (kept?.rows !== model.items.length) return false;
  const nodes = foldable(model);
  let at = 0;
  kept.runs.forEach((length, run) => {
    for (const node of nodes.slice(at, at + length)) setOpen(node, run % 2 === 0);
    at += length;
  });
  return true;
}
