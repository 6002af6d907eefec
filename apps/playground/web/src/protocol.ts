// What the web part and the engine tell one another. The engine's side stands in face/playground.h.

export type Access = "named" | "registers";
export type PageWord = "exposure" | "feature" | "lens" | "color";
export type ControlKind = "label" | "slider" | "edit" | "spin button" | "combo" | "check box" | "button";

/** What a control is, for as long as its page is open. */
export interface ControlLayout {
  kind: ControlKind;
  left: number;
  top: number;
  width: number;
  height: number;
  item: string;
  element: string;
  feature: string;
  entries?: string[];
  low?: number;
  high?: number;
}

/** What a control shows now. */
export interface ControlState {
  enabled: boolean;
  text?: string;
  text_width?: number;
  read_only?: boolean;
  position?: number;
  selected?: number;
  checked?: boolean;
}

export interface PageOffer {
  page: PageWord;
  title: string;
  /** Not there before the page was offered the camera. */
  offered?: boolean;
}

export interface Failure {
  message: string;
  line?: number;
  column?: number;
}

/** The parts of an answer; which of them there are follows from the request. */
export interface Answer {
  calls: string[];
  error?: Failure;
  width?: number;
  height?: number;
  edit_characters?: string;
  pages?: PageOffer[];
  page?: PageWord;
  title?: string;
  offered?: boolean;
  layout?: ControlLayout[];
  state?: ControlState[];
  box?: { text: string; caption: string };
  editable?: boolean;
  registers?: string;
  text?: string;
  code?: number;
  output?: unknown;
  message?: string;
  /** Beside an opened description: its first page, whose calls are among those of this answer. */
  shown?: Answer;
}

export type Deed =
  | { deed: "move" | "pick"; value: number }
  | { deed: "commit"; text: string }
  | { deed: "toggle" | "push" | "focus" };

export type Request =
  | { do: "open"; access: Access; simulated: boolean; page: PageWord; registers?: string }
  | { do: "offer" }
  | { do: "show" | "refresh"; page: PageWord }
  | ({ do: "act"; page: PageWord; control: number } & Deed)
  | { do: "registers" | "before" }
  | { do: "poke"; address: string; bytes: string }
  | { do: "inspect"; arguments: string[]; registers?: string }
  | { do: "text"; name: string };

/** The engine ended while it carried out a request, and was made anew without a description. */
export interface Trap {
  reason: string;
  /** What the registers held before the request, and when the engine ended, as far as it can be told. */
  before?: string;
  after?: string;
  /** What it carried out, where that is not the request but what the worker did behind it. */
  during?: Request;
}

export interface ToWorker {
  id: number;
  request: Request;
  payload?: Uint8Array;
}

export interface FromWorker {
  id: number;
  answer?: Answer;
  trap?: Trap;
}

/** The first message to a worker. */
export interface WorkerStart {
  module: WebAssembly.Module;
}
