import { boxOf, build } from "./dom.js";
import { openMenu } from "./menu.js";
import { linkedItems, linksOf } from "./item.js";
import { language, say } from "./texts.js";

/** The actions on one row, behind a button that stands at the end of the present row. */
export class RowMenu {
  constructor(app) {
    this.app = app;
    this.button = build(
      "button",
      {
        type: "button",
        id: "row-menu",
        lang: language,
        tabindex: "-1",
        hidden: "",
        title: say("lineMenu"),
        "aria-label": say("lineMenu"),
        "aria-haspopup": "menu",
        "aria-expanded": "false",
        mousedown: (event) => event.preventDefault(),
        click: () => this.open(app.tree.current),
      },
      "⋯",
    );
    app.main.append(this.button);
  }

  /** Puts the button where the present row is. */
  place() {
    const { tree, view, main } = this.app;
    const item = tree.current;
    const box = item && view.isLaidOut(item) && boxOf(item.caption);
    const frame = boxOf(main);
    this.button.hidden = !box || !box.height;
    if (this.button.hidden) return;
    this.button.style.top = `${box.top - frame.top - main.clientTop}px`;
    this.button.style.right = `${frame.right - box.right}px`;
  }

  open(item) {
    const { app } = this;
    const entries = linksOf(item).map((link) => ({
      label: say("follow", link.textContent),
      act: () => link.click(),
    }));
    entries.push(
      { label: say("copyLink"), act: () => app.copy(app.linkTo(item)) },
      ...linkedItems(item).map(({ id, name }) => ({
        label: say("copyId", `${name} (${id})`),
        act: () => app.copy(id),
      })),
    );
    if (!item.isLine && item.isBranch)
      entries.push(
        { label: say("unfoldThis"), act: () => app.tree.foldBelow(item, true) },
        { label: say("foldThis"), act: () => app.tree.foldBelow(item, false) },
      );
    this.place();
    openMenu(this.button, say("lineMenu"), entries, item.element);
  }
}
