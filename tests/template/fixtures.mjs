// Pages as the library writes them around the assembled template, made here without the library.

const kinds = ["title", "service", "statistics", "error", "warning", "message"];

export const itemGroups = {
  // Item types whose lines are listed under one more level, a node per item.
  perItem: new Set(["Пункты", "Секции"]),
  general: "Общие",
};

export const project = "Проект 1";

/** The anchor of an item, as the library writes it. */
export function itemLink(id, name, type = "LevellingPoint") {
  const href = `survey://locate-item?type=${type}&id=${id}&project=${encodeURIComponent(project)}`;
  return `<a href="${href}">${name}</a>`;
}

const count = (lines) => (lines.length ? ` (${lines.length})` : "");
const expand = '<div class="Expand"></div>\n';
const caption = (text) => `<div class="Content">${text}</div>\n`;

function leafList(lines) {
  if (!lines.length) return "";
  const leaves = lines.map(
    ({ kind, text }) =>
      `<li class="Node ExpandLeaf IsLast">\n${expand}<div class="Content ${kinds.includes(kind) ? kind : ""}">${text}</div>\n</li>\n`,
  );
  return `<ul class="Container">\n${leaves.join("")}</ul>\n`;
}

function bucket(lines, keysOf) {
  const groups = new Map();
  for (const line of lines)
    for (const key of new Set(keysOf(line))) {
      if (!groups.has(key)) groups.set(key, []);
      groups.get(key).push(line);
    }
  return groups;
}

function itemNodes(lines, group) {
  const byItem = bucket(lines, (line) =>
    line.items.filter((item) => item.group === group).map((item) => item.id),
  );
  const nodes = [...byItem].map(([id, own]) => {
    const item = own[0].items.find((candidate) => candidate.id === id);
    return { title: itemLink(id, item.name), own };
  });
  nodes.sort((a, b) => (a.title < b.title ? -1 : 1));
  const html = nodes.map(
    ({ title, own }) =>
      `<li class="Node ExpandClosed">\n${expand}${caption(title + count(own))}${leafList(own)}</li>\n`,
  );
  return `<ul class="Container">\n${html.join("")}</ul>\n`;
}

function groupedBlocks(lines, root) {
  const problems = ["error", "warning"].flatMap((kind) => lines.filter((line) => line.kind === kind));
  const messages = lines.filter((line) => line.kind === "message");
  const top = `<li class="${root} IsLast ExpandOpen">\n${expand}`;
  let html = "";
  if (problems.length) {
    html += `<div class='errorblock'>\n<ul class="Container">\n${top}`;
    html += caption("Ошибки и предупреждения" + count(problems)) + '<ul class="Container">\n';
    const byType = bucket(problems, (line) =>
      line.items.length ? line.items.map((item) => item.group) : [itemGroups.general],
    );
    for (const [name, own] of byType) {
      html += `<li class="Node ExpandOpen">\n${expand}${caption(name + count(own))}`;
      html += itemGroups.perItem.has(name) ? itemNodes(own, name) : leafList(own);
      html += "</li>\n";
    }
    html += "</ul>\n</li>\n</ul>\n</div>\n";
  }
  if (messages.length) {
    html += `<div class='messageblock'>\n<ul class="Container">\n${top}`;
    html += caption("Сообщения" + count(messages)) + leafList(messages);
    html += "</li>\n</ul>\n</div>\n";
  }
  return html;
}

function stageBlocks(stages) {
  return stages
    .map(({ number, name, lines }) => {
      const state = number === 2 ? "ExpandOpen" : "ExpandClosed";
      return (
        `<div class='stageblock'>\n<ul class="Container">\n<li class="IsRoot IsLast ${state}">\n` +
        expand +
        caption(name + count(lines)) +
        (number === 2 ? leafList(lines) : groupedBlocks(lines, "Node")) +
        "</li>\n</ul>\n</div>\n"
      );
    })
    .join("");
}

function front({ title, service = [], statistics = [], reports }) {
  let html = title ? `<h1>${title}</h1>\n` : "";
  html += "<div class='serviceinfoblock'>\n";
  for (const line of service) html += `<p class='service'>${line}</p>\n`;
  if (reports) {
    html += "<div class='reportsblock'>\n<p class='service'>Ведомости:</p><ul class='service'>";
    for (const [id, name] of reports)
      html += `<li><a href="survey://generate-report?id=${id}&project=${encodeURIComponent(project)}">${name}</a></li>`;
    html += "</ul>\n</div>\n</div>\n";
  } else if (reports === null) html += "</div>\n";
  for (const line of statistics) html += `<p>${line}</p>\n`;
  return html;
}

/**
 * The generated part of a page. `reports`: list of [id, name]; null when there is a report generator and
 * nothing to report; undefined without report generator, which leaves the service block open.
 */
export function bodyOf(page) {
  if (page.layout === "item") return itemBody(page);
  let html = front(page);
  if (page.layout === "staged") html += stageBlocks(page.stages);
  else if (page.layout === "grouped") html += groupedBlocks(page.lines, "IsRoot");
  else html += leafList(page.lines.filter((line) => ["error", "warning", "message"].includes(line.kind)));
  return html;
}

function itemBody({ protocols }) {
  if (!protocols.length) return "";
  let html = `<div class='errorblock'>\n<ul class="Container">\n<li class="IsRoot IsLast ExpandOpen">\n`;
  html += expand + caption("Ошибки и предупреждения") + '<ul class="Container">\n';
  for (const { title, lines } of protocols)
    html += `<li class="Node ExpandOpen">\n${expand}${caption(title)}${leafList(lines)}</li>\n`;
  return html + "</ul>\n</li>\n</ul>\n</div>\n";
}

/** The whole page: the body goes before the template's last closing div tag. */
export function pageOf(template, body) {
  const split = template.toLowerCase().lastIndexOf("</div>");
  return template.slice(0, split) + body + template.slice(split);
}

/** Numbers that are the same in every run. */
function random(seed) {
  let state = seed;
  return (below) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * below);
  };
}

const point = (id) => ({ id, name: `Рп ${id}`, group: "Пункты" });
const section = (id) => ({ id: 100000 + id, name: `${id}–${id + 1}`, group: "Секции" });
const linkOf = (item) => itemLink(item.id, item.name, item.group === "Секции" ? "Section" : "LevellingPoint");

/** One line of a run, with the items that it names. */
function makeLine(next, index, items) {
  const mm = () => `${next(90)}.${next(10)}`;
  const roll = next(20);
  const a = point(1 + next(items));
  const b = section(1 + next(items));
  if (roll < 2) {
    const text = `Невязка хода через ${linkOf(a)} равна ${mm()} мм, допуск ${mm()} мм`;
    return { kind: "error", text, items: [a] };
  }
  if (roll < 4) {
    const text = `Секция ${linkOf(b)}: расхождение прямого и обратного превышений ${mm()} мм`;
    return { kind: "error", text, items: [b] };
  }
  if (roll < 9) {
    const text = `Высота пункта ${linkOf(a)} получена один раз, контроль по секции ${linkOf(b)} невозможен`;
    return { kind: "warning", text, items: [a, b] };
  }
  if (roll < 10) return { kind: "warning", text: `Строка ${index} исходного файла пропущена`, items: [] };
  if (roll < 14)
    return { kind: "message", text: `Пункт ${linkOf(a)}: поправка ${mm()} мм<br>СКО ${mm()} мм`, items: [a] };
  return { kind: "message", text: `Прочитано превышений: ${next(5000)}`, items: [] };
}

export function makeLines(total, { seed = 7, items = Math.max(5, Math.ceil(total / 20)) } = {}) {
  const next = random(seed);
  return Array.from({ length: total }, (_, index) => makeLine(next, index + 1, items));
}

const service = ["Расчёт начат оператором", "06.05.2024 14:03:27", `Проект: ${project}`];
const reports = [
  [738001, "Ведомость превышений"],
  [738002, "Каталог высот"],
];

/** A page model of a given layout with about `total` lines in its tree. */
export function makePage(layout, total) {
  const lines = makeLines(total);
  if (layout === "flat") return { layout, title: "Импорт", service, reports: null, lines };
  if (layout === "grouped") return { layout, title: "Предобработка", service, reports, lines };
  const [first, third] = [Math.floor(total * 0.3), Math.floor(total * 0.7)];
  const stages = [
    { number: 1, name: "Состав сети и предварительные высоты", lines: lines.slice(0, first) },
    { number: 2, name: "Результаты уравнивания", lines: lines.slice(first, third) },
    { number: 3, name: "Остаточные поправки", lines: lines.slice(third) },
  ];
  const statistics = ["СКО единицы веса: 2.05 мм", "Степеней свободы: 8"];
  return { layout, title: "Уравнивание", service, statistics, reports, stages };
}

const hostile = [
  "<script>window.injected = 'script'</script>скрипт",
  "<img src=x onerror=\"window.injected = 'onerror'\">картинка",
  "<a href=\"javascript:window.injected='link'\">ссылка</a>",
  "<b>незакрытый жирный",
  '<a href="survey://locate-item?type=LevellingPoint&id=5&project=x">незакрытая ссылка',
  "<form action='https://example.org/'><button>отправить</button></form>",
  '<style>*{display:none!important}</style><body onload="window.injected=\'body\'" hidden class="x">тело',
  "<svg onload=\"window.injected='svg'\"><div>рисунок",
  "<base href='https://example.org/'><h1>чужой заголовок</h1>",
  "лишний конец</div></div></div></div></main></body></html>хвост",
];

const plain = makeLines(40, { seed: 3, items: 6 });

/** The small pages: every layout, and the shapes that differ. Name to generated part. */
export const pages = {
  grouped: bodyOf({ ...makePage("grouped", 60), lines: makeLines(60, { items: 8 }) }),
  staged: bodyOf(makePage("staged", 60)),
  flat: bodyOf({ layout: "flat", title: "Импорт", service, reports: null, lines: plain }),
  clean: bodyOf({
    layout: "grouped",
    title: "Предобработка",
    service,
    reports: null,
    lines: plain.filter((line) => line.kind === "message"),
  }),
  empty: bodyOf({ layout: "flat", title: "Экспорт", service: service.slice(1), reports: null, lines: [] }),
  blank: "",
  item: bodyOf({
    layout: "item",
    protocols: ["Предобработка", "Уравнивание"].map((name, index) => ({
      title: `<a href="survey://generate-protocol?id=${305510145 + index}&project=x">${name}</a>`,
      lines: makeLines(400, { seed: index + 1, items: 9 })
        .filter((line) => line.items.some((item) => item.id === 4))
        .slice(0, 8)
        .concat({ kind: "service", text: `Обработан пункт ${itemLink(4, "Рп 4")}`, items: [point(4)] }),
    })),
  }),
  open: bodyOf({ ...makePage("grouped", 30), reports: undefined, statistics: ["Пунктов: 12"] }),
  "open-staged": bodyOf({ ...makePage("staged", 30), reports: undefined }),
  hostile: bodyOf({
    layout: "grouped",
    title: "Предобработка <i>&amp; проверка",
    service: [...service, "<b>незакрытая служебная"],
    reports: undefined,
    lines: [
      ...hostile.map((text, index) => ({ kind: index % 2 ? "warning" : "error", text, items: [] })),
      ...plain,
    ],
  }),
};

/** A page whose lines hide the document's own operations, from test tools as well. */
export const clobbering = bodyOf({
  layout: "flat",
  title: "Импорт",
  service,
  reports: null,
  lines: [
    ...[
      "body",
      "querySelector",
      "querySelectorAll",
      "createElement",
      "createRange",
      "activeElement",
      "title",
    ].map((name) => ({
      kind: "error",
      text: `<img name="${name}"><form name="${name}"></form>${name}`,
      items: [],
    })),
    ...plain,
  ],
});
