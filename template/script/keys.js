const turns = { e: ["error", 1], E: ["error", -1], w: ["warning", 1], W: ["warning", -1] };

/** Carries out a key that means the same all over the page; true when it was one. */
function command(app, event) {
  const turn = turns[event.key];
  if (turn && !app.tree.continuesTyping(event)) app.turnTo(...turn);
  else if (event.key === "/") app.controls.query.select();
  else return false;
  return true;
}

/** A key pressed anywhere on the page. */
export function handleKey(app, event) {
  const { query } = app.controls;
  const isField = event.target.matches("input, textarea, dialog *, [role=menu] *");
  const isControlled = event.ctrlKey || event.metaKey;
  if (event.key === "F3" || (isControlled && event.code === "KeyF")) app.view.spread("find");
  if (isControlled && event.code === "KeyS") app.view.fill();
  if (event.target === query && event.key === "Escape" && query.value) {
    event.preventDefault();
    app.setFilters({ search: "" });
  }
  if (isField) return;
  if (!isControlled && !event.altKey && command(app, event)) {
    event.preventDefault();
    return;
  }
  if (!app.main.contains(event.target)) return;
  app.isMoved = true;
  if (app.tree.keyDown(event)) event.preventDefault();
}
