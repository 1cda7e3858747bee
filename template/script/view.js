import { boxOf, build, elementAt, focused, focusOn, setAttribute } from "./dom.js";
import { maskOf } from "./model.js";

// Beyond this many lines only the rows near the view are laid out; the lists around them are padded with what
// the other rows would take.
const longPage = 2000;
const margin = 1200;
const slack = 500;

/** Shows the rows of a model: which are laid out, where they stand, and what they tell assistive software. */
export class View {
  near = new Set();
  parts = [];
  mode = "all";
  settledAt = NaN;
  above = 0;

  constructor(model, main, bar) {
    this.model = model;
    this.main = main;
    this.bar = bar;
    this.isLong = model.lines.length > longPage;
    for (const tree of model.trees) setAttribute(tree.lists[0], "role", "tree");
    for (const node of model.branches) if (node.element) this.#syncFold(node);
    if (!this.isLong) return;
    this.#setMode("near");
    main.tabIndex = -1;
    this.width = main.clientWidth;
    this.#estimateHeights();
  }

  /** Where the view of the page begins, below the bar that stays. */
  get top() {
    return Math.max(0, boxOf(this.bar).bottom);
  }

  get height() {
    return window.innerHeight;
  }

  // Branches

  setOpen(node, isOpen) {
    if (!node.isBranch || node.isOpen === isOpen) return;
    node.isOpen = isOpen;
    node.element.classList.replace(
      ...(isOpen ? ["ExpandClosed", "ExpandOpen"] : ["ExpandOpen", "ExpandClosed"]),
    );
    this.#syncFold(node);
    this.#forgetEnds(node);
  }

  #syncFold(node) {
    if (node.isLine) return;
    for (const list of node.lists) setAttribute(list, "role", "group");
    for (const block of node.folds) setAttribute(block, "hidden", node.isOpen ? null : "until-found");
    node.dress = "";
  }

  openAround(item) {
    for (let node = item.parent; node.element; node = node.parent) this.setOpen(node, true);
  }

  isInOpen(item) {
    for (let node = item.parent; node.element; node = node.parent) if (!node.isOpen) return false;
    return true;
  }

  // Rows in the order in which they are seen

  firstRow() {
    return this.model.trees.find((tree) => tree.rows.length)?.rows[0] ?? null;
  }

  lastRow() {
    let node = this.model.trees.findLast((tree) => tree.rows.length);
    if (!node) return null;
    while (node.isOpen && node.rows.length) node = node.rows.at(-1);
    return node;
  }

  nextRow(item) {
    if (item.isOpen && item.rows.length) return item.rows[0];
    for (let node = item; node.element; node = node.parent) {
      const next = this.#beside(node, 1);
      if (next) return next;
    }
    return null;
  }

  previousRow(item) {
    let node = this.#beside(item, -1);
    if (!node) return item.parent.element ? item.parent : null;
    while (node.isOpen && node.rows.length) node = node.rows.at(-1);
    return node;
  }

  #beside(item, step) {
    const siblings = item.parent.children;
    for (let at = item.place + step; siblings[at]; at += step) if (siblings[at].shown) return siblings[at];
    if (item.parent.element) return null;
    const { trees } = this.model;
    for (let at = trees.indexOf(item.parent) + step; trees[at]; at += step)
      if (trees[at].rows.length) return trees[at].rows.at(step > 0 ? 0 : -1);
    return null;
  }

  /** The shown row in open branches that is nearest to an item, by the order of the page. */
  nearestRow(item) {
    const { items } = this.model;
    for (let step = 0; step < items.length; ++step)
      for (const candidate of [items[item.index + step], items[item.index - step]])
        if (candidate?.shown && candidate.isLine && this.isInOpen(candidate)) return candidate;
    return this.firstRow();
  }

  /** The first row that is seen below the bar. */
  topRow() {
    const across = boxOf(this.main);
    for (let y = this.top + 2; y < this.height; y += 12) {
      const item = this.rowAt((across.left + across.right) / 2, y);
      if (item?.shown) return item;
    }
    return null;
  }

  /** The row at a point of the window. */
  rowAt(x, y) {
    return this.rowOf(elementAt(x, y));
  }

  /** The row that an element belongs to. */
  rowOf(element) {
    const own = element?.closest?.("li.Node, li.IsRoot");
    return this.model.byElement.get(own) ?? null;
  }

  /** Where a row stands, to put it there again after a change. */
  placeOf(item) {
    return item && { item, top: topOf(item.element) };
  }

  isLaidOut(item) {
    return !this.isLong || this.mode !== "near" || item.isNear;
  }

  // Drawing

  /**
   * Draws what changed. `place` names a row and where its top shall stand. With `hold` the page gets room above
   * or below when it is too short to put the row there.
   */
  draw(place = null, { hold = false } = {}) {
    if (this.mode === "find") this.#leaveSpread();
    this.#setRoom(0, 0);
    for (const tree of this.model.trees) setAttribute(tree.lists[0], "hidden", tree.rows.length ? null : "");
    if (this.mode === "near") this.#drawNear(place);
    else this.#drawAll();
    if (place) this.#align(place, hold);
    this.settledAt = window.scrollY;
  }

  #drawAll() {
    for (const item of this.model.items) setAttribute(item.element, "hidden", item.shown ? null : "");
    for (const node of this.model.branches) this.#dressRows(node, 0, node.rows.length);
  }

  #align({ item, top }, hold) {
    const offBy = () => topOf(item.element) - top;
    window.scrollBy(0, offBy());
    const rest = offBy();
    if (!hold || Math.abs(rest) < 1) return;
    this.#setRoom(Math.max(0, -rest), Math.max(0, rest));
    window.scrollBy(0, offBy());
  }

  #setRoom(above, below) {
    this.above = above;
    this.main.style.borderTopWidth = `${above}px`;
    this.main.style.borderBottomWidth = `${below}px`;
  }

  /** After the user scrolled: room that is out of sight goes, and the rows near the view are laid out. */
  scrolled() {
    if (this.above && window.scrollY > this.above) {
      const { above } = this;
      this.#setRoom(0, 0);
      window.scrollBy(0, -above);
    }
    if (this.mode !== "near" || Math.abs(window.scrollY - this.settledAt) < slack) return false;
    const place = this.placeOf(this.topRow());
    this.#drawNear(place);
    if (place) this.#align(place, false);
    this.settledAt = window.scrollY;
    return true;
  }

  resized() {
    if (!this.isLong || this.main.clientWidth === this.width) return;
    this.width = this.main.clientWidth;
    const place = this.placeOf(this.topRow());
    for (const item of this.model.items) item.height = 0;
    this.#estimateHeights();
    this.draw(place);
  }

  // Rows near the view

  #drawNear(place) {
    for (let pass = 0; pass < 4; ++pass) {
      const shift = place ? this.#topOf(place.item) - place.top : 0;
      this.#layOut(this.#partsBetween(shift - margin, shift + this.height + margin));
      if (!this.#measure()) return;
      // To lay out other rows is dear, so that the rows stay as long as they fill the view.
      this.#pad();
      const now = place ? this.#topOf(place.item) - place.top : 0;
      const seen = this.#partsBetween(now, now + this.height);
      if (seen.every(({ node, first, last }) => node.rows.slice(first, last).every((row) => row.isNear)))
        return;
    }
  }

  #topOf(item) {
    let top = 0;
    for (let at = item; at.element; at = at.parent) {
      const position = at.parent.rows.indexOf(at);
      top += this.#endsOf(at.parent)[position - 1] ?? 0;
      if (at.parent.element) top += this.#ownHeight(at.parent);
      else top += topOf(at.parent.lists[0]);
    }
    return top;
  }

  /** The rows between two heights of the window: for each branch there, the first and the end of its rows. */
  #partsBetween(top, bottom) {
    const parts = [];
    const add = (node, start) => {
      const ends = this.#endsOf(node);
      const first = firstBeyond(ends, top - start);
      const part = { node, first, last: first };
      parts.push(part);
      for (; part.last < node.rows.length; ++part.last) {
        const row = node.rows[part.last];
        const rowTop = start + (ends[part.last - 1] ?? 0);
        if (rowTop >= bottom) break;
        if (row.isOpen && row.rows.length) add(row, rowTop + this.#ownHeight(row));
      }
    };
    for (const tree of this.model.trees) if (tree.rows.length) add(tree, topOf(tree.lists[0]));
    return parts;
  }

  #layOut(parts) {
    this.parts = parts;
    const near = new Set(parts.flatMap(({ node, first, last }) => node.rows.slice(first, last)));
    const holder = this.rowOf(focused());
    // A row that is put away would take focus along; the page keeps it for the keys.
    if (holder && !near.has(holder)) focusOn(this.main);
    for (const item of this.near) if (!near.has(item)) this.#setNear(item, false);
    for (const item of near) if (!item.isNear) this.#setNear(item, true);
    this.near = near;
    for (const { node, first, last } of parts) this.#dressRows(node, first, last);
    this.#pad();
  }

  #setNear(item, isNear) {
    item.isNear = isNear;
    setAttribute(item.element, "data-near", isNear ? "" : null);
  }

  /** Gives the lists the room that their rows out of the window would take. */
  #pad() {
    for (const { node, first, last } of this.parts) {
      const ends = this.#endsOf(node);
      node.lists[0].style.paddingTop = `${ends[first - 1] ?? 0}px`;
      node.lists.at(-1).style.paddingBottom = `${(ends.at(-1) ?? 0) - (ends[last - 1] ?? 0)}px`;
    }
  }

  /** Takes the heights that rows really have; true when they differ from what was thought. */
  #measure() {
    let differs = false;
    for (const item of this.near) {
      let { height } = boxOf(item.element);
      if (item.isOpen) for (const block of item.folds) height -= boxOf(block).height;
      if (Math.abs(height - this.#ownHeight(item)) > 0.5) {
        item.height = height;
        this.#forgetEnds(item);
        differs = true;
      } else item.height = height;
    }
    return differs;
  }

  #forgetEnds(item) {
    for (let node = item; node; node = node.parent) node.ends = null;
  }

  /** Where each shown row of a branch ends, measured from the top of its list. */
  #endsOf(node) {
    if (node.ends) return node.ends;
    const ends = new Float64Array(node.rows.length);
    let end = 0;
    node.rows.forEach((row, at) => {
      end += this.#ownHeight(row);
      if (row.isOpen && row.rows.length) end += this.#endsOf(row).at(-1);
      ends[at] = end;
    });
    return (node.ends = ends);
  }

  #ownHeight(item) {
    if (item.height) return item.height;
    if (item.times > 1) return this.rowHeight;
    return item.isLine ? (item.parent.lineHeight ?? this.lineHeight) : this.rowHeight;
  }

  /** Lays out samples of each large branch's lines to learn how high its lines are in the mean. */
  #estimateHeights() {
    const { lines, branches } = this.model;
    const large = branches.filter((node) => node.children.length > 200).slice(0, 40);
    const samples = large.map((node) => ({
      node,
      own: pick(
        node.children.filter((row) => row.isLine),
        50,
      ),
    }));
    samples.push({ node: this, own: pick(lines, 100) });
    const list = build("ul", { class: "Container", "aria-hidden": "true" });
    for (const { own } of samples)
      for (const item of own) {
        const copy = item.element.cloneNode(true);
        copy.setAttribute("data-near", "");
        copy.style.marginLeft = `calc(${item.level - 1} * var(--indent))`;
        list.append(copy);
      }
    this.main.append(list);
    let at = 0;
    const heights = Array.from(list.children, (copy) => boxOf(copy).height);
    for (const { node, own } of samples) {
      const sum = heights.slice(at, at + own.length).reduce((total, height) => total + height, 0);
      if (own.length) node.lineHeight = sum / own.length;
      at += own.length;
    }
    list.remove();
    this.rowHeight = Math.min(...heights);
  }

  // Attributes of rows

  #dressRows(node, first, last) {
    for (let at = first; at < last; ++at) this.#dressRow(node.rows[at], at + 1, node.rows.length);
  }

  #dressRow(item, position, count) {
    const { element } = item;
    const isFolded = item.times > 1;
    const dress = `${position} ${count} ${item.isOpen} ${item.times} ${item.rows.length > 0}`;
    if (item.dress === dress) return;
    if (!item.wasDressed) {
      item.wasDressed = true;
      element.setAttribute("role", "treeitem");
      element.setAttribute("aria-level", item.level);
      if (!element.hasAttribute("tabindex")) element.setAttribute("tabindex", "-1");
      for (const link of item.caption.getElementsByTagName("a")) link.setAttribute("tabindex", "-1");
    }
    element.setAttribute("aria-posinset", position);
    element.setAttribute("aria-setsize", count);
    setAttribute(element, "data-last", position === count ? "" : null);
    setAttribute(element, "aria-expanded", item.isBranch && !item.isLine ? item.isOpen : null);
    if (isFolded || element.hasAttribute("data-times")) {
      setAttribute(element, "data-times", isFolded ? `×${item.times}` : null);
      setAttribute(element, "aria-label", isFolded ? `×${item.times}: ${maskOf(item)}` : null);
      setAttribute(item.caption, "data-alike", isFolded ? maskOf(item) : null);
      setAttribute(element.firstElementChild, "data-times", isFolded ? `×${item.times}` : null);
      item.height = 0;
    }
    item.dress = dress;
  }

  // The whole page at once, for the browser's own search and for printing

  /** Lays out every shown row; `mode` is "print", or "find" to leave rows far from the view to the search. */
  spread(mode) {
    if (this.mode !== "near") return;
    const place = this.placeOf(this.topRow());
    for (const node of this.model.branches) {
      for (const list of node.lists) list.style.removeProperty("padding");
      this.#dressRows(node, 0, node.rows.length);
    }
    for (const item of this.model.items) {
      if (!item.shown) item.element.setAttribute("hidden", "");
      else if (mode === "find" && !item.isNear) item.element.setAttribute("hidden", "until-found");
    }
    this.#setMode(mode);
    if (place && mode === "find") this.#align(place, false);
  }

  /** Back from the whole page. */
  gather() {
    if (!this.isLong || this.mode === "near") return;
    const place = this.placeOf(this.topRow());
    this.#leaveSpread();
    this.draw(place);
  }

  #leaveSpread() {
    for (const { element } of this.model.items) setAttribute(element, "hidden", null);
    this.#setMode("near");
  }

  #setMode(mode) {
    this.mode = mode;
    this.main.dataset.long = mode;
  }
}

const topOf = (element) => boxOf(element).top;

/** Index of the first end that lies beyond a position. */
function firstBeyond(ends, position) {
  let low = 0;
  let high = ends.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (ends[middle] > position) high = middle;
    else low = middle + 1;
  }
  return low;
}

/** Up to `count` of the values, evenly spread. */
function pick(values, count) {
  const step = Math.max(1, values.length / count);
  return Array.from({ length: Math.min(count, values.length) }, (_, at) => values[Math.floor(at * step)]);
}
