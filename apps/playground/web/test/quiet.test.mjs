// Nothing leaves the machine.

import assert from "node:assert/strict";
import { test } from "node:test";

import { Browser, file, Listener, ourDescription, readText, requestsOfPages } from "./support.mjs";

test("no connection is made, and none can be", async (context) => {
  const browser = await Browser.start();
  context.after(() => browser.end());
  const requests = [];
  const playground = await browser.open((page) => page.on("request", (request) => requests.push(request.url())));
  await playground.openFile(ourDescription("simulated_camera"));
  await playground.callsOf(() => playground.page.select("#access", "registers"));
  await playground.settleFindings();
  const outside = requests.filter((url) => !/^(file|blob|data):/.test(url));
  assert.deepEqual(outside, []);

  // A page that wanted to could not.
  const listener = new Listener();
  context.after(() => listener.end());
  const port = await listener.listen();
  const refused = await playground.page.evaluate(async (address) => {
    const violations = [];
    document.addEventListener("securitypolicyviolation", (event) => violations.push(event.effectiveDirective));
    const tries = [
      () => fetch(`http://${address}/`),
      () => new Promise((_, fail) => {
        const request = new XMLHttpRequest();
        request.onerror = fail;
        request.open("GET", `http://${address}/`);
        request.send();
      }),
      () => new Promise((_, fail) => (new WebSocket(`ws://${address}/`).onerror = fail)),
      () => new Promise((_, fail) => (new EventSource(`http://${address}/`).onerror = fail)),
      () => new Promise((_, fail) => (Object.assign(new Image(), { src: `http://${address}/` }).onerror = fail)),
      () => import(`http://${address}/module.js`),
      () => new Promise((_, fail) => {
        const script = Object.assign(document.createElement("script"), { src: `http://${address}/`, onerror: fail });
        document.head.append(script);
      }),
      () => new Promise((_, fail) => {
        const sheet = Object.assign(document.createElement("link"), { rel: "stylesheet", href: `http://${address}/`, onerror: fail });
        document.head.append(sheet);
      }),
    ];
    let failed = 0;
    for (const attempt of tries) await attempt().catch(() => failed++);
    navigator.sendBeacon(`http://${address}/`, "text");
    const form = Object.assign(document.createElement("form"), { action: `http://${address}/`, method: "post" });
    document.body.append(form);
    form.submit();
    await new Promise((done) => setTimeout(done, 300));
    return { tries: tries.length, failed, violations };
  }, `127.0.0.1:${port}`);
  assert.equal(refused.failed, refused.tries);
  assert.ok(refused.violations.includes("connect-src"), refused.violations.join());
  assert.ok(refused.violations.includes("form-action"), refused.violations.join());
  assert.equal(listener.count, 0);
  assert.deepEqual(requestsOfPages(browser.network), []);
});

// The test above must be able to see a connection.
test("a page without the policy is seen to connect", async (context) => {
  const browser = await Browser.start();
  context.after(() => browser.end());
  const page = await browser.browser.newPage();
  await page.setContent("<p>free</p>");
  await page.evaluate(() => fetch("http://camera.invalid/").catch(() => {}));
  assert.deepEqual(requestsOfPages(browser.network), ["GET http://camera.invalid/ HTTP/1.1"]);
});

test("the policy allows nothing from elsewhere", () => {
  const [, policy] = /Content-Security-Policy" content="([^"]*)"/.exec(readText(file));
  assert.match(policy, /default-src 'none'/);
  assert.match(policy, /connect-src 'none'/);
  assert.doesNotMatch(policy, /https?:|\*|'unsafe-eval'/);
  assert.doesNotMatch(readText(file), /google/);
});
