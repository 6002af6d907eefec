// What goes wrong, and how it goes on.

import assert from "node:assert/strict";
import { test } from "node:test";

import { ourDescription, readText, useBrowser } from "./support.mjs";

let playground;
useBrowser((made) => (playground = made));

const first = readText(ourDescription("first_page"));
const port = '<Port Name="Device"/>';

// The value of the slider comes out of a formula.
const withFormula = (formula) =>
  first
    .replace("<pValue>LampBrightnessReg</pValue>", "<pValue>Ratio</pValue>")
    .replace(port, `<IntSwissKnife Name="Ratio"><pVariable Name="A">LampBrightnessReg</pVariable><Formula>${formula}</Formula></IntSwissKnife>${port}`);

/** The pages still do what they are told. */
async function expectUsable() {
  await playground.openText(first, "again.xml");
  await playground.chooseAccess("registers");
  const writes = await playground.writesOf(() => playground.page.select(playground.control("combo", "LampMode"), "Blink"));
  assert.deepEqual(writes, ["Set device 3 0x00000108 <- 01 00 00 00, ok"]);
}

async function expectTrouble(words) {
  await playground.page.waitForSelector("#trouble:not([hidden])");
  await playground.settle();
  assert.match(await playground.text("#trouble"), words);
}

test("the last good pages stay while the text is broken, with the message at its place", async () => {
  await playground.openText(first);
  await playground.typeBehind("<DisplayName>Lamp", "<");
  assert.match(await playground.text("#status"), /^Line 23, column \d+: .*last good text/);
  assert.equal(await playground.text(".sheet .label"), "Lamp");
  await playground.page.waitForSelector("#page-panel.stale");
  await playground.page.waitForSelector(".cm-lintRange-error");
  await playground.page.keyboard.press("Backspace");
  await playground.page.waitForSelector("#page-panel:not(.stale)");
  await playground.settle();
  await playground.settleFindings();
  assert.equal(await playground.page.$(".cm-lintRange-error"), null);
});

test("a register that makes a formula divide by zero: told by name, and undone", async () => {
  await playground.openText(withFormula("100/(5-A)"));
  await playground.chooseAccess("registers");
  await playground.showTool("registers");
  await playground.page.evaluate(() => {
    const address = document.getElementById("address");
    address.value = "0x100";
    address.dispatchEvent(new Event("change"));
  });
  await playground.page.focus('[data-address="0x00000100"]');
  await playground.page.keyboard.type("05");
  await playground.page.keyboard.press("Enter");
  await expectTrouble(/a division by zero.*Formula of Ratio divides integers/);
  await playground.page.waitForFunction(() => document.querySelector('[data-address="0x00000100"]')?.dataset.byte === "00");
  assert.equal(await playground.valueOf("edit", "LampBrightness"), "20");
  await playground.showTool("calls");
  await expectUsable();
});

test("a text that divides by zero at once: told by name, and the last good pages stay", async () => {
  await playground.openText(first);
  await playground.typeAnew(withFormula("100/A"));
  await expectTrouble(/Ratio/);
  assert.equal(await playground.text(".sheet .label"), "Lamp");
  await expectUsable();
});

test("an endless circle: told by name", async () => {
  await playground.openText(first);
  await playground.typeAnew(
    first
      .replace("<pValue>LampBrightnessReg</pValue>", "<pValue>Here</pValue>")
      .replace(port, `<Integer Name="Here"><pValue>There</pValue></Integer><Integer Name="There"><pValue>Here</pValue></Integer>${port}`),
  );
  await expectTrouble(/the stack is full.*a circle: (Here needs There|There needs Here)/);
  await expectUsable();
});

test("a chain of links that fills the stack: told", async () => {
  await playground.openText(first);
  const links = Array.from({ length: 60_000 }, (_, at) => `<Integer Name="L${at}"><pValue>L${at + 1}</pValue></Integer>`);
  const chain = `${links.join("\n")}<Integer Name="L60000"><Value>1</Value></Integer>${port}`;
  await playground.openText(first.replace("<pValue>LampBrightnessReg</pValue>", "<pValue>L0</pValue>").replace(port, chain), "chain.xml");
  await expectTrouble(/the stack is full/);
  await expectUsable();
});

test("what never comes back is given up", async () => {
  await playground.openText(first);
  const sums = Array.from({ length: 60 }, (_, at) =>
    `<IntSwissKnife Name="K${at + 1}"><pVariable Name="A">K${at}</pVariable><pVariable Name="B">K${at}</pVariable><Formula>A+B</Formula></IntSwissKnife>`);
  await playground.typeAnew(
    first
      .replace("<pValue>LampBrightnessReg</pValue>", "<pValue>K60</pValue>")
      .replace(port, `<Integer Name="K0"><Value>1</Value></Integer>${sums.join("\n")}${port}`),
  );
  await expectTrouble(/it never came back/);
  assert.equal(await playground.text(".sheet .label"), "Lamp");
  await expectUsable();
});

test("the text is there again behind a reload, and gone when it is cleared", async () => {
  await playground.openText(first.replace("<DisplayName>Lamp<", "<DisplayName>Kept<"), "kept.xml");
  await playground.chooseAccess("registers");
  const stored = (name) => (localStorage.getItem("selvane_playground") ?? "").includes(name);
  await playground.page.waitForFunction(stored, {}, '"access":"registers"');
  await playground.page.waitForFunction(stored, {}, "Kept");
  await playground.page.reload();
  await playground.settle();
  assert.equal(await playground.text("#file-name"), "kept.xml");
  assert.equal(await playground.text(".sheet .label"), "Kept");
  assert.equal(await playground.page.$eval("#access", (select) => select.value), "registers");
  await playground.page.click("#clear");
  await playground.page.waitForFunction(() => localStorage.getItem("selvane_playground") === null);
  await playground.page.reload();
  await playground.settle();
  assert.equal(await playground.text("#file-name"), "first_page.xml");
  assert.equal(await playground.text(".sheet .label"), "Lamp");
});

test("who leaves right behind a key finds the letter again", async () => {
  await playground.openText(first, "left.xml");
  await playground.goBehind("<DisplayName>Lamp");
  await playground.page.evaluate(() => (globalThis.setTimeout = () => 0)); // the storage waits for a pause that never comes
  await playground.page.keyboard.type("s");
  await playground.page.reload();
  await playground.settle();
  assert.equal(await playground.text(".sheet .label"), "Lamps");
});

test("the address tells nothing of the text", async () => {
  const address = new URL(playground.page.url());
  assert.equal(address.hash + address.search, "");
});
