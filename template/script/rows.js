// The order in which the shown rows of open branches are seen.

export function isInOpen(item) {
  for (let node = item.parent; node.parent; node = node.parent) if (!node.isOpen) return false;
  return true;
}

export function firstRow({ trees }) {
  return trees.find((tree) => tree.rows.length)?.rows[0] ?? null;
}

export function lastRow({ trees }) {
  const tree = trees.findLast((each) => each.rows.length);
  return tree ? lastWithin(tree) : null;
}

export function nextRow(model, item) {
  if (item.isOpen && item.rows.length) return item.rows[0];
  for (let node = item; node.parent; node = node.parent) {
    const next = beside(model, node, 1);
    if (next) return next;
  }
  return null;
}

export function previousRow(model, item) {
  const before = beside(model, item, -1);
  if (before) return lastWithin(before);
  return item.parent.parent ? item.parent : null;
}

/** The shown line in open branches that is nearest to an item, by the order of the page. */
export function nearestRow(model, item) {
  let nearest = null;
  let distance = Infinity;
  const visit = ({ rows }) => {
    for (const row of rows) {
      const own = Math.abs(row.index - item.index);
      if (row.isLine && (own < distance || (own === distance && row.index > item.index)))
        [nearest, distance] = [row, own];
      if (row.isOpen && row.rows.length) visit(row);
    }
  };
  model.trees.forEach(visit);
  return nearest ?? firstRow(model);
}

function lastWithin(node) {
  let last = node;
  while (last.isOpen && last.rows.length) last = last.rows.at(-1);
  return last;
}

/** The shown row next to an item in its branch, hidden itself or not; at the top that of the next tree. */
function beside({ trees }, item, step) {
  const siblings = item.parent.children;
  for (let at = item.place + step; siblings[at]; at += step) if (siblings[at].shown) return siblings[at];
  if (item.parent.parent) return null;
  for (let at = trees.indexOf(item.parent) + step; trees[at]; at += step)
    if (trees[at].rows.length) return trees[at].rows.at(step > 0 ? 0 : -1);
  return null;
}
