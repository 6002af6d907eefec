// The inspector, in a worker of its own: nobody waits for it.

import type { Described } from "./describe";
import { type EngineClient, EngineEnded } from "./engine";
import type { Finding } from "./findings";
import type { Access, Answer, Request } from "./protocol";

export class Inspector {
  constructor(private readonly engine: EngineClient) {}

  /** Over what the registers hold at first. */
  async lint(bytes: Uint8Array, registers: string): Promise<Finding[] | undefined> {
    const answer = await this.run(["lint", "FILE"], bytes, registers);
    const output = answer?.output as { files?: { findings: Finding[] }[] } | null | undefined;
    return output?.files?.[0]?.findings;
  }

  async describe(bytes: Uint8Array, feature: string, registers: string): Promise<Described | undefined> {
    const answer = await this.run(["describe", "FILE", feature], bytes, registers);
    const output = answer?.output as { features?: Described[] } | null | undefined;
    return output?.features?.[0];
  }

  /** Why the pages would not survive these registers; undefined where nothing is found. */
  async findCulprit(bytes: Uint8Array, access: Access, registers?: string): Promise<string | undefined> {
    const defaults = registers === undefined ? ["--defaults"] : [];
    const answer = await this.run(["pages", "FILE", "--access", access, ...defaults], bytes, registers);
    const output = answer?.output as { error?: { message: string } } | null | undefined;
    return output?.error?.message;
  }

  private async run(words: string[], bytes: Uint8Array, registers?: string): Promise<Answer | undefined> {
    const request: Request = registers === undefined
      ? { do: "inspect", arguments: words }
      : { do: "inspect", arguments: words, registers };
    try {
      return await this.engine.ask(request, bytes);
    } catch (failure) {
      if (failure instanceof EngineEnded) return undefined;
      throw failure;
    }
  }
}
