// Reads the text of a PDF file that Chromium has printed; not of any other.

import zlib from "node:zlib";

function objectsOf(bytes) {
  const text = bytes.toString("latin1");
  const objects = new Map();
  for (const match of text.matchAll(/(\d+) 0 obj\n([\s\S]*?)\nendobj/g)) {
    const [, number, body] = match;
    const start = body.indexOf("stream\n");
    if (start < 0) objects.set(number, { head: body });
    else {
      const head = body.slice(0, start);
      const length = Number(/\/Length (\d+)/.exec(head)[1]);
      const raw = Buffer.from(body.slice(start + 7, start + 7 + length), "latin1");
      const isPacked = head.includes("/FlateDecode");
      objects.set(number, {
        head,
        content: () => (isPacked ? zlib.inflateSync(raw) : raw).toString("latin1"),
      });
    }
  }
  return objects;
}

const character = (hex) => Buffer.from(hex, "hex").swap16().toString("utf16le");

/** Glyph numbers of a font and the characters that they stand for. */
function readGlyphs(map) {
  const glyphs = new Map();
  for (const [, block] of map.matchAll(/beginbfchar([\s\S]*?)endbfchar/g))
    for (const [, glyph, text] of block.matchAll(/<(\w+)> <(\w+)>/g))
      glyphs.set(parseInt(glyph, 16), character(text));
  for (const [, block] of map.matchAll(/beginbfrange([\s\S]*?)endbfrange/g))
    for (const [, first, last, text] of block.matchAll(/<(\w+)> <(\w+)> <(\w+)>/g))
      for (
        let glyph = parseInt(first, 16), code = parseInt(text, 16);
        glyph <= parseInt(last, 16);
        ++glyph, ++code
      )
        glyphs.set(glyph, String.fromCharCode(code));
  return glyphs;
}

/** The text of all pages, in the order in which it was drawn. */
export function pdfText(bytes) {
  const objects = objectsOf(bytes);
  const fonts = new Map();
  for (const [number, { head }] of objects) {
    const map = /\/ToUnicode (\d+) 0 R/.exec(head);
    if (map) fonts.set(`F${number}`, readGlyphs(objects.get(map[1]).content()));
  }
  let text = "";
  for (const { head } of objects.values()) {
    const contents = /\/Type \/Page\n[\s\S]*\/Contents (\d+) 0 R/.exec(head);
    if (!contents) continue;
    let glyphs = new Map();
    const drawing = objects.get(contents[1]).content();
    for (const [, font, hex, end] of drawing.matchAll(/\/(F\d+) [\d.]+ Tf|<([0-9A-Fa-f]+)>|\b(ET)\b/g)) {
      if (font) glyphs = fonts.get(font) ?? new Map();
      else if (end) text += "\n";
      else for (const glyph of hex.match(/.{4}/g) ?? []) text += glyphs.get(parseInt(glyph, 16)) ?? "";
    }
  }
  return text;
}
