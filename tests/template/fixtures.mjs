// What the runs of the test pages write.

export const project = "Проект 1";

/** The protocol types; those with a layout of their own come first. */
export const protocolTypes = {
  Compile: 305510145,
  Adjust: 305510146,
  UndefProtocol: 305510144,
  L1Analysis: 305510147,
  Import: 305510148,
  Export: 305510149,
  ImportTemplate: 305510150,
  FixedPointsAnalysis: 305510151,
  AutoChainTracingAnalysis: 305510152,
  CalcTacheometry: 305510153,
};

/** The items' types; lines about both are listed under one more level, a node per item. */
export const itemTypes = {
  LevellingPoint: { value: 0x6dcd3700, singular: "пункт", plural: "пункты" },
  LevellingSection: { value: 0x6dcd3704, singular: "секция", plural: "секции" },
};

export const point = (id, name = `Рп ${id}`) => ({ id, name, type: "LevellingPoint" });
export const section = (id) => ({ id: 100000 + id, name: `${id}–${id + 1}`, type: "LevellingSection" });

/** The anchor of an item, as the library writes it. */
export const linkTo = ({ id, name, type }) =>
  `<a href="survey://locate-item?type=${type}&id=${id}&project=${encodeURIComponent(project)}">${name}</a>`;

/** Numbers that are the same in every run. */
export function random(seed) {
  let state = seed;
  return (below) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * below);
  };
}

/** One line of a run. */
function makeLine(next, index, items) {
  const mm = () => `${next(90)}.${next(10)}`;
  const roll = next(20);
  const a = point(1 + next(items));
  const b = section(1 + next(items));
  if (roll < 2) {
    const text = `Невязка хода через ${linkTo(a)} равна ${mm()} мм, допуск ${mm()} мм`;
    return { kind: "error", text };
  }
  if (roll < 4) {
    const text = `Секция ${linkTo(b)}: расхождение прямого и обратного превышений ${mm()} мм`;
    return { kind: "error", text };
  }
  if (roll < 9) {
    const text = `Высота пункта ${linkTo(a)} получена один раз, контроль по секции ${linkTo(b)} невозможен`;
    return { kind: "warning", text };
  }
  if (roll < 10) return { kind: "warning", text: `Строка ${index} исходного файла пропущена` };
  if (roll < 14) return { kind: "message", text: `Пункт ${linkTo(a)}: поправка ${mm()} мм\nСКО ${mm()} мм` };
  return { kind: "message", text: `Прочитано превышений: ${next(5000)}` };
}

export function makeLines(total, { seed = 7, items = Math.max(5, Math.ceil(total / 20)) } = {}) {
  const next = random(seed);
  return Array.from({ length: total }, (_, index) => makeLine(next, index + 1, items));
}

const service = "Расчёт начат оператором";

/**
 * A run of a layout with about `total` lines. `hasReports`: the project has a report generator; without one the
 * library leaves the service block open.
 */
export function makeRun(layout, total, lines = makeLines(total)) {
  const own = { service: [service], hasReports: true };
  if (layout === "flat") return { ...own, type: "Import", lines };
  if (layout === "grouped") return { ...own, type: "Compile", lines };
  const [first, third] = [Math.floor(total * 0.3), Math.floor(total * 0.7)];
  const stages = [
    { name: "Состав сети и предварительные высоты", lines: lines.slice(0, first) },
    { name: "Результаты уравнивания", lines: lines.slice(first, third) },
    { name: "Остаточные поправки", lines: lines.slice(third) },
  ];
  const statistics = ["СКО единицы веса: 2.05 мм", "Степеней свободы: 8"];
  return { ...own, type: "Adjust", statistics, stages };
}

/** A page with one error, of this text, among other lines. */
export function runAround(text) {
  const lines = makeLines(30);
  lines[12] = { kind: "error", text };
  return makeRun("flat", 30, lines);
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

/** What hides the document's own operations, from test tools as well. */
const clobbering = [
  "body",
  "querySelector",
  "querySelectorAll",
  "createElement",
  "createRange",
  "activeElement",
  "title",
].map((name) => ({ kind: "error", text: `<img name="${name}"><form name="${name}"></form>${name}` }));

const few = makeLines(12, { seed: 5, items: 4 });

/** The runs of the small pages: every layout, the shapes that differ, and every protocol type. */
export const runs = {
  // Before other runs of the same project name the item, too.
  item: {
    item: 4,
    hasReports: true,
    runs: ["Compile", "Adjust"].map((type, index) => ({
      type,
      lines: makeLines(400, { seed: index + 1, items: 9 })
        .filter(({ text }) => text.includes(linkTo(point(4))))
        .slice(0, 8)
        .concat({ kind: "service", text: `Обработан пункт ${linkTo(point(4))}` }),
    })),
  },
  grouped: makeRun("grouped", 60, makeLines(60, { items: 8 })),
  staged: makeRun("staged", 60),
  flat: makeRun("flat", 40, plain),
  clean: makeRun(
    "grouped",
    40,
    plain.filter((line) => line.kind === "message"),
  ),
  empty: { type: "Export", lines: [], hasReports: true },
  /** The page of an item that no line names: the bare template. */
  blank: { item: 77777, runs: [], hasReports: true },
  open: { ...makeRun("grouped", 30), hasReports: false, statistics: ["Пунктов: 12"] },
  "open-staged": { ...makeRun("staged", 30), hasReports: false },
  hostile: {
    type: "Compile",
    service: [service, "<b>незакрытая служебная"],
    hasReports: false,
    lines: [
      ...hostile.map((text, index) => ({ kind: ["error", "warning", "message"][index % 3], text })),
      ...plain,
    ],
  },
  clobbering: { type: "Import", hasReports: false, lines: [...clobbering, ...plain] },
  ...Object.fromEntries(
    Object.keys(protocolTypes).map((type) => [`type-${type}`, { type, lines: few, hasReports: true }]),
  ),
};

/** The lines of a run's page, each once, with the text that a reader sees. */
export function recordsOf({ lines, stages, runs: parts }) {
  const all = lines ?? (stages ?? parts).flatMap((part) => part.lines);
  const seen = (text) => text.replace(/<[^>]*>/g, "");
  return all.map(({ kind, text }) => ({ kind, text: seen(text) }));
}
