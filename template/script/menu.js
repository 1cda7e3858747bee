import { boxOf, build, focused, focusOn, listen, page } from "./dom.js";
import { language } from "./texts.js";

let opened = null;

/** Closes the open menu, if there is one. */
export function closeMenu() {
  opened?.list.remove();
  opened?.owner.setAttribute("aria-expanded", "false");
  opened = null;
}

/** Puts the open menu where its owner is. */
export function placeMenu() {
  if (!opened) return;
  const { owner, list } = opened;
  const box = boxOf(owner);
  opened.top = box.top;
  list.style.left = `${Math.max(8, Math.min(box.left, page.clientWidth - list.offsetWidth - 8))}px`;
  const below = box.bottom + 4;
  const fits = below + list.offsetHeight < window.innerHeight;
  list.style.top = `${fits ? below : Math.max(8, box.top - list.offsetHeight - 4)}px`;
}

function choose(act, owner) {
  const back = opened?.back ?? owner;
  closeMenu();
  focusOn(back);
  act();
}

function step(list, key) {
  const entries = [...list.querySelectorAll("button")];
  const at = entries.indexOf(focused());
  const next = { ArrowDown: at + 1, ArrowUp: at - 1, Home: 0, End: -1 }[key];
  if (next === undefined) return false;
  entries.at(next % entries.length).focus();
  return true;
}

/** What an entry is for assistive software: an action, one of several choices, or something to put on and off. */
function roleOf({ isOn, isChoice }) {
  if (isOn === undefined) return { role: "menuitem" };
  return { role: isChoice ? "menuitemradio" : "menuitemcheckbox", "aria-checked": String(isOn) };
}

/**
 * Opens a menu below the element that owns it. An entry has a label, an action, and `isOn` when it can be on and off;
 * with `isChoice` it is one of several of which one is on. Focus returns to `back`.
 */
export function openMenu(owner, label, entries, back = owner) {
  const wasOpen = opened?.owner === owner;
  closeMenu();
  if (wasOpen) return;
  const list = build("ul", { role: "menu", class: "menu", lang: language, "aria-label": label });
  for (const { label: text, act, ...state } of entries) {
    const entry = build(
      "button",
      { type: "button", ...roleOf(state), tabindex: "-1", click: () => choose(act, owner) },
      text,
    );
    list.append(build("li", { role: "none" }, entry));
  }
  listen(list, "keydown", (event) => {
    if (event.key === "Escape" || event.key === "Tab") {
      closeMenu();
      focusOn(back);
    } else if (!step(list, event.key)) return;
    event.preventDefault();
    event.stopPropagation();
  });
  owner.closest("#bar, main").append(list);
  opened = { owner, list, back };
  placeMenu();
  owner.setAttribute("aria-expanded", "true");
  list.querySelector("[aria-checked=true], button").focus({ preventScroll: true });
}

listen(page, "pointerdown", ({ target }) => {
  if (opened && !opened.list.contains(target) && !opened.owner.contains(target)) closeMenu();
});
// A menu of the bar stays where it is while the page scrolls.
listen(window, "scroll", () => opened && Math.abs(boxOf(opened.owner).top - opened.top) > 1 && closeMenu(), {
  passive: true,
});
