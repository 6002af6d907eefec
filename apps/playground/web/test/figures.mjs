// The figures of the playground, as a table. Sizes and connections must hold; times are those of this machine, now.

import assert from "node:assert/strict";
import { readFileSync, statSync } from "node:fs";
import { gzipSync } from "node:zlib";

import { Browser, file, ourDescription, realDescriptions, requestsOfPages } from "./support.mjs";

const rows = [];
const note = (what, is, goal) => rows.push([what, is, goal]);
const ms = (value) => `${value.toFixed(value < 10 ? 1 : 0)} ms`;
const median = (values) => [...values].sort((one, other) => one - other)[Math.floor(values.length / 2)];

const size = statSync(file).size;
const compressed = gzipSync(readFileSync(file), { level: 9 }).length;
note("the file", `${(size / 1e6).toFixed(2)} MB, ${(compressed / 1e6).toFixed(2)} MB compressed`, "at most 1.5 MB, 0.6 MB");

const measure = (page, name) => page.evaluate((one) => performance.getEntriesByName(one).at(-1)?.duration, name);
const watchTasks = (page) =>
  page.evaluateOnNewDocument(() => {
    window.longTasks = [];
    new PerformanceObserver((list) => window.longTasks.push(...list.getEntries().map((task) => task.duration))).observe({
      entryTypes: ["longtask"],
    });
  });

/** The most that a task of the page takes of the processor, ms; on a busy machine it may stand still for longer. */
function longestWork(trace) {
  const { traceEvents } = JSON.parse(new TextDecoder().decode(trace));
  const place = ({ pid, tid }) => `${pid} ${tid}`;
  const named = traceEvents.filter((event) => event.name === "thread_name" && event.args.name === "CrRendererMain");
  const pages = new Set(named.map(place));
  const tasks = traceEvents.filter((event) => event.name === "ThreadControllerImpl::RunTask" && pages.has(place(event)));
  assert.ok(tasks.length > 0);
  return Math.max(...tasks.map((task) => task.tdur ?? 0)) / 1000;
}

// Also what comes behind the pages: findings, and the text that goes into the storage.
async function everythingIsDone(playground) {
  await playground.settle();
  await new Promise((done) => setTimeout(done, 700));
  await playground.settleFindings();
}

async function measureEdits(playground, description) {
  await playground.openFile(description);
  await everythingIsDone(playground);
  // A place where blanks leave the description as it is.
  await playground.typeBehind("<RegisterDescription", " ");
  await everythingIsDone(playground);
  await playground.page.evaluate(() => (window.longTasks = []));
  const edits = [];
  for (let round = 0; round < 5; round++) {
    await playground.page.keyboard.type(" ");
    await playground.settle();
    edits.push(await measure(playground.page, "edit to pages"));
  }
  await playground.page.tracing.start({ categories: ["toplevel"] });
  await playground.page.keyboard.type(" ".repeat(30), { delay: 30 });
  await everythingIsDone(playground);
  const work = longestWork(await playground.page.tracing.stop());
  const longest = await playground.page.evaluate(() => Math.max(0, ...window.longTasks));
  return { edit: median(edits), longest, work };
}

async function measureSlider(playground) {
  await playground.openFile(ourDescription("first_page"));
  await playground.page.focus(playground.control("slider", "LampBrightness"));
  const steps = [];
  for (let round = 0; round < 15; round++) {
    await playground.callsOf(() => playground.page.keyboard.press("ArrowRight"));
    steps.push(await measure(playground.page, "deed to refresh"));
  }
  return median(steps);
}

const browser = await Browser.start();
try {
  const opens = [];
  for (let round = 0; round < 3; round++) {
    const opened = await browser.open();
    opens.push(await opened.page.evaluate(() => performance.getEntriesByName("edit to pages")[0].startTime + performance.getEntriesByName("edit to pages")[0].duration));
    await opened.page.close();
  }
  note("open to first page", ms(median(opens)), "at most 1 s");

  const playground = await browser.open(watchTasks);
  const large = realDescriptions().filter((path) => statSync(path).size > 1.2e6);
  for (const description of [ourDescription("simulated_camera"), ...large]) {
    const { edit, longest, work } = await measureEdits(playground, description);
    const name = description.split("/").pop();
    note(`edit to new pages, ${name}`, ms(edit), "at most 150 ms");
    const blocked = longest === 0 ? "below 50 ms" : ms(longest);
    note(`longest block of typing, ${name}`, `${blocked}, ${ms(work)} of it work`, "at most 50 ms");
  }
  note("a slider step to its call and refresh", ms(await measureSlider(playground)), "at most 5 ms");
  const own = requestsOfPages(browser.network);
  note("connections made", String(own.length), "0");
  assert.deepEqual(own, []);
} finally {
  await browser.end();
}

const widths = [0, 1, 2].map((column) => Math.max(...rows.map((row) => row[column].length)));
for (const row of rows) console.log(row.map((cell, column) => cell.padEnd(widths[column])).join("  ").trimEnd());
assert.ok(size <= 1.5e6, `${size} bytes`);
assert.ok(compressed <= 0.6e6, `${compressed} bytes compressed`);
