// The four pages: tabs, and the page that is shown. The last good pages stay while the text is broken.

import { byId, make, moveWithArrows } from "./dom";
import { type EngineClient, EngineEnded } from "./engine";
import { PageView } from "./page";
import type { Access, Answer, ControlLayout, Deed, PageOffer, PageWord, Request } from "./protocol";

export interface PagesEvents {
  /** Driver calls that came with an answer, and whatever else an answer has changed. */
  answered(answer: Answer): void;
  chosen(feature: string): void;
  /** Whether an answer is outstanding. */
  busy(waits: boolean): void;
  ended(failure: EngineEnded, request: Request, feature: string): Promise<void>;
}

export interface Source {
  bytes: Uint8Array;
  access: Access;
  simulated: boolean;
  registers?: string;
}

export class Pages {
  private readonly tabs = byId("page-tabs");
  private readonly panel = byId("page-panel");
  private readonly box = byId<HTMLDialogElement>("box");
  private offers: PageOffer[] = [];
  private shown: PageWord = "exposure";
  private views = new Map<PageWord, PageView>();
  private features = new Map<PageWord, string[]>();
  private size = { width: 0, height: 0 };
  private characters = "";
  private marked = new Set<string>();
  /** Answers that belong to pages of before are not shown. */
  private edition = 0;
  private outstanding = 0;

  constructor(
    private readonly engine: EngineClient,
    private readonly events: PagesEvents,
  ) {
    moveWithArrows(this.tabs, "[role=tab]");
  }

  get page(): PageWord {
    return this.shown;
  }

  /** Builds camera and pages anew. The failure of a text that is none is in the answer. */
  async open(source: Source): Promise<Answer | undefined> {
    const { bytes, access, simulated, registers } = source;
    const page = this.shown;
    const request: Request = registers === undefined
      ? { do: "open", access, simulated, page }
      : { do: "open", access, simulated, page, registers };
    const answer = await this.ask(request, "", bytes);
    if (!answer || answer.error) return answer;
    const { shown } = answer;
    if (!shown || shown.error) return shown;
    this.take(answer, shown);
    return answer;
  }

  /** The pages that are not shown are offered the camera behind the one that is. */
  async offerRest(): Promise<void> {
    const edition = this.edition;
    const answer = await this.ask({ do: "offer" }, "");
    if (!answer?.pages || edition !== this.edition) return;
    this.offers = answer.pages;
    this.drawTabs();
  }

  async refresh(): Promise<void> {
    const view = this.views.get(this.shown);
    if (!view) return;
    const answer = await this.ask({ do: "refresh", page: this.shown }, "");
    if (answer?.state) view.show(answer.state);
  }

  /** The features that have a control on an open page, and the pages on which they are. */
  async findPages(names: Set<string>): Promise<PageWord[]> {
    const found: PageWord[] = [];
    for (const offer of this.offers) {
      if (offer.offered === false) continue;
      if (!this.features.has(offer.page)) await this.fetchLayout(offer.page);
      if (this.features.get(offer.page)?.some((feature) => names.has(feature))) found.push(offer.page);
    }
    return found;
  }

  /** Frames the controls of these features, on the page shown or on the first that has one. */
  async mark(names: Set<string>): Promise<boolean> {
    this.marked = names;
    const pages = await this.findPages(names);
    const [first] = pages;
    if (first !== undefined && !pages.includes(this.shown)) await this.show(first);
    this.views.get(this.shown)?.mark(names);
    return pages.length > 0;
  }

  private async show(page: PageWord): Promise<void> {
    this.shown = page;
    if (!this.views.has(page)) await this.fetchLayout(page);
    this.draw();
  }

  // A page that was opened before shows what it showed then: it refreshes when something is done on it.
  private async fetchLayout(page: PageWord): Promise<Answer | undefined> {
    const edition = this.edition;
    const answer = await this.ask({ do: "show", page }, "");
    if (answer && edition === this.edition) this.keep(page, answer);
    return answer;
  }

  // Nothing of the former pages is thrown away before the first new one is there.
  private take(opened: Answer, shown: Answer): void {
    this.edition++;
    this.offers = opened.pages ?? [];
    this.size = { width: opened.width ?? 0, height: opened.height ?? 0 };
    this.characters = opened.edit_characters ?? "";
    this.shown = shown.page ?? this.shown;
    const former = this.views.get(this.shown);
    this.views.clear();
    this.features.clear();
    this.keep(this.shown, shown, former);
    this.draw();
  }

  private keep(page: PageWord, { layout, state }: Answer, former?: PageView): void {
    if (!layout || !state) return;
    // Most edits leave the controls of the page where and what they are.
    const view = former?.isOf(layout) ? former : this.makeView(page, layout);
    this.views.set(page, view);
    this.features.set(page, layout.map((one) => one.feature));
    // Widths of texts can only be measured where the page stands.
    queueMicrotask(() => view.show(state));
  }

  private makeView(page: PageWord, layout: ControlLayout[]): PageView {
    const view: PageView = new PageView(layout, this.size, this.characters, {
      act: async (control, deed) => (this.views.get(page) === view ? this.act(page, control, deed) : undefined),
      chosen: (feature) => this.events.chosen(feature),
    });
    return view;
  }

  private async act(page: PageWord, control: number, deed: Deed): Promise<Answer | undefined> {
    const edition = this.edition;
    const feature = this.features.get(page)?.[control] ?? "";
    const start = performance.now();
    const answer = await this.ask({ do: "act", page, control, ...deed }, feature);
    if (!answer) return undefined;
    if (edition !== this.edition) {
      // Pages came in between, and what was done reached them behind what they show.
      await this.refresh();
      return undefined;
    }
    if (answer.state) this.views.get(page)?.show(answer.state);
    performance.clearMeasures("deed to refresh");
    performance.measure("deed to refresh", { start });
    if (answer.box) this.showBox(answer.box);
    return answer;
  }

  private async ask(request: Request, feature: string, payload?: Uint8Array): Promise<Answer | undefined> {
    this.outstanding++;
    this.events.busy(true);
    try {
      const answer = await this.engine.ask(request, payload);
      this.events.answered(answer);
      return answer;
    } catch (failure) {
      if (!(failure instanceof EngineEnded)) throw failure;
      await this.events.ended(failure, failure.trap.during ?? request, feature);
      return undefined;
    } finally {
      this.outstanding--;
      // What waits for the answer comes first.
      setTimeout(() => this.events.busy(this.outstanding > 0));
    }
  }

  private showBox({ text, caption }: { text: string; caption: string }): void {
    if (this.box.open) return;
    byId("box-caption").textContent = caption;
    byId("box-text").textContent = text;
    this.box.showModal();
  }

  private drawTabs(): void {
    for (const offer of this.offers) {
      const tab = document.getElementById(`tab-${offer.page}`) ?? this.makeTab(offer);
      const selected = offer.page === this.shown;
      tab.ariaSelected = String(selected);
      tab.tabIndex = selected ? 0 : -1;
      // What is not known yet looks as it did.
      if (offer.offered === undefined) continue;
      tab.classList.toggle("not-offered", !offer.offered);
      tab.title = offer.offered ? "" : "nothing to show";
    }
  }

  private draw(): void {
    this.drawTabs();
    const view = this.views.get(this.shown);
    const offer = this.offers.find((one) => one.page === this.shown);
    this.panel.setAttribute("aria-labelledby", `tab-${this.shown}`);
    if (view && this.panel.firstElementChild === view.sheet) return;
    this.panel.replaceChildren(
      view?.sheet ?? make("p", { class: "nothing" }, `${offer?.title ?? ""}: nothing to show, the page does not appear.`),
    );
    view?.mark(this.marked);
  }

  private makeTab(offer: PageOffer): HTMLButtonElement {
    const tab = make(
      "button",
      { type: "button", role: "tab", id: `tab-${offer.page}`, "aria-controls": "page-panel" },
      offer.title,
    );
    tab.addEventListener("click", () => void this.show(offer.page));
    this.tabs.append(tab);
    return tab;
  }
}
