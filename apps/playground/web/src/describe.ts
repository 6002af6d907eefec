// A feature in words: where it stands, what it is now, and where its value comes from, formulas and registers included.

import { make } from "./dom";

interface Source {
  role?: string;
  label?: string;
  name: string;
  element: string;
  value?: unknown;
  error?: string;
  register?: { address: number | string; bytes?: string; byte_order?: string; mask?: string };
  port?: string;
  formulas?: { element: string; name?: string; text: string; refusal?: string }[];
  variables?: { name: string; node?: string; value: unknown; kind?: string }[];
  sources?: Source[];
  told_above?: boolean;
  too_deep?: boolean;
}

export interface Described {
  name: string;
  kind: string;
  access: string;
  element: string;
  class: string;
  line: number;
  column: number;
  value?: unknown;
  unit?: string;
  error?: { message: string };
  min?: unknown;
  max?: unknown;
  display_name?: string;
  tool_tip?: string;
  implemented: boolean | null;
  available: boolean | null;
  locked: boolean | null;
  sources: Source;
  named_by: { name: string; role: string; enumeration?: string }[];
  invalidates: string[];
}

export interface DescribeEvents {
  /** The element of this name is to be shown in the text. */
  element(name: string): void;
  register(address: bigint): void;
}

function textOf(value: unknown): string {
  if (value === null || value === undefined) return "";
  return typeof value === "string" ? value : JSON.stringify(value);
}

function link(text: string, go: () => void): HTMLButtonElement {
  const made = make("button", { type: "button", class: "link" }, text);
  made.addEventListener("click", go);
  return made;
}

function row(name: string, ...value: (Node | string)[]): HTMLElement[] {
  return [make("dt", {}, name), make("dd", {}, ...value)];
}

function flag(value: boolean | null): string {
  return value === null ? "unknown" : value ? "yes" : "no";
}

function registerLine(source: Source, events: DescribeEvents): HTMLElement | undefined {
  const { register } = source;
  if (!register) return undefined;
  const address = BigInt(register.address);
  const at = `0x${address.toString(16).toUpperCase().padStart(8, "0")}`;
  const words = [register.byte_order, register.bytes, register.mask && `mask ${register.mask}`].filter(Boolean);
  return make("div", { class: "fact" }, "register ", link(at, () => events.register(address)), ` ${words.join(" ")}`);
}

function sourceItem(source: Source, events: DescribeEvents): HTMLLIElement {
  const how = [source.role, source.label].filter(Boolean).join(" ");
  const value = source.error === undefined ? ` = ${textOf(source.value)}` : ` (${source.error})`;
  const item = make(
    "li",
    {},
    how ? `${how}: ` : "",
    `${source.element} `,
    link(source.name, () => events.element(source.name)),
    source.value === undefined && source.error === undefined ? "" : value,
    source.told_above ? " (see above)" : "",
    source.too_deep ? " (too deep to go on)" : "",
  );
  for (const formula of source.formulas ?? []) {
    const name = [formula.element, formula.name].filter(Boolean).join(" ");
    item.append(make("div", { class: "fact" }, `${name}: `, make("code", {}, formula.text), formula.refusal ?? ""));
  }
  for (const variable of source.variables ?? []) {
    const from = variable.node ? ` from ${variable.node}` : "";
    item.append(make("div", { class: "fact" }, `${variable.name} = ${textOf(variable.value)}${from}`));
  }
  const register = registerLine(source, events);
  if (register) item.append(register);
  if (source.port) item.append(make("div", { class: "fact" }, source.port));
  const inner = source.sources ?? [];
  if (inner.length > 0) item.append(make("ul", {}, ...inner.map((one) => sourceItem(one, events))));
  return item;
}

export function showDescribed(into: HTMLElement, feature: Described, events: DescribeEvents): void {
  const value = feature.error ? feature.error.message : `${textOf(feature.value)} ${feature.unit ?? ""}`;
  const range = feature.min === undefined && feature.max === undefined
    ? []
    : row("range", `${textOf(feature.min)} to ${textOf(feature.max)}`);
  const named = feature.named_by.map((one) => link(`${one.name} (${one.role})`, () => events.element(one.name)));
  into.replaceChildren(
    make(
      "h3",
      {},
      link(feature.name, () => events.element(feature.name)),
      ` ${feature.element}, line ${feature.line}`,
    ),
    make(
      "dl",
      {},
      ...(feature.display_name ? row("display name", feature.display_name) : []),
      ...(feature.tool_tip ? row("tool tip", feature.tool_tip) : []),
      ...row("access", feature.access),
      ...row("implemented", flag(feature.implemented)),
      ...row("available", flag(feature.available)),
      ...row("locked", flag(feature.locked)),
      ...row("value", value),
      ...range,
    ),
    make("h4", {}, "Where it comes from"),
    make("ul", { class: "sources" }, sourceItem(feature.sources, events)),
    make("h4", {}, "What names it"),
    make("p", {}, ...(named.length > 0 ? named.flatMap((one) => [one, " "]) : ["nothing"])),
    make("h4", {}, "What a write makes stale"),
    make("p", {}, feature.invalidates.join(", ") || "nothing"),
  );
}
