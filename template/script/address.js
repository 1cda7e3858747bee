import { kinds } from "./item.js";
import { orders } from "./order.js";

const pause = 250;
let timer = 0;

/**
 * What an address names: a line by its id or by its text, and filters if it tells any; and whether what the run
 * computed with has changed since.
 */
export function readAddress({ hash } = location) {
  const fragment = hash.slice(1);
  const values = new URLSearchParams(fragment);
  const isOutdated = values.has("outdated");
  if (!fragment.includes("=")) return { line: isOutdated ? "" : fragment, find: "", isOutdated };
  return {
    isOutdated,
    line: values.get("line") ?? "",
    find: values.get("find") ?? "",
    filters: {
      search: values.get("q") ?? "",
      hidden: (values.get("hide") ?? "").split(",").filter((kind) => kinds.includes(kind)),
      alike: values.has("alike"),
      order: orders.includes(values.get("sort")) ? values.get("sort") : "page",
      flat: values.has("list"),
    },
  };
}

/** The fragment that names a line and filters; of a line alone it is the line's id. */
export function fragmentOf(line, { search, hidden, alike, order, flat }, isOutdated = false) {
  if (!search && !hidden.length && !alike && order === "page" && !flat && !isOutdated)
    return line ? `#${line}` : "";
  const values = new URLSearchParams();
  if (isOutdated) values.set("outdated", "1");
  if (line) values.set("line", line);
  if (search) values.set("q", search);
  if (hidden.length) values.set("hide", hidden.join(","));
  if (alike) values.set("alike", "1");
  if (order !== "page") values.set("sort", order);
  if (flat) values.set("list", "1");
  return `#${values}`;
}

/** Writes the address when the user pauses: browsers refuse pages that write it too often. */
export function writeAddress(makeFragment) {
  clearTimeout(timer);
  timer = setTimeout(() => {
    const fragment = makeFragment();
    if (fragment === location.hash) return;
    try {
      history.replaceState(null, "", fragment || location.pathname + location.search);
    } catch {
      // A page without an address of its own has nothing to write.
    }
  }, pause);
}
