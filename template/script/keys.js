const turns = { e: ["error", 1], E: ["error", -1], w: ["warning", 1], W: ["warning", -1] };
const places = { KeyE: "e", KeyW: "w", KeyF: "f", KeyS: "s", KeyX: "x", Slash: "/" };

/** The key that is meant: what it writes or, on another layout than a Latin one, what stands at its place. */
function meantKey(event) {
  const { key, code, shiftKey } = event;
  if (/^[a-z]$/i.test(key) && event.getModifierState("CapsLock"))
    return shiftKey ? key.toUpperCase() : key.toLowerCase();
  if (/^[a-z/]$/i.test(key) || key.length > 1) return key;
  const own = places[code];
  if (!own || (own === "/" && shiftKey)) return key;
  return shiftKey ? own.toUpperCase() : own;
}

/** Carries out a key that means the same all over the page; true when it was one. */
function command(app, event, key) {
  const turn = turns[key];
  if (turn && !app.tree.continuesTyping(event)) app.turnTo(...turn);
  else if (key === "s" && !app.tree.continuesTyping(event)) app.toggleWorstFirst();
  else if (key === "x" && !app.tree.continuesTyping(event)) app.toggleErrorsOnly();
  else if (key === "/") app.controls.query.select();
  else return false;
  return true;
}

/** A key pressed anywhere on the page. */
export function handleKey(app, event) {
  const { query } = app.controls;
  const isField = event.target.matches("input, textarea, dialog *, [role=menu] *");
  const isControlled = event.ctrlKey || event.metaKey;
  const key = meantKey(event);
  if (event.key === "F3" || (isControlled && key === "f")) app.view.spread();
  if (event.target === query && event.key === "Escape" && query.value) {
    event.preventDefault();
    app.setFilters({ search: "" });
  }
  if (isField) return;
  if (!isControlled && !event.altKey && command(app, event, key)) {
    event.preventDefault();
    return;
  }
  const isBesideTree = !app.view.rowOf(event.target) && event.target.closest("a, button");
  if (!app.main.contains(event.target) || isBesideTree) return;
  app.isMoved = true;
  if (app.tree.keyDown(event)) event.preventDefault();
}
