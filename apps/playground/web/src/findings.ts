// What lint says: underlined in the text, marked in the margin, and listed.

import type { Diagnostic } from "@codemirror/lint";
import type { Text } from "@codemirror/state";

import { make } from "./dom";

export interface Position {
  line: number;
  column: number;
}

export interface Finding {
  rule: string;
  severity: "error" | "warning" | "note";
  line: number;
  column: number;
  message: string;
  count: number;
  why: string;
  what_to_do: string;
  places: Position[];
}

const mostPositions = 50; // of one finding
const mostMarks = 1000;
const mostRows = 300;

/** The offset of a position as the inspector counts: a column is a character, whatever the editor counts it as. */
export function offsetOf(text: Text, { line, column }: Position): number {
  if (line < 1 || line > text.lines) return 0;
  const found = text.line(line);
  let at = 0;
  for (let left = column - 1; left > 0 && at < found.length; left--) {
    at += (found.text.codePointAt(at) ?? 0) > 0xffff ? 2 : 1;
  }
  return found.from + at;
}

/** The word that begins at a position: a tag with its bracket, a name, a number. */
function endOfWord(text: Text, from: number): number {
  const line = text.lineAt(from);
  const word = /^<?\/?[\w.:-]+|^\S/.exec(line.text.slice(from - line.from));
  return Math.min(from + (word?.[0].length ?? 1), text.length);
}

/** Here the registers are in sight, and there is no command line. */
function remedyOf(finding: Finding): string {
  return `${finding.why} ${finding.what_to_do}`.replaceAll(" (give them with --memory or --register)", "");
}

export function diagnosticsOf(text: Text, findings: Finding[]): Diagnostic[] {
  const marks: Diagnostic[] = [];
  for (const finding of findings) {
    for (const position of finding.places.slice(0, mostPositions)) {
      if (position.line < 1 || position.line > text.lines) continue;
      const from = offsetOf(text, position);
      marks.push({
        from,
        to: endOfWord(text, from),
        severity: finding.severity === "note" ? "info" : finding.severity,
        source: finding.rule,
        message: `${finding.message}\n${remedyOf(finding)}`,
      });
    }
  }
  return marks.slice(0, mostMarks).sort((one, other) => one.from - other.from);
}

/** Why the text is no description, at its position. */
export function brokenAt(text: Text, position: Position, message: string): Diagnostic {
  const from = Math.min(offsetOf(text, position), text.length);
  return { from, to: endOfWord(text, from), severity: "error", source: "XML", message };
}

export function countsOf(findings: Finding[]): string {
  const words = ["error", "warning", "note"] as const;
  const parts = words.map((word) => {
    const count = findings.filter((one) => one.severity === word).reduce((sum, one) => sum + one.count, 0);
    return `${count} ${word}${count === 1 ? "" : "s"}`;
  });
  return parts.join(", ");
}

export function showList(list: HTMLElement, findings: Finding[], go: (position: Position) => void): void {
  list.replaceChildren(
    ...findings.slice(0, mostRows).map((finding) => {
      const times = finding.count > 1 ? ` (${finding.count} times)` : "";
      const where = finding.line > 0 ? `${finding.line}:${finding.column} ` : "";
      const line = make(
        "button",
        { type: "button", class: "finding" },
        make("span", { class: `severity ${finding.severity}` }, finding.severity),
        ` ${where}${finding.message}${times} `,
        make("span", { class: "rule" }, finding.rule),
      );
      line.addEventListener("click", () => go(finding));
      return make("li", {}, line, make("p", {}, remedyOf(finding)));
    }),
  );
}
