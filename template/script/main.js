import { App } from "./app.js";
import { holdContent, placeAsWritten, placeContent } from "./content.js";
import { listen } from "./dom.js";

listen(window, "DOMContentLoaded", () => {
  try {
    new App(placeContent());
  } catch (error) {
    placeAsWritten();
    throw error;
  }
});
holdContent();
