"use strict";

const page = document.documentElement;

function toggle(node, open) {
  node.classList.toggle("ExpandOpen", open);
  node.classList.toggle("ExpandClosed", !open);
  for (const child of node.children) {
    if (child.tagName !== "UL") continue;
    if (open) child.removeAttribute("hidden");
    else child.setAttribute("hidden", "until-found");
  }
}

page.dataset.script = "reading";
window.addEventListener("DOMContentLoaded", () => {
  for (const node of page.querySelectorAll(".ExpandClosed")) toggle(node, false);
  page.addEventListener("click", ({ target }) => {
    const node = target.closest(".Expand, .Content")?.parentElement;
    if (node?.matches(".ExpandOpen, .ExpandClosed") && !target.closest("a"))
      toggle(node, node.classList.contains("ExpandClosed"));
  });
  page.addEventListener("beforematch", ({ target }) => toggle(target.parentElement, true), true);
  page.dataset.script = "ready";
});
