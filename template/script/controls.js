import { build, copyText, listen, page, saveFile, writeAttribute } from "./dom.js";
import { markOf } from "./header.js";
import { openMenu } from "./menu.js";
import { kinds, nameOf } from "./item.js";
import { forms } from "./export.js";
import { orders } from "./order.js";
import { helpRows, say, write } from "./texts.js";

const find = (id) => page.querySelector(`body > :is(#head, #bar) #${id}`);

/** A button of the bar. With a mouse it leaves focus where it is, so that filters don't take it off the line. */
function button(attributes, ...content) {
  return build(
    "button",
    { type: "button", mousedown: (event) => event.preventDefault(), ...attributes },
    ...content,
  );
}

function menuButton(label, makeEntries) {
  const owner = button({ "aria-haspopup": "menu", "aria-expanded": "false" }, label);
  listen(owner, "click", () => openMenu(owner, label, makeEntries()));
  return owner;
}

function turnButton(app, kind, by) {
  const label = say(kind + (by < 0 ? "Back" : "On"));
  return button({ title: label, "aria-label": label, click: () => app.turnTo(kind, by) }, by < 0 ? "↑" : "↓");
}

/** The bar's controls. `app` is what they act on. */
export class Controls {
  constructor(app) {
    this.app = app;
    this.query = find("query");
    this.query.placeholder = say("fieldHint");
    this.query.setAttribute("aria-label", say("field"));
    this.query.setAttribute("aria-describedby", "problem");
    listen(this.query, "input", () => app.typed());
    this.#setText("note", "");
    // A page may be saved with these.
    find("status").textContent = "";
    page.querySelector("#bar > .menu")?.remove();
    find("kinds").setAttribute("aria-label", say("kinds"));
    this.#makeKinds();
    this.#makeMenus();
  }

  #makeKinds() {
    const { app } = this;
    const { counts } = app.run;
    find("kinds").replaceChildren();
    this.toggles = kinds
      .filter((kind) => kind !== "other" || counts.other)
      .map((kind) =>
        button(
          { class: "toggle", "data-kind": kind, "aria-pressed": "true", click: () => app.toggleKind(kind) },
          markOf(kind, true),
          build("span", { class: "word" }, `${say(kind)} `),
          build("b", {}, write(counts[kind])),
        ),
      );
    for (const toggle of this.toggles) {
      const { kind } = toggle.dataset;
      const steps =
        kind === "error" || kind === "warning" ? [turnButton(app, kind, -1), turnButton(app, kind, 1)] : [];
      find("kinds").append(build("span", { class: "joined" }, toggle, ...steps));
    }
    this.alike = button(
      {
        class: "toggle",
        id: "alike",
        title: say("alikeHint"),
        "aria-pressed": "false",
        click: () => app.toggleAlike(),
      },
      say("alike"),
    );
    this.worst = button(
      {
        class: "toggle",
        id: "worst",
        title: say("worstHint"),
        "aria-pressed": "false",
        click: () => app.toggleWorstFirst(),
      },
      say("worst"),
    );
    find("kinds").append(this.alike, this.worst);
  }

  #makeMenus() {
    const { app } = this;
    // A low window has no room for the strip of stages.
    const stages = () =>
      find("stages").offsetParent
        ? []
        : app.run.parts.map((part) => ({
            label: say("toStage", nameOf(part) || "…"),
            act: () => app.reveal(part),
          }));
    const branches = () => [
      { label: say("unfoldAll"), act: () => app.tree.foldTo(Infinity) },
      { label: say("foldAll"), act: () => app.tree.foldTo(1) },
      ...app.tree.levels().map((level) => ({
        label: say("toLevel", level),
        act: () => app.tree.foldTo(level),
      })),
      ...stages(),
    ];
    const exports = () =>
      ["copyAs", "saveAs"].flatMap((key) =>
        Object.keys(forms).map((form) => ({
          label: say(key, say(form)),
          act: () => this.export(form, key === "saveAs"),
        })),
      );
    const view = () => [
      ...["System", "Light", "Dark"].map((name) => {
        const theme = name.toLowerCase();
        return {
          label: say(`theme${name}`),
          act: () => app.setTheme(theme),
          isOn: app.settings.theme === theme,
          isChoice: true,
        };
      }),
      ...orders.map((order) => ({
        label: say(`order${order}`),
        act: () => app.setFilters({ order }),
        isOn: app.filters.order === order,
        isChoice: true,
      })),
      { label: say("flat"), act: () => app.setFilters({ flat: !app.filters.flat }), isOn: app.filters.flat },
      { label: say("errorsOnly"), act: () => app.toggleErrorsOnly(), isOn: app.filters.isErrorsOnly },
      { label: say("foldAlike"), act: () => app.toggleAlike(), isOn: app.filters.alike },
      { label: say("print"), act: () => window.print() },
      { label: say("help"), act: () => this.showHelp() },
    ];
    find("menus").replaceChildren(
      menuButton(say("branches"), branches),
      menuButton(say("export"), exports),
      menuButton(say("view"), view),
    );
  }

  /** Copies or saves the lines that the filters let through. */
  async export(name, saves) {
    const form = forms[name];
    const text = form.write(this.app.visibleLines(), this.app.describe());
    if (saves) saveFile(`${this.app.run.title.replace(/[^\p{L}\p{N}]+/gu, "-")}.${name}`, form.type, text);
    else {
      await copyText(text);
      this.tell(say("copied"));
    }
  }

  /** Shows the state of the filters and what they let through. */
  show({ search, hidden, alike, query, isWorstFirst }, { shown, total, places, hasRepeats }) {
    if (this.query.value !== search) this.query.value = search;
    for (const toggle of this.toggles)
      toggle.setAttribute("aria-pressed", String(!hidden.includes(toggle.dataset.kind)));
    this.alike.setAttribute("aria-pressed", String(alike));
    this.worst.setAttribute("aria-pressed", String(isWorstFirst));
    find("shown").textContent = say("shown", shown, total);
    this.#setText("places", hasRepeats ? say("places", places) : "");
    const isWrong = query.state === "wrong" || query.state === "slow";
    writeAttribute(this.query, "aria-invalid", isWrong ? "true" : null);
    this.#setText("problem", isWrong ? say(query.state === "slow" ? "slowPattern" : "badPattern") : "");
    this.#fitAnew();
  }

  /** Fits the bar when the counts take more or less room. */
  #fitAnew() {
    const room = ["shown", "places"].map((id) => find(id).textContent.length).join();
    if (room !== this.room) this.fit();
    this.room = room;
  }

  /** Leaves out what the bar has no room for in its quarter of the window, so that nothing of it is cut. */
  fit() {
    const bar = page.querySelector("body > #bar");
    for (const without of ["", "stages", "stages counts", "stages counts rows"]) {
      writeAttribute(bar, "data-without", without);
      if (bar.scrollHeight <= bar.clientHeight) return;
    }
  }

  /** Tells the filters in words, for paper. */
  printFilters(text) {
    find("printed-filters").textContent = text;
  }

  /** Adds a sentence to what the page says about itself. */
  note(text) {
    this.#setText("note", `${find("note").textContent} ${text}`.trim());
  }

  #setText(id, text) {
    const place = find(id);
    if (place.textContent !== text) place.textContent = text;
    place.hidden = !text;
  }

  /** Tells a short word on what has happened. */
  tell(text, time = 3000) {
    clearTimeout(this.timer);
    const place = find("status");
    place.textContent = text;
    this.timer = setTimeout(() => (place.textContent = ""), time);
  }

  showHelp() {
    const entries = helpRows().flatMap(([key, meaning]) => [build("dt", {}, key), build("dd", {}, meaning)]);
    const dialog = build(
      "dialog",
      { "aria-label": say("help"), close: () => dialog.remove() },
      // Focus at the button below would bring the end into view.
      build("h2", { tabindex: "-1", autofocus: "" }, say("help")),
      build("dl", {}, ...entries),
      build("p", {}, say("repeated")),
      button({ click: () => dialog.close() }, say("close")),
    );
    find("menus").append(dialog);
    dialog.showModal();
  }
}
