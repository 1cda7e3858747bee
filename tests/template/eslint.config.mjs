import js from "@eslint/js";

const names = (text) => Object.fromEntries(text.split(" ").map((name) => [name, "readonly"]));

const browser = names(
  "window document location history navigator localStorage sessionStorage performance console getComputedStyle " +
    "MutationObserver requestAnimationFrame setTimeout clearTimeout Node NodeFilter Document Highlight CSS ResizeObserver " +
    "self Worker URL URLSearchParams Blob Intl Event InputEvent KeyboardEvent DragEvent DataTransfer MouseEvent DOMException innerHeight innerWidth scrollY",
);
const node = names("process Buffer URL console setTimeout DOMParser");

const rules = {
  eqeqeq: "error",
  "no-var": "error",
  "prefer-const": "error",
  "no-unused-vars": ["error", { varsIgnorePattern: "^_$" }],
  semi: "error",
};

export default [
  { ignores: ["**/node_modules/**"] },
  js.configs.recommended,
  {
    files: ["template/**/*.js"],
    languageOptions: { globals: browser },
    rules: { ...rules, "no-shadow": "error" },
  },
  { files: ["tests/**/*.mjs"], languageOptions: { globals: { ...browser, ...node } }, rules },
];
