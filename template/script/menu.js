import { boxOf, build, focused, focusOn, listen, page } from "./dom.js";

let opened = null;

/** Closes the open menu, if there is one. */
export function closeMenu() {
  opened?.list.remove();
  opened?.owner.setAttribute("aria-expanded", "false");
  opened = null;
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

/**
 * Opens a menu below the element that owns it. `entries`: label, action and, for one of several choices,
 * whether it is the present one. Focus returns to `back`.
 */
export function openMenu(owner, label, entries, back = owner) {
  const wasOpen = opened?.owner === owner;
  closeMenu();
  if (wasOpen) return;
  const list = build("ul", { role: "menu", class: "menu", "aria-label": label });
  for (const [text, act, chosen] of entries) {
    const choice =
      chosen === undefined ? { role: "menuitem" } : { role: "menuitemradio", "aria-checked": chosen };
    const entry = build(
      "button",
      { type: "button", ...choice, tabindex: "-1", click: () => choose(act, owner) },
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
  const box = boxOf(owner);
  owner.closest("header, body").append(list);
  const width = list.offsetWidth;
  list.style.left = `${Math.max(8, Math.min(box.left, page.clientWidth - width - 8))}px`;
  const below = box.bottom + 4;
  const fits = below + list.offsetHeight < window.innerHeight;
  list.style.top = `${fits ? below : Math.max(8, box.top - list.offsetHeight - 4)}px`;
  opened = { owner, list, back };
  owner.setAttribute("aria-expanded", "true");
  list.querySelector("[aria-checked=true], button").focus({ preventScroll: true });
}

listen(page, "pointerdown", ({ target }) => {
  if (opened && !opened.list.contains(target) && !opened.owner.contains(target)) closeMenu();
});
listen(window, "scroll", closeMenu, { passive: true });
