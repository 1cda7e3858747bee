import { countTotals } from "./counts.js";
import { build, page } from "./dom.js";
import { Branch, itemOf, kinds, treeOf } from "./item.js";

export const rowSelector = "li.Node, li.IsRoot";

/** The list around a row. A row that unclosed or stray tags have torn from its list is put back, or gets one. */
function listOf(row) {
  const parent = row.parentElement;
  if (parent.localName === "ul") return parent;
  const around = parent.closest("ul, li");
  if (around?.localName === "ul") {
    let torn = parent;
    while (torn.parentElement !== around) torn = torn.parentElement;
    torn.before(row);
    return around;
  }
  const before = row.previousElementSibling;
  const isGathered = before?.hasAttribute("data-gathered");
  const list = isGathered ? before : build("ul", { class: "Container", "data-gathered": "" });
  if (!isGathered) row.before(list);
  list.append(row);
  return list;
}

/** Takes up rows in document order. */
class Reader {
  items = [];
  lines = [];
  trees = [];
  #owners = new Map();

  /** The branch or the tree that a list belongs to. */
  #ownerOf(list) {
    let owner = this.#owners.get(list);
    if (owner) return owner;
    owner = itemOf(list.parentElement.closest(rowSelector));
    if (!owner) {
      owner = new Branch(null);
      owner.index = -1 - this.trees.length;
      this.trees.push(owner);
    }
    owner.addList(list);
    this.#owners.set(list, owner);
    return owner;
  }

  #add(item, owner) {
    item.index = item.number = this.items.push(item) - 1;
    owner.add(item);
    if (item.isLine) this.lines.push(item);
  }

  readRow(element) {
    const owner = this.#ownerOf(listOf(element));
    const item = new Branch(owner, element);
    const { className } = element;
    if (className.includes("ExpandLeaf"))
      item.setLine(item.caption.className.replace("Content ", ""), item.caption.innerHTML);
    else item.isOpen = !className.includes("ExpandClosed");
    this.#add(item, owner);
  }

  /** What the page's list holds whose rows are not there: lines, or branches of lines. */
  readList(list, content) {
    const owner = this.#ownerOf(list);
    for (const line of content.lines ?? []) this.#add(line, owner);
    for (const { caption, lines } of content.branches ?? []) {
      const branch = new Branch(owner);
      branch.setBranch(caption);
      this.#add(branch, owner);
      for (const line of lines) this.#add(line, branch);
    }
  }
}

/** Collects a branch and all in it, in the order of the page. */
function collectBranches(node, branches) {
  branches.push(node);
  for (const child of node.children) if (child.isBranch) collectBranches(child, branches);
}

/** Reads the page's rows. `lists`: the content of the page's lists whose rows are not there. */
export function readModel(lists) {
  const reader = new Reader();
  for (const element of page.querySelectorAll(`${rowSelector}, #lines ul`))
    if (element.localName === "li") reader.readRow(element);
    else if (lists.has(element)) reader.readList(element, lists.get(element));
  const { items, lines, trees } = reader;
  let stage = 0;
  for (const tree of trees) if (tree.lists[0].closest(".stageblock")) tree.stage = ++stage;
  const branches = [];
  for (const tree of trees) collectBranches(tree, branches);
  const isItemPage = lines.length > 0 && !page.querySelector(".serviceinfoblock");
  if (!isItemPage) joinRecords(branches);
  const records = lines.filter((line) => !line.isRepeat);
  const model = { items, trees, branches, lines, records, isItemPage };
  countTotals(model);
  return model;
}

/**
 * A record stands as a line in the list of each item that it names, a message in one list only. A list holds it
 * once, so that the n-th of equal lines in one list is the n-th of them in the other lists of the stage.
 */
function joinRecords(branches) {
  const stages = new Map();
  for (const node of branches) {
    const stage = treeOf(node).lists[0].closest(".stageblock");
    if (!stages.has(stage)) stages.set(stage, []);
    stages.get(stage).push(node);
  }
  for (const nodes of stages.values()) joinLines(nodes);
}

const idMark = "id=";
const idLength = 8;

/**
 * A number for the first and the last item that a line names; it tells most lines apart, and the whole line need not be
 * read for it. -1 for a line that names one item, as most do, and so can't repeat.
 */
function quickKeyOf({ markup }) {
  const first = markup.indexOf(idMark);
  const last = markup.lastIndexOf(idMark);
  if (first === last) return -1;
  let key = markup.length;
  for (const id of [first, last])
    for (let at = id + idMark.length; at < id + idMark.length + idLength; ++at)
      key = (Math.imul(key, 31) + markup.charCodeAt(at)) & 0x3fffffff;
  return key;
}

/** What is known of the lines of one stage that say the same: their `markup`, `records`, and where they stood last. */
class LineIndex {
  #byKey = new Map();
  #byMarkup = new Map();

  find(key, markup) {
    const known = this.#byKey.get(key);
    return !known || known.markup === markup ? known : this.#byMarkup.get(markup);
  }

  add(key, equals) {
    if (this.#byKey.has(key)) this.#byMarkup.set(equals.markup, equals);
    else this.#byKey.set(key, equals);
  }
}

function joinLines(nodes) {
  const indices = new Map(kinds.map((kind) => [kind, new LineIndex()]));
  for (const node of nodes)
    for (const line of node.children) {
      const key = line.isLine && line.kind !== "message" ? quickKeyOf(line) : -1;
      if (key < 0) continue;
      const index = indices.get(line.kind);
      const found = index.find(key, line.markup);
      if (!found) {
        index.add(key, { markup: line.markup, records: [line], node, at: 0 });
        continue;
      }
      found.at = found.node === node ? found.at + 1 : 0;
      found.node = node;
      line.record = found.records[found.at] ??= line;
      if (line.isRepeat) line.record.repeats = [...line.record.repeats, line];
    }
}
