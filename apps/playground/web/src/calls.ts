// The driver's calls, as they come.

import { make } from "./dom";

const mostLines = 500;
const linesABlock = 50;
const lineHeight = 17; // px, as in the style sheet

interface Line {
  text: string;
  look: string;
  number?: number;
}

function lookOf(call: string): string {
  const kind = /^(Set|CameraControl Set|VideoProcAmp Set) /.test(call) ? "write" : "read";
  return call.endsWith(", ok") ? kind : `${kind} failed`;
}

/**
 * Lines come into the list once a frame, behind the controls that a user looks at. They stand in blocks, of which the
 * browser lays out and draws those in sight alone: a block is cheap to watch, where each line by itself would cost every
 * frame more than all else on the page.
 */
export class CallList {
  private count = 0;
  private waiting: Line[] = [];
  private last: HTMLOListElement | undefined;

  constructor(
    private readonly list: HTMLElement,
    writesOnly: HTMLInputElement,
    clear: HTMLButtonElement,
  ) {
    writesOnly.addEventListener("change", () => list.classList.toggle("writes-only", writesOnly.checked));
    clear.addEventListener("click", () => {
      this.waiting = [];
      list.replaceChildren();
    });
  }

  add(calls: string[]): void {
    this.take(calls.map((text) => ({ text, look: lookOf(text), number: ++this.count })));
  }

  /** A line between the calls, for something that is none. */
  note(text: string): void {
    this.take([{ text, look: "note" }]);
  }

  private take(lines: Line[]): void {
    if (lines.length === 0) return;
    if (this.waiting.length === 0) requestAnimationFrame(() => this.draw());
    // A browser draws nothing while its window is out of sight.
    this.waiting = [...this.waiting, ...lines].slice(-mostLines);
  }

  private draw(): void {
    const lines = this.waiting;
    this.waiting = [];
    for (let at = 0; at < lines.length; ) {
      const block = this.blockWithRoom();
      const some = lines.slice(at, at + linesABlock - block.childElementCount);
      block.append(...some.map(({ text, look, number }) => make("li", { class: look, "data-number": number }, text)));
      block.style.containIntrinsicBlockSize = `auto ${block.childElementCount * lineHeight}px`;
      at += some.length;
    }
    while (this.list.childElementCount > mostLines / linesABlock + 1) this.list.firstElementChild?.remove();
    this.list.scrollTop = this.list.scrollHeight;
  }

  private blockWithRoom(): HTMLOListElement {
    const { last } = this;
    if (last?.isConnected && last.childElementCount < linesABlock) return last;
    const made = make("ol");
    this.list.append(made);
    this.last = made;
    return made;
  }
}
