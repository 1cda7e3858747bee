import { App } from "./app.js";
import { holdContent, placeAsWritten, placeContent } from "./content.js";
import { listen, page } from "./dom.js";
import { language } from "./texts.js";

page.dataset.texts = language;
listen(window, "DOMContentLoaded", () => {
  try {
    new App(placeContent());
  } catch (error) {
    placeAsWritten();
    throw error;
  }
});
holdContent();
