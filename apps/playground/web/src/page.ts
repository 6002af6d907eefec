// A page of controls at the rectangles that the layout gives. What a control does is the engine's; here stands only
// which event of a form control is which deed.

import { make, write } from "./dom";
import type { Answer, ControlLayout, ControlState, Deed } from "./protocol";

export interface PageEvents {
  act(control: number, deed: Deed): Promise<Answer | undefined>;
  /** A control was clicked or got the focus. */
  chosen(feature: string): void;
}

export interface PageSize {
  width: number;
  height: number;
}

const closedComboHeight = 21;
const repeatDelay = 500; // ms, as the up-down control waits
const repeatPeriod = 50;

const pen = document.createElement("canvas").getContext("2d");

const fitted = new WeakMap<HTMLElement, string>();
let dipped = false;

/** Gives the pen the font of the sheets: all have the same, and it is known as soon as one of them is shown. */
function dip(sheet: HTMLElement): void {
  if (!pen || dipped || !sheet.isConnected) return;
  pen.font = getComputedStyle(sheet).font;
  dipped = true;
}

/** Lets a text take the room that the layout measured, whatever font there is. */
function fit(element: HTMLElement, text: string, width: number): void {
  const wanted = `${width} ${text}`;
  if (!pen || text.length === 0 || fitted.get(element) === wanted) return;
  if (dipped) fitted.set(element, wanted);
  const natural = pen.measureText(text).width;
  element.style.letterSpacing = `${((width - natural) / text.length).toFixed(3)}px`;
}

abstract class Control {
  readonly place: HTMLDivElement;
  constructor(
    readonly layout: ControlLayout,
    readonly number: number,
    protected readonly events: PageEvents,
  ) {
    this.place = make("div", { class: `control ${layout.kind.replaceAll(" ", "-")}`, "data-control": number });
    if (layout.feature) this.place.dataset["feature"] = layout.feature;
    Object.assign(this.place.style, {
      left: `${layout.left}px`,
      top: `${layout.top}px`,
      width: `${layout.width}px`,
      height: `${layout.height}px`,
    });
  }
  abstract show(state: ControlState): void;
  /** The items and elements that a screen reader names. */
  protected get label(): string {
    return [this.layout.item, this.layout.element].filter(Boolean).join(" ");
  }
  protected act(deed: Deed): void {
    void this.events.act(this.number, deed);
  }
}

class Label extends Control {
  show({ text = "", text_width = 0 }: ControlState): void {
    write(this.place, text);
    fit(this.place, text, text_width);
  }
}

class Slider extends Control {
  private readonly input = make("input", { type: "range", step: 1 });
  private dragging = false;

  constructor(layout: ControlLayout, number: number, events: PageEvents) {
    super(layout, number, events);
    const low = layout.low ?? 0;
    this.input.min = String(low);
    this.input.max = String(Math.max(low, layout.high ?? 0));
    this.input.setAttribute("aria-label", this.label);
    this.input.addEventListener("input", () => this.follow());
    this.input.addEventListener("pointerdown", () => (this.dragging = true));
    // A thumb that is let go tells its position once more.
    this.input.addEventListener("change", () => {
      if (this.dragging) this.follow();
      this.dragging = false;
    });
    this.place.append(this.input);
  }
  show({ enabled, position = 0 }: ControlState): void {
    this.input.disabled = !enabled;
    this.input.value = String(position);
  }
  /** What a screen reader says in place of the position. */
  tell(text: string): void {
    this.input.setAttribute("aria-valuetext", text);
  }
  private follow(): void {
    this.act({ deed: "move", value: this.input.valueAsNumber });
  }
}

class Edit extends Control {
  readonly input = make("input", { type: "text", spellcheck: "false", autocomplete: "off" });
  private losing = false;

  constructor(layout: ControlLayout, number: number, events: PageEvents, characters: string) {
    super(layout, number, events);
    this.input.setAttribute("aria-label", this.label);
    this.input.addEventListener("beforeinput", (event) => {
      const typed = event.inputType === "insertText" ? (event.data ?? "") : "";
      if ([...typed].some((character) => !characters.includes(character))) event.preventDefault();
    });
    this.input.addEventListener("focus", () => void this.light());
    this.input.addEventListener("blur", () => {
      this.input.classList.remove("editable");
      if (this.input.isConnected && !this.losing) this.act({ deed: "commit", text: this.input.value });
    });
    this.place.append(this.input);
  }
  show({ enabled, read_only = false, text = "", text_width = 0 }: ControlState): void {
    // One that is disabled under the user's hands holds the text of this refresh and not the user's.
    this.losing = !enabled;
    if (!enabled) this.input.blur();
    this.losing = false;
    this.input.disabled = !enabled;
    this.input.readOnly = read_only;
    if (this.input.value !== text) this.input.value = text;
    fit(this.input, text, text_width);
  }
  private async light(): Promise<void> {
    const answer = await this.events.act(this.number, { deed: "focus" });
    const lit = answer?.editable === true && document.activeElement === this.input;
    this.input.classList.toggle("editable", lit);
  }
}

class SpinButton extends Control {
  private position = 0;
  private repeating: ReturnType<typeof setTimeout> | undefined;
  private readonly arrows: HTMLButtonElement[];

  constructor(layout: ControlLayout, number: number, events: PageEvents) {
    super(layout, number, events);
    this.arrows = [this.arrow(1, "Increase"), this.arrow(-1, "Decrease")];
    this.place.append(...this.arrows);
  }
  show({ enabled, position = 0 }: ControlState): void {
    this.position = position;
    for (const arrow of this.arrows) arrow.disabled = !enabled;
    if (!enabled) this.stop();
  }
  private arrow(step: 1 | -1, word: string): HTMLButtonElement {
    // The slider is the way for keys: the up-down control is no tab stop.
    const made = make("button", { type: "button", tabindex: -1, "aria-label": `${word} ${this.label}` });
    made.className = step > 0 ? "up" : "down";
    made.addEventListener("pointerdown", (event) => {
      if (event.button !== 0 || made.disabled) return;
      event.preventDefault(); // the focus stays where it is
      this.step(step);
      this.repeating = setTimeout(() => this.repeat(step), repeatDelay);
    });
    for (const end of ["pointerup", "pointerleave", "pointercancel"]) made.addEventListener(end, () => this.stop());
    made.addEventListener("click", (event) => {
      if (event.detail === 0) this.step(step); // by a key or an assistive program
    });
    return made;
  }
  // An inverted range has its lower position above the upper one.
  private step(step: 1 | -1): void {
    const { low = 0, high = 0 } = this.layout;
    const to = this.position + (high < low ? -step : step);
    this.position = Math.min(Math.max(to, Math.min(low, high)), Math.max(low, high));
    this.act({ deed: "move", value: this.position });
  }
  private repeat(step: 1 | -1): void {
    if (!this.place.isConnected) return;
    this.step(step);
    this.repeating = setTimeout(() => this.repeat(step), repeatPeriod);
  }
  private stop(): void {
    clearTimeout(this.repeating);
  }
}

class Combo extends Control {
  private readonly select = make("select");

  constructor(layout: ControlLayout, number: number, events: PageEvents) {
    super(layout, number, events);
    this.select.setAttribute("aria-label", this.label);
    for (const entry of layout.entries ?? []) this.select.append(make("option", {}, entry));
    this.select.style.height = `${closedComboHeight}px`;
    this.select.addEventListener("change", () => this.act({ deed: "pick", value: this.select.selectedIndex }));
    this.place.append(this.select);
  }
  show({ enabled, selected = -1, text = "", text_width = 0 }: ControlState): void {
    this.select.disabled = !enabled;
    this.select.selectedIndex = selected;
    fit(this.select, text, text_width);
  }
}

class CheckBox extends Control {
  private readonly input = make("input", { type: "checkbox" });
  private readonly caption = make("span");

  constructor(layout: ControlLayout, number: number, events: PageEvents) {
    super(layout, number, events);
    // What the box shows follows from the element, not from the click.
    this.input.addEventListener("click", (event) => {
      event.preventDefault();
      this.act({ deed: "toggle" });
    });
    this.place.append(make("label", {}, this.input, this.caption));
  }
  show({ enabled, checked = false, text = "", text_width = 0 }: ControlState): void {
    this.input.disabled = !enabled;
    this.input.checked = checked;
    // A click that is taken back leaves the box as it was when the click ends.
    setTimeout(() => (this.input.checked = checked));
    write(this.caption, text);
    this.input.ariaLabel = `${this.layout.item} ${text}`;
    fit(this.caption, text, text_width);
  }
}

class Button extends Control {
  private readonly button = make("button", { type: "button" });

  constructor(layout: ControlLayout, number: number, events: PageEvents) {
    super(layout, number, events);
    this.button.addEventListener("click", () => this.act({ deed: "push" }));
    this.place.append(this.button);
  }
  show({ enabled, text = "", text_width = 0 }: ControlState): void {
    this.button.disabled = !enabled;
    write(this.button, text);
    this.button.ariaLabel = `${this.layout.item} ${text}`;
    fit(this.button, text, text_width);
  }
}

function makeControl(layout: ControlLayout, number: number, events: PageEvents, characters: string): Control {
  switch (layout.kind) {
    case "label":
      return new Label(layout, number, events);
    case "slider":
      return new Slider(layout, number, events);
    case "edit":
      return new Edit(layout, number, events, characters);
    case "spin button":
      return new SpinButton(layout, number, events);
    case "combo":
      return new Combo(layout, number, events);
    case "check box":
      return new CheckBox(layout, number, events);
    case "button":
      return new Button(layout, number, events);
  }
}

export class PageView {
  private readonly controls: Control[];
  private readonly form: string;
  /** What lies beyond the page is drawn beside it, where a window would cut it off. */
  readonly sheet: HTMLDivElement;

  constructor(layout: ControlLayout[], size: PageSize, characters: string, events: PageEvents) {
    this.form = JSON.stringify(layout);
    this.controls = layout.map((one, number) => makeControl(one, number, events, characters));
    const height = (one: ControlLayout): number => (one.kind === "combo" ? closedComboHeight : one.height);
    const right = Math.max(size.width, ...layout.map((one) => one.left + one.width));
    const bottom = Math.max(size.height, ...layout.map((one) => one.top + height(one)));
    const page = make("div", { class: "page" });
    Object.assign(page.style, { width: `${size.width}px`, height: `${size.height}px` });
    this.sheet = make("div", { class: "sheet" }, page, ...this.controls.map((control) => control.place));
    Object.assign(this.sheet.style, { width: `${right}px`, height: `${bottom}px` });
    this.listen(events);
  }

  /** Whether these are its controls: they only have to be shown anew then. */
  isOf(layout: ControlLayout[]): boolean {
    return JSON.stringify(layout) === this.form;
  }

  show(state: ControlState[]): void {
    dip(this.sheet);
    const focused = this.controls.findIndex(({ place }) => place.contains(document.activeElement));
    this.showEach(state);
    // The keyboard goes on at the next control when this one cannot be used any more.
    const lost = focused >= 0 && state[focused]?.enabled === false;
    if (lost) this.stopBehind(this.controls[focused]?.place ?? this.sheet)?.focus();
  }

  private showEach(state: ControlState[]): void {
    let slider: Slider | undefined;
    this.controls.forEach((control, at) => {
      const now = state[at];
      if (!now) return;
      control.show(now);
      if (control instanceof Slider) slider = control;
      if (control instanceof Edit && slider) slider.tell(now.text ?? "");
    });
  }

  mark(features: Set<string>): void {
    for (const { place, layout } of this.controls) place.classList.toggle("marked", features.has(layout.feature));
    this.sheet.querySelector(".marked")?.scrollIntoView({ block: "nearest", inline: "nearest" });
  }

  private listen(events: PageEvents): void {
    const choose = (event: Event): void => {
      const place = (event.target as HTMLElement).closest<HTMLElement>(".control");
      const feature = place?.dataset["feature"];
      if (feature) events.chosen(feature);
    };
    this.sheet.addEventListener("pointerdown", choose);
    this.sheet.addEventListener("focusin", choose);
    this.sheet.addEventListener("keydown", (event) => {
      if (event.key === "Enter" && event.target instanceof HTMLInputElement && event.target.type === "text") {
        event.preventDefault();
        this.leave(event.target);
      }
    });
  }

  // The return key goes to the next control, and so sends what was typed.
  private leave(edit: HTMLInputElement): void {
    const next = this.stopBehind(edit);
    if (next && next !== edit) next.focus();
    else edit.blur();
  }

  /** The next control that takes the focus, beginning anew behind the last. */
  private stopBehind(place: HTMLElement): HTMLElement | undefined {
    const stops = [...this.sheet.querySelectorAll<HTMLElement>("input, select, button")].filter(
      (stop) => !stop.matches(":disabled") && stop.tabIndex >= 0,
    );
    const isBehind = (stop: HTMLElement): boolean =>
      (place.compareDocumentPosition(stop) & Node.DOCUMENT_POSITION_FOLLOWING) !== 0 && !place.contains(stop);
    return stops.find(isBehind) ?? stops[0];
  }
}
