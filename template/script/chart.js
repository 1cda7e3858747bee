// A histogram of how the values of the run's lines lie to their limits.

import { build, listen } from "./dom.js";
import { ratioOf } from "./numbers.js";
import { language, say, write } from "./texts.js";

const step = 0.25;
// The last bar holds all from twice the limit on.
const bars = 9;
const [barWidth, gap, heading, height, footing] = [44, 4, 16, 60, 18];

/** The bar of a ratio. What reaches its limit is not over it yet. */
const barOf = (ratio) => Math.min(bars - 1, ratio === 1 ? 1 / step - 1 : Math.floor(ratio / step));

/** The search that finds the lines of a bar. */
function searchOf(at) {
  const [from, to] = [at * step, (at + 1) * step];
  const lower = `${say("ratio")}${from === 1 ? ">" : ">="}${write(from)}`;
  return at < bars - 1 ? `${lower} ${say("ratio")}${to === 1 ? "<=" : "<"}${write(to)}` : lower;
}

function barMarkup(count, at, largest) {
  const size = count ? Math.max(2, Math.round((count / largest) * height)) : 0;
  const x = at * (barWidth + gap);
  const [from, to] = [write(at * step), write((at + 1) * step)];
  const label = say(at < bars - 1 ? "chartPart" : "chartRest", from, to, write(count));
  const isOver = at * step >= 1;
  // A link of the drawing is reached by the keyboard as any other.
  const tag = count ? `a href="#" role="button" aria-label="${label}"` : "g";
  return (
    `<${tag} data-bar="${at}"${isOver ? ' class="over"' : ""}><title>${label}</title>` +
    `<rect class="ground" x="${x}" y="0" width="${barWidth}" height="${height}"></rect>` +
    `<rect class="bar" x="${x}" y="${height - size}" width="${barWidth}" height="${size}"></rect>` +
    `<text x="${x + barWidth / 2}" y="${height - size - 4}">${count ? write(count) : ""}</text></${tag[0]}>` +
    `<text x="${x}" y="${height + footing - 3}">${at < bars - 1 ? from : `≥ ${from}`}</text>`
  );
}

function draw(counts, search) {
  const total = counts.reduce((sum, count) => sum + count, 0);
  const over = counts.slice(1 / step).reduce((sum, count) => sum + count, 0);
  const largest = Math.max(...counts);
  const width = bars * (barWidth + gap);
  const limit = (barWidth + gap) / step - gap / 2;
  const figure = build("figure", { id: "chart", lang: language });
  figure.innerHTML =
    `<figcaption>${say("chart")} <b>${say("chartTold", over, total)}</b></figcaption>` +
    `<svg viewBox="-14 -${heading} ${width + 14} ${heading + height + footing}" width="${width + 14}" role="group"` +
    ` aria-label="${say("chart")}">${counts.map((count, at) => barMarkup(count, at, largest)).join("")}` +
    `<line x1="${limit}" x2="${limit}" y1="-${heading}" y2="${height}"></line></svg>`;
  listen(figure, "click", (event) => {
    const bar = event.target.closest("a[data-bar]");
    if (!bar) return;
    event.preventDefault();
    search(searchOf(Number(bar.dataset.bar)));
  });
  return figure;
}

/** Makes the histogram; where no line has a value and a limit there is none. */
export function makeChart(records, search) {
  const counts = Array(bars).fill(0);
  for (const line of records) {
    const ratio = ratioOf(line);
    if (ratio >= 0) ++counts[barOf(ratio)];
  }
  return counts.some(Boolean) ? draw(counts, search) : null;
}
