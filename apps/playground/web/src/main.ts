// The playground: what happens when.

import { CallList } from "./calls";
import { showDescribed } from "./describe";
import { byId, make, moveWithArrows } from "./dom";
import { Editor } from "./editor";
import { elementsAt, findElement, type NamedElement } from "./elements";
import { decode, encode, type FileForm, plainForm } from "./encoding";
import { EngineClient, type EngineEnded } from "./engine";
import { brokenAt, countsOf, diagnosticsOf, type Finding, offsetOf, showList } from "./findings";
import { Inspector } from "./inspector";
import { Pages } from "./pages";
import type { Access, Answer, Request } from "./protocol";
import { RegisterView } from "./registers";
import { forget, keep, kept } from "./store";

const editDelay = 25; // ms between the last key and new pages
const lintDelay = 250;
const keepDelay = 500;

async function compileEngine(): Promise<WebAssembly.Module> {
  const packed = byId("engine").textContent ?? "";
  const bytes = Uint8Array.from(atob(packed.trim()), (character) => character.charCodeAt(0));
  const code = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
  return WebAssembly.compile(await new Response(code).arrayBuffer());
}

/** Runs the last of what comes in while it runs. */
function latest(work: () => Promise<void>): () => void {
  let running = false;
  let again = false;
  const run = async (): Promise<void> => {
    if (running) {
      again = true;
      return;
    }
    running = true;
    try {
      await work();
    } finally {
      running = false;
      if (again) {
        again = false;
        void run();
      }
    }
  };
  return () => void run();
}

function after(delay: number, work: () => void): () => void {
  let timer: ReturnType<typeof setTimeout> | undefined;
  return () => {
    clearTimeout(timer);
    timer = setTimeout(work, delay);
  };
}

class Playground {
  private readonly access = byId<HTMLSelectElement>("access");
  private readonly status = byId("status");
  private readonly trouble = byId("trouble");
  private readonly panel = byId("page-panel");
  private readonly findingsBox = byId("findings-box");
  private readonly module = compileEngine();
  private readonly code = byId("worker").textContent ?? "";
  private readonly inspector = new Inspector(new EngineClient(this.code, this.module));
  private readonly calls = new CallList(
    byId("calls"),
    byId<HTMLInputElement>("writes-only"),
    byId<HTMLButtonElement>("clear-calls"),
  );
  private readonly registers = new RegisterView(
    byId<HTMLTableElement>("registers"),
    byId<HTMLInputElement>("address"),
    byId<HTMLSelectElement>("known-pages"),
    (address, bytes) => void this.poke(address, bytes),
  );
  private readonly engine = new EngineClient(this.code, this.module);
  private readonly pages = new Pages(this.engine, {
    answered: (answer) => this.onAnswer(answer),
    chosen: (feature) => this.onControl(feature),
    busy: (waits) => this.setBusy({ waits }),
    ended: (failure, request, feature) => this.onEnded(failure, request, feature),
  });
  private readonly editor = new Editor(byId("editor"), {
    changed: () => this.onEdit(),
    moved: (position) => this.onCursor(position),
  });
  private form: FileForm = plainForm;
  private fileName = "description.xml";
  private simulated = false;
  private chosen = "";
  private broken = false;
  private cleared = false;
  private unkept = false;
  private busy = { waits: false, edited: true };
  private turn = 0;
  // Edits are counted; this many of them are in the pages, and in the registers that they start with.
  private edits = 0;
  private built = 0;
  private bytes: Uint8Array = new Uint8Array();
  private firstRegisters = "";

  private readonly rebuild = latest(() => this.build());
  private readonly rebuildSoon = after(editDelay, this.rebuild);
  private readonly examine = latest(() => this.lint());
  private readonly examineSoon = after(lintDelay, this.examine);
  private readonly keepSoon = after(keepDelay, () => this.keepText());
  private readonly describe = latest(() => this.describeChosen());
  private readonly showRegisters = latest(() => this.fetchRegisters());
  private readonly describeSoon = after(50, this.describe);
  private readonly showRegistersSoon = after(30, this.showRegisters);

  async start(): Promise<void> {
    this.wire();
    const before = kept();
    if (before) {
      this.access.value = before.access;
      this.take(before.text, before.name, before.form, before.simulated);
    } else {
      await this.startFrom("first_page");
    }
  }

  private wire(): void {
    byId("open").addEventListener("click", () => byId("file").click());
    byId<HTMLInputElement>("file").addEventListener("change", (event) => {
      const input = event.target as HTMLInputElement;
      const [file] = input.files ?? [];
      if (file) void this.openFile(file).then(() => (input.value = ""));
    });
    byId("save").addEventListener("click", () => this.save());
    byId("clear").addEventListener("click", () => void this.clear());
    byId<HTMLSelectElement>("start-from").addEventListener("change", (event) => {
      const select = event.target as HTMLSelectElement;
      void this.startFrom(select.value).then(() => (select.value = ""));
    });
    this.access.addEventListener("change", () => this.onEdit());
    document.addEventListener("dragover", (event) => event.preventDefault());
    document.addEventListener("drop", (event) => {
      const file = event.dataTransfer?.files[0];
      if (!file) return;
      event.preventDefault();
      void this.openFile(file);
    }, { capture: true });
    // Who leaves right behind a key finds its letter again.
    addEventListener("pagehide", () => this.unkept && this.keepText());
    this.wireTabs();
  }

  private wireTabs(): void {
    const bar = byId("tool-tabs");
    moveWithArrows(bar, "[role=tab]");
    for (const tab of bar.querySelectorAll<HTMLElement>("[role=tab]")) {
      tab.addEventListener("click", () => this.showTool(tab.dataset["tool"] ?? "calls"));
    }
    this.showTool("calls");
  }

  private showTool(tool: string): void {
    for (const tab of byId("tool-tabs").querySelectorAll<HTMLElement>("[role=tab]")) {
      const selected = tab.dataset["tool"] === tool;
      tab.setAttribute("aria-selected", String(selected));
      tab.tabIndex = selected ? 0 : -1;
      byId(`${tab.dataset["tool"] ?? ""}-panel`).hidden = !selected;
    }
    this.onTool();
  }

  private onTool(): void {
    if (!byId("registers-panel").hidden) this.showRegistersSoon();
    if (!byId("describe-panel").hidden) this.describeSoon();
  }

  // Texts

  private take(text: string, name: string, form: FileForm, simulated: boolean): void {
    this.form = form;
    this.fileName = name;
    this.simulated = simulated;
    this.chosen = "";
    byId("file-name").textContent = name;
    this.editor.setText(text);
  }

  private async startFrom(name: string): Promise<void> {
    if (!name) return;
    const { text = "" } = await this.engine.ask({ do: "text", name });
    this.take(text, `${name}.xml`, plainForm, name === "simulated_camera");
  }

  private async openFile(file: File): Promise<void> {
    const { text, form } = decode(new Uint8Array(await file.arrayBuffer()));
    this.take(text.replaceAll(/\r\n?/g, "\n"), file.name, form, false);
  }

  private save(): void {
    const address = URL.createObjectURL(new Blob([encode(this.editor.getText(), this.form)], { type: "text/xml" }));
    make("a", { href: address, download: this.fileName }).click();
    setTimeout(() => URL.revokeObjectURL(address), 1000);
  }

  /** Nothing is stored again before the next edit. */
  private async clear(): Promise<void> {
    await this.startFrom("first_page");
    forget();
    this.cleared = true;
  }

  private keepText(): void {
    this.unkept = false;
    if (this.cleared) return;
    const { form, simulated, fileName: name } = this;
    const access = this.access.value as Access;
    const stored = keep({ name, text: this.editor.getText(), form, simulated, access });
    if (!stored) this.tell("The browser does not store this text.");
  }

  private onEdit(): void {
    this.cleared = false;
    this.unkept = true;
    this.edits++;
    performance.clearMarks("edit");
    performance.mark("edit");
    this.setBusy({ edited: true });
    this.findingsBox.ariaBusy = "true";
    this.rebuildSoon();
    this.keepSoon();
  }

  // Pages

  private async build(): Promise<void> {
    const edit = this.edits;
    await this.buildFrom(this.editor.getText(), edit);
    if (edit === this.edits) this.setBusy({ edited: false });
  }

  private async buildFrom(text: string, edit: number): Promise<void> {
    this.bytes = encode(text, this.form);
    const source = { bytes: this.bytes, access: this.access.value as Access, simulated: this.simulated };
    this.calls.note(`opened over ${source.access === "named" ? "named" : "register"} access`);
    const answer = await this.pages.open(source);
    if (!answer) return; // the engine has ended, and that is told
    if (answer.error) {
      this.showBroken(text, answer);
      return;
    }
    this.showCurrent();
    this.registers.begin();
    const { registers = "" } = await this.engine.ask({ do: "registers" });
    this.firstRegisters = registers;
    this.built = edit;
    this.examineSoon();
    await this.pages.offerRest();
  }

  private showBroken(text: string, { error }: Answer): void {
    if (!error) return;
    this.setBroken(true);
    const position = { line: error.line ?? 1, column: error.column ?? 1 };
    const where = error.line === undefined ? "" : `Line ${position.line}, column ${position.column}: `;
    this.tell(`${where}${error.message}. The pages are those of the last good text.`, true);
    if (text !== this.editor.getText()) return;
    this.editor.showFindings([brokenAt(this.editor.view.state.doc, position, error.message)]);
  }

  private showCurrent(): void {
    this.setBroken(false);
    this.tell("The pages are those of the text.");
    performance.clearMeasures("edit to pages");
    performance.measure("edit to pages", "edit");
  }

  /** The pages are not those of the text yet, or do not show yet what was done. */
  private setBusy(change: { waits?: boolean; edited?: boolean }): void {
    this.busy = { ...this.busy, ...change };
    this.panel.ariaBusy = String(this.busy.waits || this.busy.edited);
  }

  private setBroken(broken: boolean): void {
    this.broken = broken;
    this.panel.classList.toggle("stale", broken);
  }

  private tell(text: string, alarming = false): void {
    this.status.textContent = text;
    this.status.classList.toggle("alarming", alarming);
    if (!alarming) this.trouble.hidden = true;
  }

  private onAnswer(answer: Answer): void {
    this.calls.add(answer.calls);
    if (answer.calls.length > 0) this.onTool();
  }

  /** The engine is there again without a description: its pages come back with the registers of before. */
  private async onEnded({ trap }: EngineEnded, request: Request, feature: string): Promise<void> {
    const opening = request.do === "open" || request.do === "show";
    const access = this.access.value as Access;
    const bytes = this.bytes;
    const culprit = await this.inspector.findCulprit(bytes, access, request.do === "open" ? undefined : trap.after);
    const who = culprit ?? (feature ? `${feature}: ${trap.reason}` : trap.reason);
    this.trouble.hidden = false;
    this.trouble.textContent = `The engine ended: ${trap.reason}. ${who}. It was started anew.`;
    this.calls.note(`the engine ended: ${who}`);
    if (opening) {
      this.setBroken(true);
      this.status.textContent = "The pages are those of the last good text.";
      return;
    }
    const source = { bytes, access, simulated: this.simulated };
    await this.pages.open(trap.before === undefined ? source : { ...source, registers: trap.before });
  }

  // Between text and pages

  private onControl(feature: string): void {
    if (feature === this.chosen) return;
    this.chosen = feature;
    const position = findElement(this.editor.getText(), feature);
    if (position >= 0) this.editor.choose(position);
    this.onTool();
  }

  private onCursor(position: number): void {
    if (this.broken) return;
    const around = elementsAt(this.editor.view.state, position);
    const [innermost] = around;
    if (innermost) void this.findControls(innermost);
  }

  /**
   * Frames the controls of an element, else those of what it lists or links to, else those that depend on it. The
   * cursor may be elsewhere before all is known.
   */
  private async findControls({ name, links }: NamedElement): Promise<void> {
    const turn = ++this.turn;
    for (const names of [new Set([name]), new Set(links)]) {
      const found = (await this.pages.findPages(names)).length > 0;
      if (turn !== this.turn) return;
      if (!found) continue;
      await this.pages.mark(names);
      this.choose(name);
      return;
    }
    const { registers = "" } = await this.engine.ask({ do: "registers" });
    const described = await this.inspector.describe(this.bytes, name, registers);
    if (turn !== this.turn) return;
    await this.pages.mark(new Set(described?.invalidates ?? []));
    if (described) this.choose(name);
  }

  private choose(name: string): void {
    this.chosen = name;
    this.onTool();
  }

  private goTo(name: string): void {
    const position = findElement(this.editor.getText(), name);
    if (position >= 0) this.editor.goTo(position);
  }

  // Findings

  /** What has been edited since the pages were built is examined when its own stand. */
  private async lint(): Promise<void> {
    if (this.built !== this.edits) return;
    const findings = await this.inspector.lint(this.bytes, this.firstRegisters);
    if (this.broken || this.built !== this.edits) return;
    this.showFindings(findings ?? []);
    this.findingsBox.ariaBusy = "false";
    if (!findings) byId("findings-title").textContent = "Findings: none, as lint itself ended";
  }

  private showFindings(findings: Finding[]): void {
    this.editor.showFindings(diagnosticsOf(this.editor.view.state.doc, findings));
    byId("findings-title").textContent = `Findings: ${countsOf(findings)}`;
    showList(byId("findings"), findings, (position) => {
      this.editor.goTo(offsetOf(this.editor.view.state.doc, position));
    });
  }

  // Camera

  private async fetchRegisters(): Promise<void> {
    const { registers } = await this.engine.ask({ do: "registers" });
    if (registers !== undefined) this.registers.show(registers);
  }

  private async poke(address: string, bytes: string): Promise<void> {
    const answer = await this.engine.ask({ do: "poke", address, bytes });
    this.calls.note(`register ${address} set to ${bytes}`);
    if (answer.registers !== undefined) this.registers.show(answer.registers);
    await this.pages.refresh();
  }

  private async describeChosen(): Promise<void> {
    const into = byId("description");
    if (!this.chosen) return;
    const { registers = "" } = await this.engine.ask({ do: "registers" });
    const described = await this.inspector.describe(this.bytes, this.chosen, registers);
    if (!described) {
      into.replaceChildren(make("p", {}, `There is nothing to tell of ${this.chosen}.`));
      return;
    }
    showDescribed(into, described, {
      element: (name) => this.goTo(name),
      register: (address) => {
        this.showTool("registers");
        void this.fetchRegisters().then(() => this.registers.goTo(address));
      },
    });
  }
}

void new Playground().start();
