import { fragmentOf, readAddress, readSettings, writeAddress, writeSettings } from "./address.js";
import { Controls } from "./controls.js";
import { copyText, focusOn, listen, page, runIdle } from "./dom.js";
import { applyFilter } from "./filter.js";
import { fillHeader } from "./header.js";
import { highlight } from "./highlight.js";
import { RowMenu } from "./rowmenu.js";
import { foldedOf, giveIds, linksOf, readModel } from "./model.js";
import { parseQuery } from "./search.js";
import { language, say } from "./texts.js";
import { Tree } from "./tree.js";
import { View } from "./view.js";

const manyLines = 300000;
const typingPause = 400;
const deepestLevel = 5;
const turns = { e: ["error", 1], E: ["error", -1], w: ["warning", 1], W: ["warning", -1] };

/** The page at work: holds the filters and joins the model, its view, the tree and the controls. */
class App {
  filters = { search: "", hidden: [], alike: false };
  query = parseQuery("");
  unfolded = new Set();
  hasIds = false;

  constructor() {
    this.settings = readSettings();
    this.showTheme();
    removeForeignAttributes();
    // The policy does not keep a line with <meta http-equiv="refresh"> from leading the page elsewhere.
    if (page.querySelector("body meta")) listen(window, "load", () => window.stop());
    this.model = readModel();
    this.isMany = this.model.lines.length > manyLines;
    const bar = page.querySelector("#bar");
    bar.hidden = false;
    page.setAttribute("lang", language);
    this.run = fillHeader(this.model, (item) => this.reveal(item));
    this.controls = new Controls(this);
    if (this.isMany) this.controls.note(say("many", this.model.lines.length));
    page.dataset.script = "ready";

    this.main = page.querySelector("#protocol");
    this.view = new View(this.model, this.main, bar);
    this.tree = new Tree(this.model, this.view, {
      changed: (place) => this.draw(place),
      moved: () => this.moved(),
      act: (item) => this.act(item),
      menu: (item) => this.rowMenu.open(item),
    });
    this.rowMenu = new RowMenu(this);
    this.start();
    this.listen();
    this.prepare();
  }

  // Start

  start() {
    const { line, filters } = readAddress();
    this.filters = filters ?? { ...this.filters, alike: this.settings.alike === true };
    this.query = parseQuery(this.filters.search);
    if (line) this.finishIds();
    this.filter();
    this.draw(null);
    this.tree.setCurrent(this.view.firstRow());
    if (!this.goToId(line)) this.showFirstError();
    this.drawDetails();
  }

  showFirstError() {
    const first = this.model.lines.find((line) => line.kind === "error" && line.shown);
    if (first) this.tree.goTo(first, { focus: false, middle: true });
  }

  listen() {
    const { view } = this;
    listen(page, "keydown", (event) => this.keyDown(event));
    listen(this.main, "click", (event) => this.clicked(event));
    listen(page, "focusin", ({ target }) => {
      const item = view.rowOf(target);
      if (item && item !== this.tree.current) this.tree.setCurrent(item);
    });
    listen(page, "beforematch", ({ target }) => this.matched(target), true);
    listen(window, "hashchange", () => this.addressChanged());
    listen(window, "scroll", () => this.scrolled(), { passive: true });
    listen(window, "resize", () => {
      view.resized();
      this.drawDetails();
    });
    listen(window, "beforeprint", () => view.spread("print"));
    listen(window, "afterprint", () => this.gather());
    listen(window, "blur", () => view.spread("find"));
    listen(window, "focus", () => this.gather());
  }

  /** Makes the lines' ids and reads their texts for the search; on a long page while nothing else is to do. */
  prepare() {
    const { model } = this;
    const fold = function* () {
      for (const line of model.lines) yield foldedOf(line);
    };
    const name = () => {
      this.finishIds();
      this.remember();
      runIdle(fold(), () => {});
    };
    this.idSteps ??= giveIds(model.items);
    if (this.view.isLong) runIdle(this.idSteps, name);
    else name();
  }

  /** Makes all ids that are not made yet. */
  finishIds() {
    this.idSteps ??= giveIds(this.model.items);
    while (!this.hasIds) this.hasIds = this.idSteps.next().done;
  }

  // Filters

  filter() {
    const { hidden, alike } = this.filters;
    this.shownCount = applyFilter(this.model, {
      hidden: new Set(hidden),
      query: this.query,
      alike,
      unfolded: this.unfolded,
    });
    this.controls.show(this.filters, this.shownCount, this.model.lines.length);
    this.controls.showWrong(this.query.wrong);
    this.controls.state(this.stated());
  }

  /** Filters anew and keeps the present line, or the one nearest to it, where it stands. */
  refilter() {
    const { view, tree } = this;
    const seen = tree.current && view.isLaidOut(tree.current) && view.isInOpen(tree.current);
    const before = seen && tree.isInView(tree.current) ? tree.current : (view.topRow() ?? tree.current);
    const place = before && view.placeOf(before);
    const hadFocus = tree.hasFocus;
    this.filter();
    if (place && !place.item.shown) place.item = view.nearestRow(place.item);
    if (!tree.current?.shown) tree.setCurrent(tree.current ? view.nearestRow(tree.current) : view.firstRow());
    this.draw(place?.item ? place : null, { hold: true });
    if (hadFocus && tree.current && view.isLaidOut(tree.current)) focusOn(tree.current.element);
    this.remember();
  }

  typed() {
    clearTimeout(this.typingTimer);
    const apply = () => this.setFilters({ search: this.controls.query.value });
    if (this.isMany) this.typingTimer = setTimeout(apply, typingPause);
    else apply();
  }

  setFilters(changes) {
    this.filters = { ...this.filters, ...changes };
    this.query = parseQuery(this.filters.search);
    this.refilter();
  }

  toggleKind(kind) {
    const { hidden } = this.filters;
    this.setFilters({
      hidden: hidden.includes(kind) ? hidden.filter((other) => other !== kind) : [...hidden, kind],
    });
  }

  toggleAlike() {
    const alike = !this.filters.alike;
    this.unfolded.clear();
    this.keep({ alike });
    this.setFilters({ alike });
  }

  /** The filters in words, for paper and for files. */
  stated() {
    const { search, hidden, alike } = this.filters;
    const parts = [say("shown", this.shownCount, this.model.lines.length)];
    if (hidden.length)
      parts.push(say("hiddenKinds", hidden.map((kind) => say(kind).toLowerCase()).join(", ")));
    if (!this.query.isEmpty) parts.push(say("searched", search));
    if (alike) parts.push(say("folded"));
    return parts.join("; ");
  }

  visibleLines() {
    this.finishIds();
    return this.model.lines.filter((line) => line.matches);
  }

  describe() {
    const { counts: _, ...run } = this.run;
    return { ...run, filter: this.stated(), shown: this.shownCount, total: this.model.lines.length };
  }

  // Drawing

  draw(place, options) {
    this.view.draw(place, options);
    this.drawDetails();
  }

  /** What follows from where the rows are. */
  drawDetails() {
    const { view } = this;
    this.tree.keepStop();
    const lines = view.isLong ? [...view.near] : this.model.lines;
    highlight(
      lines.filter((item) => item.isLine && item.shown && item.times < 2),
      this.query.marks,
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

  gather() {
    this.view.gather();
    this.drawDetails();
  }

  setTheme(theme) {
    this.keep({ theme });
    this.showTheme();
  }

  /** Remembers settings for this page and for others. */
  keep(settings) {
    Object.assign(this.settings, settings);
    writeSettings(this.settings);
  }

  showTheme() {
    const { theme } = this.settings;
    if (theme === "light" || theme === "dark") page.dataset.theme = theme;
    else delete page.dataset.theme;
  }

  // Moves and actions

  moved() {
    this.drawDetails();
    this.remember();
  }

  /** Brings the address up to date, once the ids are made. */
  remember() {
    if (this.hasIds) writeAddress(() => fragmentOf(this.isMoved ? this.tree.current?.id : "", this.filters));
  }

  /** Goes to a row even when the filters hide it. */
  reveal(item) {
    if (!item.shown) {
      if (!item.matches || !item.isLine) Object.assign(this.filters, { search: "", hidden: [] });
      this.filters.alike = false;
      this.query = parseQuery(this.filters.search);
      this.filter();
    }
    this.isMoved = true;
    this.tree.goTo(item, { middle: true });
  }

  goToId(id) {
    const item = id && this.model.items.find((candidate) => candidate.id === id);
    if (item) this.reveal(item);
    return Boolean(item);
  }

  addressChanged() {
    const { line, filters } = readAddress();
    this.finishIds();
    if (filters) this.setFilters(filters);
    this.goToId(line);
  }

  turnTo(kind, step) {
    this.isMoved = true;
    if (!this.tree.turnTo(kind, step)) this.controls.tell(say("noneOf"));
  }

  levels() {
    const deepest = this.model.branches.reduce((level, node) => Math.max(level, node.level + 1), 1);
    return Array.from({ length: Math.min(deepest, deepestLevel) - 2 }, (_, at) => at + 2);
  }

  /** Opens the branches above a level and folds those from it on. */
  foldTo(level) {
    const { view, tree } = this;
    for (const node of this.model.branches)
      if (node.element && !node.isLine) view.setOpen(node, node.level < level);
    let current = tree.current;
    for (let node = current; node?.element; node = node.parent)
      if (!view.isInOpen(node)) current = node.parent;
    if (current && current !== tree.current) tree.setCurrent(current);
    this.draw(null);
  }

  foldBelow(item, isOpen) {
    const nodes = [item];
    for (const node of nodes) nodes.push(...node.children.filter((child) => child.isBranch));
    this.tree.setOpen(nodes, isOpen);
  }

  /** What Enter and a click do: follow the link, choose among several, unfold. */
  act(item) {
    if (item.times > 1) {
      this.unfolded.add(item);
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
    this.finishIds();
    return location.href.replace(/#.*$/s, "") + fragmentOf(item.id, this.filters);
  }

  async copy(text) {
    await copyText(text);
    this.controls.tell(say("copied"));
  }

  clicked(event) {
    const item = this.view.rowOf(event.target);
    const link = event.target.closest("a");
    if (/^(?:javascript|data):/.test(link?.href)) event.preventDefault();
    if (!item) return;
    this.isMoved = true;
    this.tree.setCurrent(item);
    this.remember();
    if (link || String(window.getSelection())) return;
    focusOn(item.element);
    if (!item.isLine || item.times > 1) this.act(item);
    this.rowMenu.place();
  }

  matched(target) {
    const item = this.view.rowOf(target);
    if (!item) return;
    const node = target === item.element ? item.parent : item;
    target.removeAttribute("hidden");
    for (let at = node; at.element; at = at.parent) this.view.setOpen(at, true);
    if (this.view.mode === "all") this.draw(null);
  }

  keyDown(event) {
    const isField = event.target.matches("input, textarea, dialog *, [role=menu] *");
    if (!isField && !event.ctrlKey && !event.metaKey && !event.altKey) {
      const turn = turns[event.key];
      if (turn && !this.tree.continuesTyping(event)) {
        this.turnTo(...turn);
        event.preventDefault();
        return;
      }
      if (event.key === "/") {
        this.controls.query.select();
        event.preventDefault();
        return;
      }
    }
    if (event.target === this.controls.query && event.key === "Escape" && event.target.value) {
      event.preventDefault();
      this.setFilters({ search: "" });
    }
    if (
      this.view.mode === "near" &&
      (event.key === "F3" || ((event.ctrlKey || event.metaKey) && event.code === "KeyF"))
    )
      this.view.spread("find");
    if (isField || !this.main.contains(event.target)) return;
    this.isMoved = true;
    if (this.tree.keyDown(event)) event.preventDefault();
  }
}

/** A line with <body hidden> gives the page's own body that attribute. */
function removeForeignAttributes() {
  for (const element of [page, page.querySelector("body")])
    for (const { name } of [...element.attributes])
      if (!/^(?:lang|data-(?:script|texts|theme))$/.test(name)) element.removeAttribute(name);
}

page.dataset.script = "reading";
page.dataset.texts = language;
listen(window, "DOMContentLoaded", () => new App());
