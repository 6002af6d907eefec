// The driver's calls, as they come.

import { make } from "./dom";

const mostLines = 1000;

export class CallList {
  private count = 0;

  constructor(
    private readonly list: HTMLOListElement,
    writesOnly: HTMLInputElement,
    clear: HTMLButtonElement,
  ) {
    writesOnly.addEventListener("change", () => list.classList.toggle("writes-only", writesOnly.checked));
    clear.addEventListener("click", () => list.replaceChildren());
  }

  add(calls: string[]): void {
    if (calls.length === 0) return;
    const lines = calls.slice(-mostLines).map((line) => {
      const failed = !line.endsWith(", ok");
      const kind = /^(Set|CameraControl Set|VideoProcAmp Set) /.test(line) ? "write" : "read";
      return make("li", { class: `${kind}${failed ? " failed" : ""}`, "data-number": ++this.count }, line);
    });
    this.list.append(...lines);
    while (this.list.childElementCount > mostLines) this.list.firstElementChild?.remove();
    this.list.scrollTop = this.list.scrollHeight;
  }

  /** A line between the calls, for something that is none. */
  note(text: string): void {
    this.list.append(make("li", { class: "note" }, text));
    this.list.scrollTop = this.list.scrollHeight;
  }
}
