// How the library writes rows, and what their markup says.

/** A row of a line up to the class of its caption, and what follows the line. */
export const rowStart =
  '<li class="Node ExpandLeaf IsLast">\n<div class="Expand"></div>\n<div class="Content ';
export const styleEnd = '">';
export const rowEnd = "</div>\n</li>";
export const listStart = '<ul class="Container"';
export const foldedBranchStart =
  '<li class="Node ExpandClosed">\n<div class="Expand"></div>\n<div class="Content">';
export const plainLink = /<a href="([^"<>]*)">([^<]*)<\/a>/g;
const [linkStart, linkEnd, lineBreak] = ['<a href="', "</a>", "<br>"];

/** Where the whole link ends that begins at a place of markup, and where its text begins; null when there is none. */
function linkAt(markup, at) {
  if (!markup.startsWith(linkStart, at)) return null;
  const quote = markup.indexOf('"', at + linkStart.length);
  const end = markup.indexOf("<", at + 1);
  const isWhole = end > quote && markup.indexOf(">", at) === quote + 1 && markup.startsWith(linkEnd, end);
  return isWhole ? { from: quote + 2, to: end } : null;
}

/** The text of markup that is but text, line breaks and whole links, and so can't reach beyond its element; else null. */
export function plainText(markup) {
  let text = "";
  let from = 0;
  for (let at = markup.indexOf("<"); at >= 0; at = markup.indexOf("<", from)) {
    text += markup.slice(from, at);
    const link = linkAt(markup, at);
    if (link) {
      text += markup.slice(link.from, link.to);
      from = link.to + linkEnd.length;
    } else if (markup.startsWith(lineBreak, at)) {
      text += "\n";
      from = at + lineBreak.length;
    } else return null;
  }
  text += markup.slice(from);
  return text.includes("&") ? null : text;
}
