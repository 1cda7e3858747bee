import { App } from "./app.js";
import { holdContent, placeContent } from "./content.js";
import { listen, page } from "./dom.js";
import { language } from "./texts.js";

page.dataset.texts = language;
listen(window, "DOMContentLoaded", () => new App(placeContent()));
holdContent();
