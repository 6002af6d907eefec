// The worker: an instance of the engine, and a new one whenever the engine has ended.

import type { Answer, FromWorker, PageWord, Request, ToWorker, Trap, WorkerStart } from "./protocol";

interface Engine {
  _playground_room(size: number): number;
  _playground_answer(request: number): number;
  HEAPU8: Uint8Array;
  stackSave(): number;
  stackRestore(pointer: number): void;
  stackAlloc(size: number): number;
  stringToUTF8(text: string, at: number, room: number): void;
  UTF8ToString(at: number): string;
  lengthBytesUTF8(text: string): number;
}

interface EngineOptions {
  instantiateWasm(imports: WebAssembly.Imports, done: (instance: WebAssembly.Instance) => void): object;
  print(line: string): void;
  printErr(line: string): void;
}

declare const makeEngine: (options: EngineOptions) => Promise<Engine>;
declare const self: {
  onmessage: ((event: { data: ToWorker | WorkerStart }) => void) | null;
  postMessage(message: FromWorker): void;
};

let module: WebAssembly.Module;
let engine: Promise<Engine>;

function startEngine(): Promise<Engine> {
  return makeEngine({
    instantiateWasm(imports, done) {
      void WebAssembly.instantiate(module, imports).then(done);
      return {};
    },
    print() {},
    printErr() {},
  });
}

function call(running: Engine, request: Request, payload?: Uint8Array): Answer {
  const stack = running.stackSave();
  try {
    if (payload) {
      const room = running._playground_room(payload.length);
      running.HEAPU8.set(payload, room);
    }
    const text = JSON.stringify(request);
    const size = running.lengthBytesUTF8(text) + 1;
    const at = running.stackAlloc(size);
    running.stringToUTF8(text, at, size);
    return JSON.parse(running.UTF8ToString(running._playground_answer(at))) as Answer;
  } finally {
    running.stackRestore(stack);
  }
}

/** Asks an engine that has ended for what its memory still tells. */
function remains(running: Engine, request: Request): string | undefined {
  try {
    return call(running, request).registers;
  } catch {
    return undefined;
  }
}

function reasonOf(failure: unknown): string {
  const words = failure instanceof Error ? failure.message : String(failure);
  if (failure instanceof RangeError || /call stack|memory access out of bounds/.test(words)) return "the stack is full";
  if (/divide by zero|division by zero/.test(words)) return "a division by zero";
  if (/integer overflow|divide result unrepresentable/.test(words)) return "a division whose result has no room";
  return words;
}

/** The page stays while it has something to show; else the first that has. */
function firstPage(opened: Answer, wanted: PageWord): Request {
  return { do: "show", page: opened.pages?.find((one) => one.offered)?.page ?? wanted };
}

async function carryOut({ id, request, payload }: ToWorker): Promise<void> {
  const running = await engine;
  let during: Request = request;
  try {
    const answer = call(running, request, payload);
    // At once: the page would wait while the browser draws something else.
    if (request.do === "open" && !answer.error) {
      during = firstPage(answer, request.page);
      answer.shown = call(running, during);
      answer.calls.push(...answer.shown.calls);
    }
    self.postMessage({ id, answer });
  } catch (failure) {
    const trap: Trap = {
      during,
      reason: reasonOf(failure),
      before: remains(running, { do: "before" }),
      after: remains(running, { do: "registers" }),
    };
    engine = startEngine();
    self.postMessage({ id, trap });
  }
}

// One request after the other, in the order in which they came.
let last: Promise<void> = Promise.resolve();

self.onmessage = ({ data }) => {
  if ("module" in data) {
    module = data.module;
    engine = startEngine();
    return;
  }
  last = last.then(() => carryOut(data));
};
