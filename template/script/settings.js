import { page } from "./dom.js";

const storageKey = "orvel-page";

function read() {
  try {
    return JSON.parse(localStorage.getItem(storageKey)) ?? {};
  } catch {
    return {};
  }
}

/** What is remembered for other pages: the theme, and whether alike lines are folded. */
export class Settings {
  values = read();

  get theme() {
    return this.values.theme ?? "system";
  }

  get alike() {
    return this.values.alike === true;
  }

  keep(changes) {
    // Another page may have kept something else since.
    this.values = { ...this.values, ...read(), ...changes };
    try {
      localStorage.setItem(storageKey, JSON.stringify(this.values));
    } catch {
      // Without storage the settings last as long as the page.
    }
  }

  showTheme() {
    if (this.theme === "light" || this.theme === "dark") page.dataset.theme = this.theme;
    else delete page.dataset.theme;
  }
}
