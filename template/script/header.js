import { build, listen, page } from "./dom.js";
import { kinds, linkedItems, nameOf } from "./item.js";
import { language, say, write } from "./texts.js";

const datePattern = /^\d{2}\.\d{2}\.\d{4} \d{2}:\d{2}:\d{2}$/;
const projectPattern = /^(?:Проект|Project): /;
const serviceLimit = 6;
const languageSample = 10000;

/** What the run says about itself: its title, and the date and project lines that close it. */
function readRun() {
  const title = page.querySelector("#lines > h1");
  const service = [...page.querySelectorAll(".serviceinfoblock > p.service")];
  const date = service.findLast((line) => datePattern.test(line.textContent));
  const project = service.findLast((line) => projectPattern.test(line.textContent));
  for (const line of [title, date, project]) line?.setAttribute("hidden", "");
  return {
    title: title?.textContent ?? "",
    date: date?.textContent ?? "",
    project: project?.textContent ?? "",
  };
}

/** The language in which most of a text's letters are; names may be in another one. */
function languageOf(markup) {
  const text = markup.replace(/<[^>]*>|&\w+;/g, "").slice(0, languageSample);
  const [russian, english] = [/[а-яё]/gi, /[a-z]/gi].map((letters) => text.match(letters)?.length ?? 0);
  if (russian === english) return language;
  return russian > english ? "ru" : "en";
}

/** On the page of an item every line names that item: its name, or an empty text. */
function itemName(lines) {
  let common = null;
  for (const line of lines) {
    const own = linkedItems(line);
    common = common?.filter(({ id }) => own.some((item) => item.id === id)) ?? own;
  }
  return common?.length === 1 ? common[0].name : "";
}

/** The parts of a page whose counts are told apart: the stages, or the protocols on the page of an item. */
function partsOf(model) {
  if (model.isItemPage) return model.trees.flatMap((tree) => tree.children.flatMap((root) => root.children));
  return model.trees.filter((tree) => tree.lists[0].closest(".stageblock")).flatMap((tree) => tree.children);
}

/** The sign of a kind; assistive software hears the kind's name unless it is `silent`. */
export const markOf = (kind, silent = false) => build("i", { class: `mark ${kind}`, "aria-hidden": silent });

function stageEntry(part, reveal) {
  const button = build(
    "button",
    { type: "button", click: () => reveal(part) },
    build("b", {}, nameOf(part) || "…"),
  );
  for (const kind of kinds) {
    const count = part.totals?.[kind];
    if (count) button.append(build("span", { title: say(kind) }, markOf(kind), write(count)));
  }
  return build("li", {}, button);
}

function verdictOf(counts, total, isFinished) {
  if (!total) return ["none", say("linesNone")];
  const state = counts.error ? "error" : counts.warning ? "warning" : "good";
  const errors = counts.error ? say("errorsAre", counts.error) : say("errorsNone");
  const warnings = counts.warning ? say("warningsAre", counts.warning) : say("warningsNone");
  return [state, [errors, warnings, ...(isFinished ? [] : [say("unfinished")])].join(", ")];
}

/** The verdict in signs, for a window that has no room for its words. */
function shortVerdict({ error, warning }, total) {
  if (!total) return "–";
  const parts = [error && `× ${write(error)}`, warning && `! ${write(warning)}`].filter(Boolean);
  return parts.join("  ") || "✓";
}

/** A long service block would push the tree out of sight: what is over the limit unfolds on demand. */
function foldService() {
  const lines = [...page.querySelectorAll(".serviceinfoblock > p.service:not([hidden])")];
  const rest = lines.slice(serviceLimit);
  if (rest.length < 3) return;
  for (const line of rest) {
    line.setAttribute("hidden", "until-found");
    listen(line, "beforematch", () => more.click());
  }
  const more = build(
    "button",
    {
      type: "button",
      class: "more",
      lang: language,
      click: () => {
        for (const line of rest) line.removeAttribute("hidden");
        more.remove();
      },
    },
    say("serviceMore", rest.length),
  );
  rest[0].before(more);
}

/** Fills the header: how the run went, before any scrolling. Answers what the run says about itself. */
export function fillHeader(model, reveal) {
  const find = (id) => page.querySelector(`body > :is(#head, #bar) #${id}`);
  const run = readRun();
  const { lines, records, totals, isItemPage } = model;
  run.language = languageOf([run.title, ...lines.slice(0, 100).map(({ markup }) => markup)].join(" "));
  if (isItemPage) run.title = [say("itemTitle"), itemName(lines)].filter(Boolean).join(": ");
  run.title ||= say("protocol");
  find("title").replaceChildren(run.title);
  find("facts").replaceChildren(
    ...[run.date, run.project].filter(Boolean).map((fact) => build("span", {}, fact)),
  );
  page.querySelector("title").textContent = [run.title, run.project].filter(Boolean).join(" – ");

  const [state, verdict] = verdictOf(totals, records.length, isItemPage || run.date);
  find("verdict").className = state;
  find("verdict").replaceChildren(verdict);
  find("verdict").dataset.short = shortVerdict(totals, records.length);

  const parts = partsOf(model);
  find("stages").hidden = !parts.length;
  find("stages").replaceChildren(...parts.map((part) => stageEntry(part, reveal)));
  find("stages").setAttribute("aria-label", say("stages"));
  foldService();
  const own = isItemPage ? ["stages"] : ["title", "facts", "stages"];
  for (const id of own) find(id).setAttribute("lang", run.language);
  return { ...run, counts: totals, parts };
}
