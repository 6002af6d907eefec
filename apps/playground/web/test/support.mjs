// A browser with the playground in it, and words for what a user does there.

import assert from "node:assert/strict";
import { execFileSync, spawn } from "node:child_process";
import { existsSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:net";
import { tmpdir } from "node:os";
import { dirname, join, resolve } from "node:path";
import { createInterface } from "node:readline";
import { after, before } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";

import puppeteer from "puppeteer-core";

export const root = resolve(dirname(fileURLToPath(import.meta.url)), "../../../..");
export const file = process.env.SELVANE_PLAYGROUND ?? join(root, "build/wasm/bin/selvane_playground.html");
const consoleProgram = process.env.SELVANE_PLAYGROUND_CONSOLE ?? join(root, "build/linux/bin/selvane_playground_console");
const inspectProgram = process.env.SELVANE_INSPECT ?? join(root, "build/linux/bin/selvane_inspect");
const descriptionsFolder = process.env.SELVANE_DESCRIPTIONS ?? join(root, "../shared/descriptions");

const browserOptions = [
  "--headless",
  "--no-sandbox",
  "--disable-gpu",
  "--disable-quic",
  "--no-first-run",
  "--disable-background-networking",
  "--disable-component-update",
  "--disable-sync",
];
const longest = Number(process.env.SELVANE_PATIENCE ?? 60_000); // ms; a wait that takes so long is a failure

/** Descriptions of real cameras, where there are any. */
export function realDescriptions() {
  return ["real", "marked"].flatMap((folder) => {
    const place = join(descriptionsFolder, folder);
    if (!existsSync(place)) return [];
    return readdirSync(place)
      .filter((name) => name.endsWith(".xml"))
      .sort()
      .map((name) => join(place, name));
  });
}

export function ourDescription(name) {
  return join(root, "descriptions", `${name}.xml`);
}

export function inspect(...words) {
  return JSON.parse(execFileSync(inspectProgram, [...words, "--json"], { maxBuffer: 1 << 28 }).toString());
}

/** The same engine as a native program. */
export class NativeEngine {
  constructor() {
    this.program = spawn(consoleProgram, { stdio: ["pipe", "pipe", "inherit"] });
    this.answers = createInterface({ input: this.program.stdout })[Symbol.asyncIterator]();
  }
  async ask(request) {
    this.program.stdin.write(JSON.stringify(request) + "\n");
    const { value } = await this.answers.next();
    return JSON.parse(value);
  }
  end() {
    this.program.stdin.end();
  }
}

/** Notes the first line of whatever comes in over the network, and answers nothing. */
export class Listener {
  constructor() {
    this.count = 0;
    this.lines = [];
    this.server = createServer((socket) => {
      this.count++;
      socket.on("error", () => {});
      socket.once("data", (data) => {
        this.lines.push(data.toString("latin1").split("\r\n")[0]);
        socket.destroy();
      });
    });
  }
  async listen() {
    await new Promise((done) => this.server.listen(0, "127.0.0.1", done));
    return this.server.address().port;
  }
  end() {
    this.server.close();
  }
}

// The browser asks its maker's services for updates and the time, whatever it shows, also with everything switched off
// that can be.
const ofTheBrowser = /^[A-Z]+ (https?:\/\/)?[\w-]+\.(google|googleapis|gvt1)\.com[:/]/;

/** What came over the network from something else than the browser itself. */
export function requestsOfPages(network) {
  return network.lines.filter((line) => !ofTheBrowser.test(line));
}

/** Runs in the page: it has an event "request KIND" when it has asked its engine, and "answer KIND" when it has shown what came. */
function tellRequests() {
  const { postMessage } = Worker.prototype;
  Worker.prototype.postMessage = function (message) {
    postMessage.call(this, message);
    const { id, request } = message;
    if (!request) return;
    const take = ({ data }) => {
      if (data.id !== id) return;
      this.removeEventListener("message", take);
      setTimeout(() => dispatchEvent(new Event(`answer ${request.do}`)));
    };
    this.addEventListener("message", take);
    dispatchEvent(new Event(`request ${request.do}`));
  };
}

/** A browser of a user who has never used one. Whatever it sends to the network goes to a listener. */
export class Browser {
  static async start(size = { width: 1400, height: 900 }) {
    const started = new Browser();
    started.folder = mkdtempSync(join(tmpdir(), "selvane-browser-"));
    started.network = new Listener();
    const port = await started.network.listen();
    started.browser = await puppeteer.launch({
      executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
      headless: true,
      userDataDir: started.folder,
      defaultViewport: size,
      args: [...browserOptions, `--proxy-server=127.0.0.1:${port}`, "--proxy-bypass-list=<-loopback>"],
      protocolTimeout: 4 * longest,
    });
    return started;
  }
  async open(before = () => {}) {
    const opened = new Playground(await this.browser.newPage());
    await opened.page.evaluateOnNewDocument(tellRequests);
    await before(opened.page);
    await opened.load();
    return opened;
  }
  async end() {
    await this.browser.close();
    this.network.end();
    rmSync(this.folder, { recursive: true, force: true, maxRetries: 5 });
  }
}

/** A playground in a browser of its own for the tests of a file. */
export function useBrowser(take) {
  let browser;
  let playground;
  before(async () => {
    browser = await Browser.start();
    playground = await browser.open();
    take(playground);
  });
  after(async () => {
    assert.deepEqual(playground.failures, []);
    await browser.end();
  });
}

export class Playground {
  constructor(page) {
    this.page = page;
    this.failures = [];
    page.on("pageerror", (failure) => this.failures.push(failure.message));
    page.setDefaultTimeout(longest);
  }

  async load() {
    await this.page.goto(pathToFileURL(file).href);
    await this.settle();
  }

  /** Until the pages are those of the text, or told not to be, and show what was done on them; calls come with a frame. */
  async settle() {
    await this.page.waitForFunction(() => document.getElementById("page-panel").ariaBusy === "false");
    await this.page.evaluate(() => new Promise((done) => requestAnimationFrame(done)));
  }
  async settleFindings() {
    await this.page.waitForFunction(() => document.getElementById("findings-box").ariaBusy === "false");
  }

  /** Opens a file by the button. */
  async openFile(path) {
    const input = await this.page.$("#file");
    await this.takes(path.split("/").pop(), () => input.uploadFile(path));
  }
  /** Begins with one of the descriptions that the page brings along. */
  async startFrom(name) {
    await this.takes(`${name}.xml`, () => this.page.select("#start-from", name));
  }
  /** Does something that brings a file, and waits for it: the one before may have had the same name. */
  async takes(name, bring) {
    await this.page.$eval("#file-name", (element) => (element.textContent = ""));
    await bring();
    await this.page.waitForFunction((wanted) => document.getElementById("file-name").textContent === wanted, {}, name);
    await this.settle();
  }
  /** The same for a text that is no file yet. */
  async openText(text, name = "typed.xml") {
    const folder = mkdtempSync(join(tmpdir(), "selvane-text-"));
    writeFileSync(join(folder, name), text);
    await this.openFile(join(folder, name));
    rmSync(folder, { recursive: true });
  }

  /** Selects the whole text of the editor and types another one, as the clipboard would bring it. */
  async typeAnew(text) {
    await this.page.click(".cm-content");
    await this.page.keyboard.down("Control");
    await this.page.keyboard.press("a");
    await this.page.keyboard.up("Control");
    await this.insert(text);
    await this.settle();
  }
  /** Puts the cursor behind the first such words, by the editor's own search, and types there. */
  async typeBehind(words, text) {
    await this.goBehind(words);
    await this.page.keyboard.type(text);
    await this.settle();
  }
  /** The same for a text that the clipboard brings: the editor completes nothing in it. */
  async pasteBehind(words, text) {
    await this.goBehind(words);
    await this.insert(text);
    await this.settle();
  }
  async goBehind(words) {
    await this.page.focus(".cm-content");
    await this.chord("f");
    await this.page.waitForSelector(".cm-search input[name=search]");
    await this.page.$eval(".cm-search input[name=search]", (input) => input.select());
    await this.page.keyboard.type(words);
    await this.page.keyboard.press("Enter");
    await this.page.keyboard.press("Escape");
    await this.page.keyboard.press("ArrowRight");
  }
  async insert(text) {
    const session = await this.page.createCDPSession();
    await session.send("Input.insertText", { text });
    await session.detach();
  }
  async chord(key) {
    await this.page.keyboard.down("Control");
    await this.page.keyboard.press(key);
    await this.page.keyboard.up("Control");
  }

  /** Lets a file fall onto the editor. */
  async drop(text, name) {
    await this.takes(name, () => this.page.evaluate((contents, called) => {
      const data = new DataTransfer();
      data.items.add(new File([contents], called, { type: "text/xml" }));
      document.querySelector(".cm-content").dispatchEvent(new DragEvent("drop", { dataTransfer: data, bubbles: true, cancelable: true }));
    }, text, name));
  }

  text(selector) {
    return this.page.$eval(selector, (element) => element.textContent);
  }
  async chooseAccess(access) {
    if ((await this.page.$eval("#access", (select) => select.value)) === access) return;
    await this.page.select("#access", access);
    await this.settle();
  }
  async showPage(word) {
    await this.page.click(`#tab-${word}`);
    await this.page.waitForSelector(`#tab-${word}[aria-selected=true]`);
    await this.page.waitForFunction(() => document.querySelector("#page-panel").firstElementChild !== null);
  }
  async showTool(word) {
    await this.page.click(`#tab-${word}`);
  }
  /** Until the registers are shown as they are now. */
  async showRegisters() {
    await this.page.evaluate(
      () =>
        new Promise((shown) => {
          addEventListener("answer registers", shown, { once: true });
          document.getElementById("tab-registers").click();
        }),
    );
  }

  /** The lines of the list of calls, but for the notes between them. */
  calls(from = 0) {
    return this.page.$$eval(
      "#calls li[data-number]",
      (lines, first) => lines.filter((line) => Number(line.dataset.number) > first).map((line) => line.textContent),
      from,
    );
  }
  lastCall() {
    return this.page.$$eval("#calls li[data-number]", (lines) => Number(lines.at(-1)?.dataset.number ?? 0));
  }
  /** Does something, and gives all the calls that it brought about. */
  async callsOf(work) {
    const before = await this.lastCall();
    await work();
    await this.settle();
    return this.calls(before);
  }
  async writesOf(work) {
    return (await this.callsOf(work)).filter((line) => line.startsWith("Set "));
  }

  /** The form control of a feature. */
  control(kind, feature) {
    return `.control.${kind.replaceAll(" ", "-")}[data-feature="${feature}"] :is(input, select, button)`;
  }
  valueOf(kind, feature) {
    return this.page.$eval(this.control(kind, feature), (element) => element.value);
  }

  /** The controls as the layout has them: kind and rectangle, measured where they stand. */
  places() {
    return this.page.evaluate(() => {
      const page = document.querySelector(".sheet .page")?.getBoundingClientRect();
      return [...document.querySelectorAll(".sheet .control")].map((control) => {
        const { left, top, width, height } = control.getBoundingClientRect();
        const kind = [...control.classList].find((word) => word !== "control" && word !== "marked");
        return { kind: kind.replaceAll("-", " "), left: left - page.left, top: top - page.top, width, height };
      });
    });
  }
}

export function readText(path) {
  return readFileSync(path, "utf8");
}
