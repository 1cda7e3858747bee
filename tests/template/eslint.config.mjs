import js from "@eslint/js";

const names = (text) => Object.fromEntries(text.split(" ").map((name) => [name, "readonly"]));

const browser = names(
  "window document location history navigator localStorage performance console getComputedStyle " +
    "requestAnimationFrame setTimeout clearTimeout Node NodeFilter Document Highlight CSS ResizeObserver " +
    "URL URLSearchParams Blob Intl InputEvent HTMLElement Event",
);
const node = names("process Buffer URL console setTimeout");

const rules = {
  eqeqeq: "error",
  "no-shadow": "error",
  "no-var": "error",
  "prefer-const": "error",
  "no-unused-vars": "error",
  semi: "error",
};

export default [
  { ignores: ["**/node_modules/**"] },
  js.configs.recommended,
  { files: ["template/**/*.js"], languageOptions: { globals: browser }, rules },
  { files: ["tests/**/*.mjs"], languageOptions: { globals: { ...browser, ...node } }, rules },
];
