// What the page says, in Russian and in English.
const texts = {
  protocol: ["Протокол", "Protocol"],
  itemTitle: ["Строки об объекте", "Lines about an item"],
  field: ["Поиск по строкам", "Search the lines"],
  fieldHint: ['Поиск: слово -кроме "фраза" /выражение/', 'Search: word -not "phrase" /regex/'],
  kinds: ["Виды строк", "Kinds of lines"],
  error: ["Ошибки", "Errors"],
  warning: ["Предупреждения", "Warnings"],
  message: ["Сообщения", "Messages"],
  other: ["Прочие", "Other"],
  errorOne: ["ошибка", "error"],
  warningOne: ["предупреждение", "warning"],
  messageOne: ["сообщение", "message"],
  otherOne: ["прочее", "other"],
  shown: ["Показано строк: {0} из {1}", "{0} of {1} lines shown"],
  places: ["вхождений: {0}", "occurrences: {0}"],
  alike: ["Похожие ×n", "Similar ×n"],
  alikeHint: [
    "Свернуть строки, которые различаются только числами",
    "Fold lines that differ in numbers only",
  ],
  foldAlike: ["Свернуть похожие", "Fold similar lines"],
  errorsAre: ["Ошибок: {0}", "Errors: {0}"],
  errorsNone: ["Ошибок нет", "No errors"],
  warningsAre: ["предупреждений: {0}", "warnings: {0}"],
  warningsNone: ["предупреждений нет", "no warnings"],
  linesNone: ["Строк нет", "No lines"],
  unfinished: ["обработка не завершена", "run not finished"],
  outdated: [
    "Протокол устарел: после этой обработки сеть или её класс изменены.",
    "This protocol is out of date: the network or its class was changed after the run.",
  ],
  stages: ["По этапам", "By stage"],
  branches: ["Ветви", "Branches"],
  unfoldAll: ["Развернуть всё", "Unfold all"],
  foldAll: ["Свернуть всё", "Fold all"],
  toLevel: ["До уровня {0}", "To level {0}"],
  unfoldThis: ["Развернуть ветвь", "Unfold this branch"],
  foldThis: ["Свернуть ветвь", "Fold this branch"],
  export: ["Экспорт", "Export"],
  copyAs: ["Копировать как {0}", "Copy as {0}"],
  saveAs: ["Сохранить как {0}", "Save as {0}"],
  txt: ["текст", "text"],
  csv: ["CSV", "CSV"],
  json: ["JSON", "JSON"],
  view: ["Вид", "View"],
  themeSystem: ["Тема: как в системе", "Theme: as the system"],
  themeLight: ["Тема: светлая", "Theme: light"],
  themeDark: ["Тема: тёмная", "Theme: dark"],
  print: ["Печать…", "Print…"],
  help: ["Поиск и клавиши", "Search and keys"],
  close: ["Закрыть", "Close"],
  errorBack: ["Предыдущая ошибка (E)", "Previous error (E)"],
  errorOn: ["Следующая ошибка (e)", "Next error (e)"],
  warningBack: ["Предыдущее предупреждение (W)", "Previous warning (W)"],
  warningOn: ["Следующее предупреждение (w)", "Next warning (w)"],
  toStage: ["К этапу: {0}", "To stage: {0}"],
  tree: ["Строки протокола", "Protocol lines"],
  lineGone: [
    "Строки, к которой ведёт ссылка, на этой странице больше нет",
    "The line that the link names is no longer on this page",
  ],
  below: ["ниже {0} из {1}", "{0} of {1} below"],
  someOf: ["{0} из {1}", "{0} of {1}"],
  linesMissing: [
    "Строки без места в дереве посчитаны в подписях, но не показаны: {0}.",
    "Captions count lines that have no place in the tree and are not shown: {0}.",
  ],
  noneOf: ["Таких строк среди показанных нет", "There is no such line among those shown"],
  lineMenu: ["Действия со строкой", "Actions on the line"],
  copyLink: ["Копировать ссылку на строку", "Copy link to this line"],
  copyId: ["Копировать id: {0}", "Copy item id: {0}"],
  follow: ["Перейти: {0}", "Go to {0}"],
  copied: ["Скопировано", "Copied"],
  badPattern: [
    "Выражение не закончено или неверно: строки не скрыты",
    "The expression is unfinished or wrong: no line is hidden",
  ],
  many: [
    "Строк: {0}. Поиск ждёт паузы в наборе, поиск браузера и печать готовятся дольше.",
    "Lines: {0}. Search waits for a pause in typing; the browser's own search and printing take longer.",
  ],
  slowPattern: [
    "Выражение выполняется слишком долго: строки не скрыты",
    "The expression takes too long: no line is hidden",
  ],
  worst: ["Худшие сверху", "Worst first"],
  worstHint: [
    "Одним списком: сначала дальше всего за допуском, иначе наибольшие (s)",
    "In one list: farthest over the limit first, or else the largest (s)",
  ],
  errorsOnly: ["Только ошибки (x)", "Errors only (x)"],
  orderpage: ["Порядок: как в протоколе", "Order: as in the protocol"],
  ordertext: ["Порядок: по тексту", "Order: by text"],
  ordersize: ["Порядок: по величине", "Order: by size"],
  orderratio: ["Порядок: по отношению к допуску", "Order: by ratio to the limit"],
  flat: ["Одним списком", "In one list"],
  turned: ["{0} {1} из {2}", "{0} {1} of {2}"],
  wentRound: ["{0} {1} из {2}, снова с начала", "{0} {1} of {2}, from the start again"],
  wentBack: ["{0} {1} из {2}, снова с конца", "{0} {1} of {2}, from the end again"],
  ratio: ["отношение", "ratio"],
  chart: ["Отношение величины к допуску", "Ratio of value to limit"],
  chartTold: ["Сверх допуска: {0} из {1}", "Over the limit: {0} of {1}"],
  chartPart: ["от {0} до {1}: {2}", "{0} to {1}: {2}"],
  chartRest: ["от {0}: {2}", "from {0}: {2}"],
  hiddenKinds: ["скрыты: {0}", "hidden: {0}"],
  searched: ["поиск: {0}", "search: {0}"],
  folded: ["похожие свёрнуты", "similar lines folded"],
  serviceMore: ["Ещё служебные строки: {0}", "More service lines: {0}"],
  kind: ["вид", "kind"],
  path: ["ветвь", "branch"],
  text: ["текст", "text"],
  items: ["объекты", "items"],
  repeated: [
    "Строка о нескольких объектах стоит у каждого из них, но считается один раз; «вхождений» – сколько раз показанные строки стоят в дереве.",
    "A line about several items stands under each but counts once; “occurrences” tells how often the lines shown stand in the tree.",
  ],
};

// What to type, and what it does.
const help = [
  [
    ["слово слово", "word word"],
    "строки, где есть все слова, также в подписях ветвей",
    "lines with all the words, in captions of branches, too",
  ],
  [["-слово", "-word"], "строки без слова", "lines without the word"],
  [['"слово слово"', '"word word"'], "целые слова подряд", "whole words in a row"],
  [
    ["/выражение/", "/regex/"],
    "строки, которым отвечает регулярное выражение",
    "lines that the regular expression matches",
  ],
  [["-/выражение/", "-/regex/"], "строки, которым оно не отвечает", "lines that it does not match"],
  [">80  <5  12..15", "строки с таким числом", "lines with such a number"],
  [
    ["мм>80  v=1..2", "mm>80  v=1..2"],
    "с таким числом при единице или имени",
    "with such a number beside a unit or name",
  ],
  [["отношение>1", "ratio>1"], "где величина больше допуска", "with a value over its limit"],
  [
    ["вид:ошибка  этап:2  объект:12", "kind:error  stage:2  item:12"],
    "вида, этапа, об объекте",
    "of a kind, of a stage, about an item",
  ],
  ["↑ ↓ Home End", "по строкам", "through the lines"],
  ["→ ←", "развернуть, свернуть, внутрь, наружу", "unfold, fold, inwards, outwards"],
  ["*", "развернуть соседние ветви", "unfold sibling branches"],
  ["e E", "следующая и предыдущая ошибка", "next and previous error"],
  ["w W", "следующее и предыдущее предупреждение", "next and previous warning"],
  ["x", "только ошибки", "errors only"],
  ["s", "худшие сверху, одним списком", "worst first, in one list"],
  [
    ["Enter, пробел", "Enter, Space"],
    "перейти по ссылке строки, развернуть или свернуть ветвь",
    "follow the line's link, unfold or fold the branch",
  ],
  ["Shift+F10", "действия со строкой", "actions on the line"],
  ["/, Esc", "к полю поиска; очистить его", "to the search field; empty it"],
  [["буквы", "letters"], "к строке, которая с них начинается", "to the line that begins with them"],
];

export const language = /^ru\b/i.test(navigator.language) ? "ru" : "en";
const own = language === "ru" ? 0 : 1;

const numbers = new Intl.NumberFormat(language);

/** A number as the language writes it, with a true minus. */
export const write = (number) => numbers.format(number).replace("-", "\u2212");

/** The rows of the help: what to type, and what it does. */
export const helpRows = () =>
  help.map(([typed, ...meanings]) => [typeof typed === "string" ? typed : typed[own], meanings[own]]);

/** The text of a key with its places filled; numbers are written as the language does. */
export function say(key, ...values) {
  return texts[key][own].replace(/\{(\d)\}/g, (_, place) => {
    const value = values[place];
    return typeof value === "number" ? write(value) : value;
  });
}
