// The engine behind a worker. A request that takes too long ends the worker, and a new one takes its place.

import type { Answer, FromWorker, Request, ToWorker, Trap, WorkerStart } from "./protocol";

export class EngineEnded extends Error {
  constructor(readonly trap: Trap) {
    super(trap.reason);
  }
}

interface Waiting {
  resolve(answer: Answer): void;
  reject(failure: Error): void;
}

const patience = 10_000; // ms; a description of 1.3 MB takes a hundredth of it

export class EngineClient {
  private worker: Worker | undefined;
  private waiting = new Map<number, Waiting>();
  private next = 1;
  private watch: ReturnType<typeof setTimeout> | undefined;

  constructor(
    private readonly code: string,
    private readonly module: Promise<WebAssembly.Module>,
  ) {
    void this.start();
  }

  async ask(request: Request, payload?: Uint8Array): Promise<Answer> {
    const module = await this.module;
    const worker = this.worker ?? this.startWith(module);
    const id = this.next++;
    const answered = new Promise<Answer>((resolve, reject) => this.waiting.set(id, { resolve, reject }));
    const message: ToWorker = payload ? { id, request, payload } : { id, request };
    worker.postMessage(message);
    if (this.watch === undefined) this.wait();
    return answered;
  }

  private async start(): Promise<void> {
    const module = await this.module;
    if (!this.worker) this.startWith(module);
  }

  private startWith(module: WebAssembly.Module): Worker {
    const address = URL.createObjectURL(new Blob([this.code], { type: "text/javascript" }));
    const worker = new Worker(address);
    URL.revokeObjectURL(address);
    worker.onmessage = ({ data }: MessageEvent<FromWorker>) => this.take(data);
    const first: WorkerStart = { module };
    worker.postMessage(first);
    this.worker = worker;
    return worker;
  }

  private take({ id, answer, trap }: FromWorker): void {
    const waiting = this.waiting.get(id);
    this.waiting.delete(id);
    this.wait();
    if (answer) waiting?.resolve(answer);
    else waiting?.reject(new EngineEnded(trap ?? { reason: "no answer" }));
  }

  /** Waits for the next answer as long as one is outstanding. */
  private wait(): void {
    clearTimeout(this.watch);
    this.watch = this.waiting.size > 0 ? setTimeout(() => this.giveUp(), patience) : undefined;
  }

  private giveUp(): void {
    this.worker?.terminate();
    this.worker = undefined;
    this.watch = undefined;
    const given = [...this.waiting.values()];
    this.waiting.clear();
    for (const one of given) one.reject(new EngineEnded({ reason: "it never came back" }));
    void this.start();
  }
}
