// The driver's calls, as they come.

import { make } from "./dom";

const mostLines = 500;

export class CallList {
  private count = 0;
  private scrolling = false;

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
    this.scroll();
  }

  /** A line between the calls, for something that is none. */
  note(text: string): void {
    this.list.append(make("li", { class: "note" }, text));
    this.scroll();
  }

  /** Once a frame: the height of the list is the height of all its lines. */
  private scroll(): void {
    if (this.scrolling) return;
    this.scrolling = true;
    requestAnimationFrame(() => {
      this.scrolling = false;
      this.list.scrollTop = this.list.scrollHeight;
    });
  }
}
