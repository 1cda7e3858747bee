// Taken before any line is read: a line with <img name="createElement"> hides the document's own operation.
export const page = document.documentElement;
export const makeElement = document.createElement.bind(document);
export const makeRange = document.createRange.bind(document);
export const elementAt = document.elementFromPoint.bind(document);
const makeWalker = document.createTreeWalker.bind(document);
const runCommand = document.execCommand.bind(document);

/** A new element with attributes (functions become listeners) and children. */
export function build(tag, attributes, ...children) {
  const made = makeElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (typeof value === "function") made.addEventListener(name, value);
    else if (value !== false) made.setAttribute(name, value);
  }
  made.append(...children);
  return made;
}

// What would take the focus or keys, or what opens only when the page is asked to.
const foreignAttributes = ["autofocus", "accesskey", "contenteditable", "tabindex", "popover"];

/** Takes from a part of the page what lines in it could still do; the policy does not keep them from all of it. */
export function disarm(part) {
  for (const name of foreignAttributes)
    for (const element of part.querySelectorAll(`[${name}]`)) element.removeAttribute(name);
  // Their text would be that of a control or of nothing, not the line's.
  for (const element of part.querySelectorAll("textarea, select, iframe, noembed, noframes, xmp"))
    element.replaceWith(element.textContent);
  for (const meta of part.querySelectorAll("meta")) meta.removeAttribute("http-equiv");
  // The policy blocks images; what stands for one must not trouble a screen reader.
  for (const image of part.querySelectorAll("img")) image.alt ||= "";
  // A row inside a caption is none.
  for (const row of part.querySelectorAll(".Content li")) row.className = "";
}

/** Sets an attribute, or takes it away when the value is null. Writes only what differs. */
export function writeAttribute(element, name, value) {
  if (value === null) {
    if (element.hasAttribute(name)) element.removeAttribute(name);
  } else if (element.getAttribute(name) !== String(value)) element.setAttribute(name, value);
}

/** The texts and line breaks inside an element, in order. */
export function* textParts(element) {
  const walker = makeWalker(element, NodeFilter.SHOW_TEXT | NodeFilter.SHOW_ELEMENT);
  while (walker.nextNode()) {
    const node = walker.currentNode;
    if (node.nodeType === Node.TEXT_NODE) yield node;
    else if (node.localName === "br") yield null;
  }
}

export const boxOf = (element) => element.getBoundingClientRect();

/** Scrolls the page down by so many pixels. */
export const scrollDown = (by) => window.scrollBy(0, by);

export const listen = (target, type, act, options) => target.addEventListener(type, act, options);

/** Gives focus to an element and leaves the page where it is. */
export const focusOn = (element) => element.focus({ preventScroll: true });

export const focused = Object.getOwnPropertyDescriptor(Document.prototype, "activeElement").get.bind(
  document,
);

export async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    const before = focused();
    const field = build("textarea", { readonly: "" });
    field.value = text;
    page.append(field);
    field.select();
    runCommand("copy");
    field.remove();
    if (before) focusOn(before);
  }
}

export function saveFile(name, type, text) {
  const address = URL.createObjectURL(new Blob([text], { type }));
  const link = build("a", { href: address, download: name });
  page.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(address), 60000);
}

/** Runs a generator's steps at once. */
export function finish(steps) {
  while (!steps.next().done);
}

const shortestWork = 12;

/** Runs a generator's steps when the browser is idle, for as long as it gives time, and what follows them. */
export function runIdle(steps, finished) {
  const soon = () => (window.requestIdleCallback ?? setTimeout)(work, { timeout: 500 });
  const work = (deadline) => {
    const end = performance.now() + Math.max(shortestWork, deadline?.timeRemaining() ?? 0);
    while (performance.now() < end) if (steps.next().done) return finished();
    soon();
  };
  soon();
}
