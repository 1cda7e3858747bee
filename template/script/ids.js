import { hash } from "./hash.js";
import { nameOf, textOf } from "./item.js";

/**
 * Gives every item an id made of its text, kind and branches, so that the same lines written again have the
 * same ids. The n-th item of one making gets a number behind.
 */
function* giveIds(items) {
  const seen = new Map();
  for (const item of items) {
    const own = item.isLine ? textOf(item) : nameOf(item);
    const key = "L" + hash(`${item.parent.id}\n${item.kind}\n${own}`);
    const count = (seen.get(key) ?? 0) + 1;
    seen.set(key, count);
    item.id = count === 1 ? key : `${key}-${count}`;
    if (item.built) item.built.id = item.id;
    yield;
  }
}

/** The making of the rows' ids, which takes a while on a long page: `steps` can be done bit by bit. */
export class Ids {
  areMade = false;

  constructor(items) {
    this.steps = giveIds(items);
  }

  /** Makes at once the ids that are not made yet. */
  finish() {
    while (!this.areMade) this.areMade = this.steps.next().done;
  }
}
