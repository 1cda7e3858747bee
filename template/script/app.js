import { fragmentOf, readAddress, writeAddress } from "./address.js";
import { savedFolds, saveFolds } from "./content.js";
import { makeChart } from "./chart.js";
import { Controls } from "./controls.js";
import { findMissing } from "./counts.js";
import { copyText, focusOn, listen, page, runIdle } from "./dom.js";
import { applyFilters, Filters } from "./filter.js";
import { foldsOf, keepFolds, keptFolds, restoreFolds } from "./folds.js";
import { fillHeader, markOf } from "./header.js";
import { highlight } from "./highlight.js";
import { Ids } from "./ids.js";
import { handleKey } from "./keys.js";
import { matchApart } from "./expressions.js";
import { fold, foldedOf, kinds, linksOf, textOf, treeOf } from "./item.js";
import { placeMenu } from "./menu.js";
import { numbersOf, ratioOf } from "./numbers.js";
import { makeFlatModel, sortRows } from "./order.js";
import { readModel } from "./model.js";
import { placePrinted } from "./printed.js";
import { RowMenu } from "./rowmenu.js";
import { firstRow, isInOpen, nearestRow } from "./rows.js";
import { keepStart, selectedText } from "./selection.js";
import { Settings } from "./settings.js";
import { language, say } from "./texts.js";
import { Tree } from "./tree.js";
import { View } from "./view.js";

const pausedSearchLines = 300000;
const manyMissing = 3;
const goneTime = 15000;
const typingPause = 400;
const leavingPause = 300;
const textsTime = 100;

/** The page at work: joins the model, the filters, the view, the tree and the controls. */
export class App {
  settings = new Settings();
  filters = new Filters(() => this.longestText());
  /** Whether the reader has gone to a row; before, the address names none. */
  isMoved = false;
  printed = [];

  /** `lists`: the markup of the lines of each list. */
  constructor(lists) {
    this.settings.showTheme();
    this.model = readModel(lists);
    /** The rows as they were written; `model` may hold the same lines in one list. */
    this.written = this.model;
    this.ids = new Ids(this.model.items);
    this.pausesSearch = this.model.lines.length > pausedSearchLines;
    const bar = page.querySelector("body > #bar");
    for (const part of [bar, page.querySelector("body > #head")]) part.hidden = false;
    page.setAttribute("lang", language);
    // What assistive software hears instead of a sign, with a blank: Firefox puts none between that and the text.
    for (const kind of kinds) page.style.setProperty(`--name-${kind}`, `"${say(`${kind}One`)} "`);
    this.run = fillHeader(this.model, (item) => this.reveal(item));
    this.controls = new Controls(this);
    if (this.pausesSearch) this.controls.note(say("many", this.model.lines.length));

    const missing = findMissing(this.model);
    if (missing.length) this.controls.note(say("linesMissing", missing.slice(0, manyMissing).join("; ")));

    this.main = page.querySelector("#protocol");
    this.main.setAttribute("lang", this.run.language);
    this.view = new View(this.model, this.main, bar);
    this.tree = new Tree(this.model, this.view, {
      changed: (place) => this.draw(place),
      moved: () => this.moved(),
      act: (item) => this.act(item),
      menu: (item) => this.rowMenu.open(item),
    });
    this.rowMenu = new RowMenu(this);
    this.start();
    this.listenToAll();
    this.prepare();
  }

  // Start

  start() {
    const { line, find, filters, isOutdated } = readAddress();
    this.showOutdated(isOutdated);
    this.filters.set(filters ?? { alike: this.settings.alike });
    if (line) this.ids.finish();
    const isRestored = this.restoreFolds();
    this.filter();
    this.matchApart();
    this.tree.setCurrent(firstRow(this.model));
    if (!this.view.isPartlyLaidOut) this.draw(null);
    const first = this.model.lines.find((each) => each.kind === "error" && each.shown);
    if (this.goToId(line) || this.goToText(find)) return;
    if (first && !isRestored) this.tree.goTo(first, { focus: false, middle: true });
    else this.draw(null);
  }

  /** Once told, it holds for the page as long as that is open. */
  showOutdated(isOutdated) {
    if (!isOutdated || this.isOutdated) return;
    this.isOutdated = true;
    const place = page.querySelector("body > #head #outdated");
    place.replaceChildren(markOf("warning", true), say("outdated"));
    place.hidden = false;
  }

  restoreFolds() {
    const folds = keptFolds() ?? savedFolds;
    const { unfolded } = this.filters;
    return (
      folds && restoreFolds(this.written, unfolded, folds, (node, isOpen) => this.view.setOpen(node, isOpen))
    );
  }

  listenToAll() {
    const { view } = this;
    listen(page, "keydown", (event) => handleKey(this, event));
    listen(this.main, "click", (event) => this.clicked(event));
    listen(page, "focusin", ({ target }) => this.tree.focusCame(target));
    listen(window, "pagehide", () => keepFolds(this.written, this.filters.unfolded));
    keepStart(view);
    listen(page, "copy", (event) => this.copied(event));
    listen(page, "dragstart", (event) => this.dragged(event));
    listen(page, "beforematch", ({ target }) => this.matched(target), true);
    // By now the page may have written its own address over the one that was gone to.
    listen(window, "hashchange", ({ newURL }) => this.addressChanged(new URL(newURL)));
    listen(window, "scroll", () => this.scrolled(), { passive: true });
    listen(window, "resize", () => {
      this.controls.fit();
      view.resized();
      this.drawDetails();
    });
    listen(window, "beforeprint", () => this.print());
    listen(window, "afterprint", () => this.printed.forEach((rows) => rows.remove()));
    // The browser's own search may have been chosen from its menu.
    listen(window, "blur", () => (this.leaving = setTimeout(() => this.left(), leavingPause)));
    listen(window, "focus", () => {
      clearTimeout(this.leaving);
      this.gather();
    });
  }

  /** Makes the lines' ids and reads their texts for the search; on a long page while nothing else is to do. */
  prepare() {
    const { model, view } = this;
    const { ids } = this;
    // With the texts at hand the first key typed is answered as quickly as others; a very long page waits for a pause.
    const end = performance.now() + (this.pausesSearch ? 0 : textsTime);
    let read = 0;
    while (read < model.records.length && performance.now() < end) textOf(model.records[read++]);
    const prepare = function* () {
      for (; read < model.records.length; ++read) yield textOf(model.records[read]);
      yield* ids.steps;
      for (const record of model.records) yield ratioOf(record) + numbersOf(record).length;
    };
    if (!view.isPartlyLaidOut) ids.finish();
    runIdle(prepare(), () => {
      ids.finish();
      this.remember();
      const chart = makeChart(model.records, (search) => this.setFilters({ search }));
      if (chart) this.showChart(chart);
    });
  }

  /** Puts the histogram above the tree and leaves what is seen where it is, the present row in view. */
  showChart(chart) {
    const { view, tree } = this;
    const { current } = tree;
    const place = window.scrollY > 0 ? view.placeOf(view.topRow()) : null;
    const wasInView = current && view.isLaidOut(current) && tree.isInView(current);
    page.querySelector("main > #lines").before(chart);
    view.keepPlace(place);
    this.drawDetails();
    // Rows that are left to the browser's own search stay with it.
    if (wasInView && view.mode === "find") tree.bringIntoView(current);
    else if (wasInView) tree.goTo(current, { focus: false, middle: true });
    placeMenu();
  }

  // Filters

  longestText() {
    this.longest ??= this.written.records.reduce((most, line) => Math.max(most, textOf(line).length), 0);
    return this.longest;
  }

  filter() {
    this.arrange();
    const seen = applyFilters(this.model, this.filters, this.written);
    const { lines, records } = this.model;
    this.counts = { ...seen, total: records.length, hasRepeats: records.length < lines.length };
    this.controls.show(this.filters, this.counts);
    this.controls.printFilters(this.filtersInWords());
  }

  /** Puts the lines into their order, in branches or in one list. */
  arrange() {
    const { order, flat } = this.filters;
    const wanted = flat ? (this.flat ??= makeFlatModel(this.written)) : this.written;
    if (wanted !== this.model) this.turnToModel(wanted);
    if ((this.model.order ?? "page") === order) return;
    this.model.order = order;
    this.view.gather();
    sortRows(this.model, order);
  }

  turnToModel(model) {
    const { tree, view } = this;
    const { current } = tree;
    if (current) tree.setCurrent(null);
    this.model = tree.model = model;
    view.turnTo(model);
    const line = model.isFlat
      ? model.records.find(({ origin }) => origin === current?.record)
      : current?.origin;
    tree.current = line ?? null;
    // In a folded branch it would be no tab stop.
    if (line && !model.isFlat) view.openAround(line);
  }

  /** Filters anew and keeps the present line, or the one nearest to it, where it stands. */
  refilter() {
    const { model, view, tree } = this;
    const seen = tree.current && view.isLaidOut(tree.current) && isInOpen(tree.current);
    const before = seen && tree.isInView(tree.current) ? tree.current : (view.topRow() ?? tree.current);
    const place = before && view.placeOf(before);
    const hadFocus = tree.hasFocus;
    this.filter();
    if (place && this.model !== model) place.item = tree.current;
    if (place?.item && !place.item.shown) place.item = nearestRow(this.model, place.item);
    if (!tree.current?.shown)
      tree.setCurrent(tree.current ? nearestRow(this.model, tree.current) : firstRow(this.model));
    this.draw(place?.item ? place : null, { hold: true });
    // The row in its place may be higher.
    if (place?.item && place.item !== before) tree.bringIntoView(place.item);
    if (hadFocus && tree.current && view.isLaidOut(tree.current)) focusOn(tree.current.element);
    this.remember();
  }

  typed() {
    clearTimeout(this.typingTimer);
    const apply = () => this.setFilters({ search: this.controls.query.value });
    if (this.pausesSearch) this.typingTimer = setTimeout(apply, typingPause);
    else apply();
  }

  setFilters(changes) {
    this.filters.set(changes);
    this.refilter();
    this.matchApart();
  }

  /** Runs the expressions that might take too long apart from the page, and filters by what they answer. */
  async matchApart() {
    const { query } = this.filters;
    const { records } = this.written;
    if (query.state !== "waiting") return;
    const texts = records.map(textOf);
    const answers = await Promise.all(query.apart.map(({ apart }) => matchApart(apart, texts)));
    if (query !== this.filters.query) return;
    query.answer(answers, records);
    const { spreading } = this.view;
    this.refilter();
    if (spreading) this.left();
  }

  toggleKind(kind) {
    const { hidden } = this.filters;
    this.setFilters({
      hidden: hidden.includes(kind) ? hidden.filter((other) => other !== kind) : [...hidden, kind],
    });
  }

  toggleErrorsOnly() {
    this.setFilters({ hidden: this.filters.isErrorsOnly ? [] : kinds.filter((kind) => kind !== "error") });
  }

  /** All lines in one list, what is farthest over its limit first; where nothing has a limit, what is largest. */
  toggleWorstFirst() {
    this.isMoved = true;
    if (this.filters.isWorstFirst) {
      this.setFilters({ order: "page", flat: false });
      this.tree.goTo(this.tree.current, { middle: true });
      return;
    }
    const hasRatios = this.written.records.some((line) => ratioOf(line) >= 0);
    this.filters.set({ order: hasRatios ? "ratio" : "size", flat: true });
    this.filter();
    const first = firstRow(this.model);
    // The page draws as it goes to a row that is not laid out.
    if (!first || this.view.isLaidOut(first)) this.draw(null);
    this.tree.goTo(first, { middle: true });
  }

  toggleAlike() {
    const alike = !this.filters.alike;
    this.settings.keep({ alike });
    this.setFilters({ alike, unfolded: new Set() });
  }

  /** What is shown and by which filters, in words, for paper and for files. */
  filtersInWords() {
    const { shown, total, places, hasRepeats } = this.counts;
    const counts = [say("shown", shown, total), ...(hasRepeats ? [say("places", places)] : [])];
    return [...counts, ...this.filters.words].join("; ");
  }

  /** The lines that the filters let through, in folded branches too. */
  visibleLines() {
    this.ids.finish();
    const lines = this.model.lines.filter((line) => line.matches);
    return this.model.isFlat ? lines.flatMap(({ origin }) => [origin, ...origin.repeats]) : lines;
  }

  /** What the run and the page say about these lines. */
  describe() {
    const { title, date, project } = this.run;
    const { shown, total } = this.counts;
    return { title, date, project, filter: this.filtersInWords(), shown, total };
  }

  // Drawing

  draw(place, options) {
    this.view.draw(place, options);
    this.drawDetails();
  }

  /** Has what is folded now go along with the page when it is saved. */
  saveFolds() {
    if (this.view.hasNewFolds) saveFolds(foldsOf(this.written, this.filters.unfolded));
    this.view.hasNewFolds = false;
  }

  /** What follows from where the rows are. */
  drawDetails() {
    const { view } = this;
    this.saveFolds();
    this.tree.keepStop();
    const lines = view.isPartlyLaidOut ? [...view.near] : this.model.lines;
    highlight(
      lines.filter((item) => item.isLine && item.shown && item.times < 2),
      this.filters.query.marks,
    );
    this.rowMenu.place();
  }

  scrolled() {
    if (this.frame) return;
    this.frame = requestAnimationFrame(() => {
      this.frame = 0;
      if (this.view.scrolled()) this.drawDetails();
      else this.rowMenu.place();
    });
  }

  /**
   * The reader has left the page, maybe for the browser's own search: that finds all when no step lies between, which
   * on a very long page would keep a reader waiting who comes back.
   */
  left() {
    const { view } = this;
    if (this.pausesSearch) runIdle(view.startSpread(), () => {});
    else view.spread();
  }

  gather() {
    this.view.gather();
    this.drawDetails();
  }

  /** Puts what goes on paper beside the trees. */
  print() {
    for (const rows of this.printed) rows.remove();
    this.printed = placePrinted(this.model);
    page.style.setProperty("--printed-title", JSON.stringify(page.querySelector("title").textContent));
  }

  setTheme(theme) {
    this.settings.keep({ theme });
    this.settings.showTheme();
  }

  // Moves and actions

  moved() {
    this.drawDetails();
    this.remember();
  }

  /** Brings the address up to date, once the ids are made. */
  remember() {
    if (this.ids.areMade)
      writeAddress(() =>
        fragmentOf(this.isMoved ? this.tree.current?.origin.id : "", this.filters, this.isOutdated),
      );
  }

  /** Goes to a row even when the filters hide it. */
  reveal(item) {
    if (!this.model.trees.includes(treeOf(item))) this.setFilters({ flat: false });
    if (!item.shown) {
      const isFiltered = !item.matches || !item.isLine;
      this.filters.set({ alike: false, ...(isFiltered && { search: "", hidden: [] }) });
      this.filter();
    }
    this.isMoved = true;
    this.tree.goTo(item, { middle: true });
  }

  goToId(id) {
    const find = ({ items }) => items.find(({ origin }) => origin.id === id);
    const item = id && (find(this.model) ?? find(this.written));
    if (item) this.reveal(item);
    else if (id) this.controls.tell(say("lineGone"), goneTime);
    return Boolean(item);
  }

  /** Goes to the first line that says that. */
  goToText(text) {
    const wanted = fold(text);
    const item = text && this.model.lines.find((line) => foldedOf(line) === wanted);
    if (item) this.reveal(item);
    else if (text) this.controls.tell(say("lineGone"), goneTime);
    return Boolean(item);
  }

  addressChanged(address) {
    const { line, find, filters, isOutdated } = readAddress(address);
    this.showOutdated(isOutdated);
    this.ids.finish();
    if (filters) this.setFilters(filters);
    this.goToId(line);
    this.goToText(find);
  }

  turnTo(kind, step) {
    this.isMoved = true;
    const turn = this.tree.turnOf(kind, step);
    this.controls.tell(turn ? say(turn.key, say(`${kind}One`), turn.at, turn.count) : say("noneOf"));
    this.tree.goTo(turn?.item);
  }

  /** What Enter and a click do: follow the link, choose among several, unfold. */
  act(item) {
    if (item.times > 1) {
      this.filters.unfolded.add(item.origin);
      this.view.hasNewFolds = true;
      this.refilter();
      return;
    }
    if (!item.isLine) {
      this.tree.setOpen([item], !item.isOpen);
      return;
    }
    const links = linksOf(item);
    if (links.length === 1) links[0].click();
    else if (links.length) this.rowMenu.open(item);
  }

  linkTo(item) {
    this.ids.finish();
    return location.href.replace(/#.*$/s, "") + fragmentOf(item.origin.id, this.filters);
  }

  /** The browser copies what is laid out; of a longer selection the page copies all. */
  copied(event) {
    if (event.target.matches?.("input, textarea")) return;
    const { tree, view, model } = this;
    const selection = window.getSelection();
    // Without a selection the keys copy the row that they have gone to.
    const isRow = selection.isCollapsed && tree.hasFocus;
    const text = isRow ? textOf(tree.current) : selectedText(view, model, selection);
    if (text === null) return;
    event.clipboardData.setData("text/plain", text);
    event.preventDefault();
    this.controls.tell(say("copied"));
  }

  /** What is selected is whole when it is dragged elsewhere, too. */
  dragged({ target, dataTransfer }) {
    if (target.closest?.("a, input")) return;
    const text = selectedText(this.view, this.model, window.getSelection());
    if (text === null) return;
    dataTransfer.clearData();
    dataTransfer.setData("text/plain", text);
  }

  async copy(text) {
    await copyText(text);
    this.controls.tell(say("copied"));
  }

  clicked(event) {
    const item = this.view.rowOf(event.target);
    const link = event.target.closest("a");
    if (/^(?:javascript|data):/.test(link?.href)) event.preventDefault();
    // Beside its caption a branch is but the room around its rows.
    if (!item?.caption.contains(event.target)) return;
    this.isMoved = true;
    this.tree.setCurrent(item);
    this.remember();
    const selection = window.getSelection();
    // A double click selects a word, and with that the next click would do nothing.
    if (event.detail > 1 && !item.isLine) selection.empty();
    if (link || event.detail > 1 || String(selection)) return;
    focusOn(item.element);
    if (!item.isLine || item.times > 1) this.act(item);
    this.rowMenu.place();
  }

  /** The browser's own search, or a link to a text, has found something in a folded branch. */
  matched(target) {
    const item = this.view.rowOf(target);
    if (!item) return;
    if (target !== item.element) this.view.setOpen(item, true);
    this.view.drawFound(item);
    this.drawDetails();
  }
}
