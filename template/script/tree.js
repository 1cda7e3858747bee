import { boxOf, focused, focusOn, scrollDown, writeAttribute } from "./dom.js";
import { fold, foldedOf, treeOf } from "./item.js";
import { firstRow, isInOpen, lastRow, nextRow, previousRow } from "./rows.js";

const wordPause = 700;
const deepestLevel = 5;
const toldHeight = 48;

/** Moves through the rows: one of them is the present one, the only tab stop of all trees. */
export class Tree {
  current = null;
  standIn = null;
  isQuiet = false;
  typed = "";
  typedAt = 0;

  /** `calls`: `changed` after a fold, `moved` after a move, `act` on a row, `menu` for a row. */
  constructor(model, view, calls) {
    this.model = model;
    this.view = view;
    this.calls = calls;
  }

  /** Makes a row the present one. While it is not laid out its tree is the tab stop. */
  setCurrent(item) {
    if (this.current?.built) this.#mark(this.current, "-1", null);
    this.current = item;
    this.keepStop();
  }

  #mark(item, tabindex, isCurrent) {
    writeAttribute(item.element, "tabindex", tabindex);
    writeAttribute(item.caption, "data-current", isCurrent);
  }

  /** After rows were laid out anew: there is a tab stop, and focus is not lost. */
  keepStop() {
    const { current, view } = this;
    const isThere = current && view.isLaidOut(current);
    const hadFocus = this.isStandIn(focused());
    const standIn = current && !isThere ? treeOf(current).lists[0] : null;
    if (standIn !== this.standIn) {
      this.standIn?.removeAttribute("tabindex");
      standIn?.setAttribute("tabindex", "0");
      this.standIn = standIn;
    }
    if (isThere) this.#mark(current, "0", "");
    if (!hadFocus) return;
    this.isQuiet = true;
    if (isThere) focusOn(current.element);
    else if (standIn) focusOn(standIn);
    this.isQuiet = false;
  }

  /** Whether an element keeps the focus for a row that is not laid out. */
  isStandIn(element) {
    return element === this.view.main || Boolean(element && element === this.standIn);
  }

  /** Focus has come to an element: its row is the present one, and one that it stands for comes into view. */
  focusCame(element) {
    const item = this.view.rowOf(element);
    if (item && item !== this.current) this.setCurrent(item);
    if (!item && !this.isQuiet && element === this.standIn) this.goTo(this.current);
  }

  get hasFocus() {
    const at = focused();
    return this.isStandIn(at) || Boolean(at && this.view.rowOf(at));
  }

  /** Goes to a row: it becomes the present one, comes into view and takes focus. */
  goTo(item, { focus = true, middle = false } = {}) {
    if (!item) return;
    const { view } = this;
    const wasOpen = isInOpen(item);
    if (!wasOpen) {
      const place = view.isPartlyLaidOut ? null : view.placeOf(view.topRow());
      view.openAround(item);
      // On a long page each drawing takes a while, so that the row goes straight to its place.
      if (place) view.draw(place);
    }
    const isFar =
      !view.isLaidOut(item) ||
      (!wasOpen && view.isPartlyLaidOut) ||
      ((middle || !wasOpen) && !this.isInView(item));
    if (isFar) view.draw({ item, top: Math.round(view.height * 0.4) });
    if (focus) focusOn(item.element);
    this.setCurrent(item);
    this.bringIntoView(item);
    this.calls.moved();
  }

  isInView(item) {
    const box = boxOf(item.caption);
    return box.height && box.bottom > this.view.top && box.top < this.view.height;
  }

  /** Scrolls as little as shows a row whole, above what the page may tell at its lower edge. */
  bringIntoView(item) {
    const box = boxOf(item.caption);
    const { top, height } = this.view;
    if (box.top < top + 4) scrollDown(box.top - top - 4);
    else if (box.bottom > height - toldHeight)
      scrollDown(Math.min(box.bottom - height + toldHeight, box.top - top - 4));
  }

  /**
   * The next shown line of a kind from the present row on, or the previous one, around the page's end; which of how
   * many it is, and the key of the text that says so. Null when there is none.
   */
  turnOf(kind, step) {
    const own = this.model.items.filter((item) => item.shown && item.kind === kind);
    if (!own.length) return null;
    const from = this.current?.index ?? -1;
    const next =
      step > 0 ? own.findIndex(({ index }) => index > from) : own.findLastIndex(({ index }) => index < from);
    const at = next >= 0 ? next : step > 0 ? 0 : own.length - 1;
    const key = next >= 0 ? "turned" : step > 0 ? "wentRound" : "wentBack";
    return { key, at: at + 1, count: own.length, item: own[at] };
  }

  setOpen(nodes, isOpen) {
    const { current: item, view } = this;
    const isSeen = item && view.isLaidOut(item) && this.isInView(item);
    // What is folded may be all that is in view.
    const place = isSeen ? view.placeOf(item) : item && { item, top: view.top + 4 };
    for (const node of nodes) view.setOpen(node, isOpen);
    this.calls.changed(place);
  }

  /** The levels to which the branches can be unfolded, but for the first and the last. */
  levels() {
    const deepest = this.model.branches.reduce((level, node) => Math.max(level, node.level + 1), 1);
    return Array.from({ length: Math.min(deepest, deepestLevel) - 2 }, (_, at) => at + 2);
  }

  /** Opens the branches above a level and folds those from it on. */
  foldTo(level) {
    for (const node of this.model.branches)
      if (node.parent && !node.isLine) this.view.setOpen(node, node.level < level);
    let { current } = this;
    for (let node = current; node?.parent; node = node.parent) if (!isInOpen(node)) current = node.parent;
    if (current !== this.current) this.setCurrent(current);
    this.calls.changed(null);
  }

  /** Unfolds a branch and all below it, or folds them. */
  foldBelow(item, isOpen) {
    const nodes = [item];
    for (const { children } of nodes) for (const child of children) if (child.isBranch) nodes.push(child);
    this.setOpen(nodes, isOpen);
  }

  keyDown(event) {
    if (event.ctrlKey || event.metaKey || event.altKey || !this.current) return false;
    const item = this.current;
    const { model } = this;
    const isBranch = item.isBranch && !item.isLine;
    switch (event.key) {
      case "ArrowDown":
        this.goTo(nextRow(model, item));
        return true;
      case "ArrowUp":
        this.goTo(previousRow(model, item));
        return true;
      case "Home":
        this.goTo(firstRow(model));
        return true;
      case "End":
        this.goTo(lastRow(model));
        return true;
      case "ArrowRight":
        if (item.times > 1) this.calls.act(item);
        else if (isBranch && !item.isOpen) this.setOpen([item], true);
        else if (isBranch) this.goTo(item.rows[0]);
        return true;
      case "ArrowLeft":
        if (isBranch && item.isOpen) this.setOpen([item], false);
        else if (item.parent.parent) this.goTo(item.parent);
        return true;
      case "*":
        this.setOpen(
          this.#besides(item).filter((row) => !row.isLine),
          true,
        );
        return true;
      case "Enter":
        this.calls.act(item);
        return true;
      case "ContextMenu":
        this.calls.menu(item);
        return true;
      case "F10":
        if (!event.shiftKey) return false;
        this.calls.menu(item);
        return true;
      case " ":
        if (this.#isTyping(event.timeStamp)) break;
        this.calls.act(item);
        return true;
    }
    return event.key.length === 1 && this.#type(event);
  }

  /** The rows beside an item, itself among them; at the top those of all trees. */
  #besides(item) {
    return item.parent.parent ? item.parent.rows : this.model.trees.flatMap((tree) => tree.rows);
  }

  #isTyping(now) {
    return this.typed && now - this.typedAt < wordPause;
  }

  /** Whether a character continues a word that is being typed. */
  continuesTyping(event) {
    return this.#isTyping(event.timeStamp) && this.hasFocus;
  }

  #type(event) {
    const character = fold(event.key);
    const isMore = this.#isTyping(event.timeStamp);
    const repeats = isMore && this.typed === character;
    this.typed = isMore && !repeats ? this.typed + character : character;
    this.typedAt = event.timeStamp;
    const { model } = this;
    const first = firstRow(model);
    const from = this.typed.length > 1 ? this.current : (nextRow(model, this.current) ?? first);
    let item = from;
    do {
      if (foldedOf(item).startsWith(this.typed)) {
        this.goTo(item);
        return true;
      }
      item = nextRow(model, item) ?? first;
    } while (item !== from);
    return true;
  }
}
