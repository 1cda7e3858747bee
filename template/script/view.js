import {
  boxOf,
  elementAt,
  finish,
  focused,
  focusOn,
  makeElement,
  page,
  scrollDown,
  writeAttribute,
} from "./dom.js";
import { writeBranchAttributes, writeRowsAttributes } from "./rowAttributes.js";
import { Heights } from "./heights.js";
import { dropRow, itemOf, nameOf } from "./item.js";
import { fillSteps, placeAll } from "./lists.js";
import { rowSelector } from "./model.js";
import { say } from "./texts.js";

// Beyond this many lines only the rows near the view are laid out; the lists around them are padded with what
// the other rows would take.
const wholeLayoutLines = 2000;
const margin = 1200;
const slack = 500;
const foundAround = 40;

const topOf = (element) => boxOf(element).top;

/**
 * Draws the rows of a model. `mode` is "all" on a page that is short enough to lay out every row. A long page is
 * in mode "near", or for a while in "find", when every row is there for the browser's own search.
 */
export class View {
  mode = "all";
  near = new Set();
  parts = [];
  settledAt = NaN;
  hasNewFolds = true;
  above = 0;
  spreading = null;

  constructor(model, main, bar) {
    this.main = main;
    this.bar = bar;
    this.#take(model);
  }

  #take(model) {
    const { main } = this;
    this.model = model;
    // In one list there are fewer; the page stays as it began.
    this.isPartlyLaidOut ??= model.lines.length > wholeLayoutLines;
    for (const tree of model.trees) {
      writeAttribute(tree.lists[0], "role", "tree");
      const [only, more] = tree.children;
      const name = only?.isBranch && !more ? nameOf(only) : "";
      writeAttribute(tree.lists[0], "aria-label", name || say("tree"));
    }
    if (!this.isPartlyLaidOut) {
      finish(fillSteps(model));
      return;
    }
    this.#setMode("near");
    main.tabIndex = -1;
    // All that a browser selects ends where something is laid out.
    if (!this.end) main.append((this.end = makeElement("br")));
    this.width = main.clientWidth;
    if (!model.heights) model.heights = new Heights(model, main);
    else if (model.heights.width !== this.width) model.heights.forget();
    this.heights = model.heights;
  }

  /** Shows the rows of another model, and puts away those of the one before. */
  turnTo(model) {
    if (this.isPartlyLaidOut) this.#leaveSpread();
    for (const item of this.near) this.#setNear(item, false);
    this.near = new Set();
    for (const { lists } of this.model.trees) lists[0].setAttribute("hidden", "");
    for (const item of this.model.items) if (item.isMade && item.built) dropRow(item);
    this.#take(model);
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
    this.hasNewFolds = true;
    const [was, is] = isOpen ? ["ExpandClosed", "ExpandOpen"] : ["ExpandOpen", "ExpandClosed"];
    if (node.built) {
      node.built.classList.replace(was, is);
      writeBranchAttributes(node);
    }
    this.heights?.forgetAround(node);
  }

  openAround(item) {
    for (let node = item.parent; node.parent; node = node.parent) this.setOpen(node, true);
  }

  // Rows and their places

  /** The first row that is seen below the bar. */
  topRow() {
    const across = boxOf(this.main);
    for (let y = this.top + 2; y < this.height; y += 12) {
      const item = this.rowOf(elementAt((across.left + across.right) / 2, y));
      if (item?.shown) return item;
    }
    return null;
  }

  /** The row that an element belongs to. */
  rowOf(element) {
    return itemOf(element?.closest?.(rowSelector));
  }

  /** Where a row stands, to put it there again after a change. */
  placeOf(item) {
    return item && { item, top: topOf(item.element) };
  }

  isLaidOut(item) {
    return this.mode !== "near" || item.isNear;
  }

  // Drawing

  /**
   * Draws what changed. `place` names a row and where its top shall stand. With `hold` the page gets room above
   * or below when it is too short to put the row there.
   */
  draw(place = null, { hold = false } = {}) {
    if (this.mode === "find") this.#leaveSpread();
    this.#setRoom(0, 0);
    const away = this.mode === "near" ? "until-found" : "";
    for (const tree of this.model.trees)
      writeAttribute(tree.lists[0], "hidden", tree.rows.length ? null : away);
    if (this.mode === "near") this.#drawNear(place);
    else this.#drawAll();
    if (place) this.#align(place, hold);
    this.settledAt = window.scrollY;
  }

  #drawAll() {
    for (const item of this.model.items) writeAttribute(item.element, "hidden", item.shown ? null : "");
    for (const node of this.model.branches) writeRowsAttributes(node);
  }

  #align({ item, top }, hold) {
    const offBy = () => topOf(item.element) - top;
    scrollDown(offBy());
    const rest = offBy();
    if (!hold || Math.abs(rest) < 1) return;
    // A page that does not fill the window gets room to fill it first.
    const gap = Math.max(0, this.height - boxOf(page).height);
    this.#setRoom(Math.max(0, -rest), rest > 0 ? rest + gap : 0);
    scrollDown(offBy());
  }

  #setRoom(above, below) {
    this.above = above;
    this.main.style.borderTopWidth = `${above}px`;
    this.main.style.borderBottomWidth = `${below}px`;
  }

  /** The row at the top of the window and where it stands, or a row that belongs there. */
  #placeAtTop() {
    const place = this.placeOf(this.topRow());
    // In the room of rows that are not laid out the window shows nothing but the branch around them.
    const isSeen = place && boxOf(place.item.caption).bottom > 0;
    return isSeen ? place : (this.heights.placeBetween(this.top, this.height) ?? place);
  }

  /** After rows or something above them have changed their heights, which takes none of them away. */
  keepPlace(place) {
    if (this.mode !== "find") this.draw(place);
    else if (place) this.#align(place, false);
  }

  /** After the user scrolled: room that is out of sight goes, and the rows near the view are laid out. */
  scrolled() {
    if (this.above && window.scrollY > this.above) {
      const { above } = this;
      this.#setRoom(0, 0);
      scrollDown(-above);
    }
    if (this.mode !== "near" || Math.abs(window.scrollY - this.settledAt) < slack) return false;
    const place = this.#placeAtTop();
    this.#drawNear(place);
    if (place) this.#align(place, false);
    this.settledAt = window.scrollY;
    return true;
  }

  resized() {
    if (!this.isPartlyLaidOut || this.main.clientWidth === this.width) return;
    this.width = this.main.clientWidth;
    const place = this.placeOf(this.topRow());
    this.heights.forget();
    this.keepPlace(place);
  }

  // Rows near the view

  #drawNear(place) {
    const { heights, height } = this;
    // To ask the browser where a list stands is dear before the new rows are laid out.
    let parts = place
      ? heights.around(place.item, place.top + margin, height - place.top + margin)
      : heights.between(-margin, height + margin);
    for (let pass = 0; pass < 4; ++pass) {
      this.#layOut(parts);
      if (heights.measure(this.near)) this.#pad();
      const start = place ? heights.topOf(place.item) - place.top : 0;
      const seen = heights.between(start, start + height, place?.item);
      if (seen.every(({ branch, first, last }) => branch.rows.slice(first, last).every((row) => row.isNear)))
        return;
      parts = heights.between(start - margin, start + height + margin, place?.item);
    }
  }

  #layOut(parts) {
    this.parts = parts;
    const near = new Set(parts.flatMap(({ branch, first, last }) => branch.rows.slice(first, last)));
    const holder = this.rowOf(focused());
    // A row that is put away would take focus along; the page keeps it for the keys.
    if (holder && !near.has(holder)) focusOn(this.main);
    for (const item of this.near) if (!near.has(item)) this.#setNear(item, false);
    for (const { branch, first, last } of parts) placeAll(branch.rows.slice(first, last));
    for (const item of near) if (!item.isNear) this.#setNear(item, true);
    this.near = near;
    for (const { branch, first, last } of parts) writeRowsAttributes(branch, first, last);
    this.#pad();
  }

  #setNear(item, isNear) {
    item.isNear = isNear;
    if (item.built) writeAttribute(item.built, "data-near", isNear ? "" : null);
  }

  /** Gives the lists the room that their rows out of the window would take, or less where a browser has no more. */
  #pad() {
    const { scale } = this.heights;
    for (const { branch, first, last } of this.parts) {
      const ends = this.heights.endsOf(branch);
      branch.lists[0].style.paddingTop = `${(ends[first - 1] ?? 0) * scale}px`;
      branch.lists.at(-1).style.paddingBottom = `${((ends.at(-1) ?? 0) - (ends[last - 1] ?? 0)) * scale}px`;
    }
  }

  // Every row of a long page at once

  spread() {
    finish(this.startSpread());
  }

  /**
   * Steps to have every shown row in the page; the browser draws none far from the view until its search finds it. They
   * come to nothing when the rows are gathered before.
   */
  startSpread() {
    this.spreading?.return();
    this.spreading = this.#spreadSteps();
    return this.spreading;
  }

  *#spreadSteps() {
    if (this.mode !== "near") return;
    yield* fillSteps(this.model);
    const place = this.placeOf(this.topRow());
    for (const node of this.model.branches)
      for (const list of node.lists) list.style.removeProperty("padding");
    for (const { element, shown } of this.model.items) if (!shown) element.setAttribute("hidden", "");
    for (const tree of this.model.trees) this.#leaveToSearch(tree);
    this.#setMode("find");
    if (place) this.#align(place, false);
  }

  /** Rows inside one that is left to the search need nothing more. */
  #leaveToSearch({ rows }) {
    for (const row of rows) {
      if (!row.isNear) row.element.setAttribute("hidden", "until-found");
      else if (row.isOpen) this.#leaveToSearch(row);
    }
  }

  /** Draws a row that the browser's own search has found, and those around it. */
  drawFound(item) {
    this.openAround(item);
    if (this.mode === "all") this.draw();
    if (this.mode !== "find") return;
    for (let node = item; node.parent; node = node.parent) {
      const at = node.parent.rows.indexOf(node);
      const [first, last] = [
        Math.max(0, at - foundAround),
        Math.min(node.parent.rows.length, at + foundAround),
      ];
      for (const { element } of node.parent.rows.slice(first, last)) writeAttribute(element, "hidden", null);
      writeRowsAttributes(node.parent, first, last);
    }
    // What is found may stand anywhere in it.
    const nodes = [item];
    for (const node of nodes) {
      writeRowsAttributes(node);
      for (const row of node.rows) if (row.isBranch) nodes.push(row);
    }
  }

  /** Back to the rows near the view. */
  gather() {
    if (!this.isPartlyLaidOut || !this.spreading) return;
    const place = this.placeOf(this.topRow());
    this.#leaveSpread();
    this.draw(place);
  }

  /** The rows that were only built for it go: a browser walks through all that it has. */
  #leaveSpread() {
    this.spreading?.return();
    this.spreading = null;
    const { anchorNode, focusNode } = window.getSelection();
    const selected = new Set();
    for (const end of [anchorNode, focusNode])
      for (let row = this.rowOf(end?.parentElement); row; row = row.parent) selected.add(row);
    for (const item of this.model.items) {
      if (!item.built) continue;
      if (item.isMade && !item.isNear && !selected.has(item)) dropRow(item);
      else writeAttribute(item.built, "hidden", null);
    }
    this.#setMode("near");
  }

  #setMode(mode) {
    this.mode = mode;
    this.main.dataset.long = mode;
  }
}
