import { App } from "./app.js";
import { listen, page } from "./dom.js";
import { language } from "./texts.js";

page.dataset.script = "reading";
page.dataset.texts = language;
listen(window, "DOMContentLoaded", () => new App());
