// The registers, 256 bytes at a time.

import { make, write } from "./dom";

const bytesARow = 16;
const rows = 16;

/** The lines of the engine, "0x00000100: 00 01 ...", as rows by their address. */
export function parseRegisters(lines: string): Map<bigint, number[]> {
  const found = new Map<bigint, number[]>();
  for (const line of lines.split("\n")) {
    const [address, contents] = line.split(":");
    if (!address || !contents) continue;
    found.set(
      BigInt(address),
      contents
        .trim()
        .split(" ")
        .map((byte) => parseInt(byte, 16)),
    );
  }
  return found;
}

export function hex(number: bigint | number, digits: number): string {
  return number.toString(16).toUpperCase().padStart(digits, "0");
}

export class RegisterView {
  private lines: string | undefined; // none of this camera's yet
  private contents = new Map<bigint, number[]>();
  private start = 0n;
  private wanted = -1n;
  private pages = "";
  private readonly drawn = new Map<HTMLInputElement, string>();

  constructor(
    private readonly table: HTMLTableElement,
    private readonly address: HTMLInputElement,
    private readonly known: HTMLSelectElement,
    private readonly poke: (address: string, byte: string) => void,
  ) {
    address.addEventListener("change", () => {
      const text = address.value.trim();
      if (/^(0x[0-9a-f]{1,16}|\d+)$/i.test(text)) this.goTo(BigInt(text));
    });
    known.addEventListener("change", () => {
      if (known.value) this.goTo(BigInt(known.value));
    });
    this.table.addEventListener("keydown", (event) => this.onKey(event));
  }

  goTo(address: bigint): void {
    this.start = (address / BigInt(bytesARow)) * BigInt(bytesARow);
    this.wanted = address;
    this.address.value = `0x${hex(this.start, 8)}`;
    this.draw();
  }

  /** Another camera: what it holds in place of the one before is no change. */
  begin(): void {
    this.lines = undefined;
  }

  /** What has changed stays marked until something changes again. */
  show(lines: string): void {
    if (lines === this.lines) return;
    const now = parseRegisters(lines);
    const first = this.contents.size === 0;
    this.contents = now;
    const pages = [...new Set([...now.keys()].map((row) => row - (row % 256n)))];
    this.offer(pages);
    const [page] = pages;
    if (first && page !== undefined) this.goTo(page);
    else this.draw();
    this.lines = lines;
  }

  private offer(pages: bigint[]): void {
    if (this.pages === pages.join()) return;
    this.pages = pages.join();
    this.known.replaceChildren(
      make("option", { value: "" }, `${pages.length} pages written`),
      ...pages.map((page) => make("option", { value: String(page) }, `0x${hex(page, 8)}`)),
    );
  }

  private byteAt(address: bigint): number {
    const row = address - (address % BigInt(bytesARow));
    return this.contents.get(row)?.[Number(address - row)] ?? 0;
  }

  /** Cells are kept, so that the focus stays and a change can be seen. */
  private draw(): void {
    if (this.table.tBodies.length === 0) this.build();
    const body = this.table.tBodies[0];
    for (let row = 0; row < rows; row++) {
      const cells = body?.rows[row]?.cells;
      if (!cells) continue;
      const address = this.start + BigInt(row * bytesARow);
      const head = cells[0];
      if (head) write(head, hex(address, 8));
      let letters = "";
      for (let at = 0; at < bytesARow; at++) {
        const byte = this.byteAt(address + BigInt(at));
        letters += byte >= 0x20 && byte < 0x7f ? String.fromCharCode(byte) : ".";
        this.drawByte(cells[at + 1]?.firstElementChild as HTMLInputElement, address + BigInt(at), byte);
      }
      const last = cells[bytesARow + 1];
      if (last) write(last, letters);
    }
    this.wanted = -1n;
  }

  private drawByte(cell: HTMLInputElement, address: bigint, byte: number): void {
    const text = hex(byte, 2);
    const at = `0x${hex(address, 8)}`;
    const changed = this.lines !== undefined && cell.dataset["address"] === at && cell.dataset["byte"] !== text;
    const wanted = address === this.wanted;
    const look = [at, text, changed, wanted].join();
    if (this.drawn.get(cell) === look) return;
    this.drawn.set(cell, look);
    cell.dataset["address"] = at;
    cell.dataset["byte"] = text;
    if (document.activeElement !== cell || changed) cell.value = text;
    cell.setAttribute("aria-label", `Byte at ${at}`);
    cell.classList.toggle("zero", byte === 0);
    cell.classList.toggle("changed", changed);
    cell.classList.toggle("wanted", wanted);
  }

  private build(): void {
    const body = this.table.createTBody();
    for (let row = 0; row < rows; row++) {
      const line = body.insertRow();
      line.append(make("th", { scope: "row" }));
      for (let at = 0; at < bytesARow; at++) line.insertCell().append(this.makeCell(row === 0 && at === 0));
      line.insertCell().className = "letters";
    }
  }

  private makeCell(first: boolean): HTMLInputElement {
    const cell = make("input", { maxlength: 2, spellcheck: "false", autocomplete: "off", tabindex: first ? 0 : -1 });
    cell.addEventListener("focus", () => {
      for (const other of this.table.querySelectorAll("input")) other.tabIndex = -1;
      cell.tabIndex = 0;
      cell.select();
    });
    cell.addEventListener("change", () => this.send(cell));
    return cell;
  }

  private send(cell: HTMLInputElement): void {
    const { address, byte } = cell.dataset;
    if (!address || !/^[0-9a-f]{1,2}$/i.test(cell.value)) {
      cell.value = byte ?? "00";
      return;
    }
    this.poke(address, cell.value.padStart(2, "0"));
  }

  private onKey(event: KeyboardEvent): void {
    const cells = [...this.table.querySelectorAll("input")];
    const at = cells.indexOf(event.target as HTMLInputElement);
    const steps: Record<string, number> = { ArrowRight: 1, ArrowLeft: -1, ArrowDown: bytesARow, ArrowUp: -bytesARow };
    const step = steps[event.key] ?? (event.key === "Enter" ? 1 : 0);
    const to = cells[at + step];
    if (at < 0 || step === 0 || !to) return;
    event.preventDefault();
    to.focus();
  }
}
