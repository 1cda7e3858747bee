// Reads the text of a PDF file by Poppler's pdftotext.

import { execFileSync } from "node:child_process";

const options = ["-raw", "-nopgbrk", "-enc", "UTF-8", "-", "-"];

/** The text of all sheets, in the order in which it was drawn. */
export const pdfText = (bytes) => execFileSync("pdftotext", options, { input: bytes, encoding: "utf8" });
