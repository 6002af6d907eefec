// A user with the text and its pages.

import assert from "node:assert/strict";
import { test } from "node:test";

import { ourDescription, readText, useBrowser } from "./support.mjs";

let playground;
useBrowser((made) => (playground = made));

const startAnew = async (access = "registers") => {
  await playground.openFile(ourDescription("first_page"));
  await playground.chooseAccess(access);
};

test("the first page is there when the file is opened, without a finding", async () => {
  assert.equal(await playground.text("#file-name"), "first_page.xml");
  assert.equal(await playground.text("#page-tabs [aria-selected=true]"), "Selvane Feature Controls");
  const titles = await playground.page.$$eval("#page-tabs [role=tab]", (tabs) => tabs.map((tab) => tab.textContent));
  assert.deepEqual(titles, ["Exposure", "Feature", "Lens", "Color"].map((one) => `Selvane ${one} Controls`));
  await playground.settleFindings();
  assert.match(await playground.text("#findings-title"), /0 errors, 0 warnings, 0 notes/);
});

test("a page with nothing to show says so", async () => {
  await startAnew();
  await playground.showPage("lens");
  assert.match(await playground.text("#page-panel"), /nothing to show/);
  await playground.showPage("feature");
});

test("a description that is typed shows its page", async () => {
  await startAnew();
  const text = readText(ourDescription("first_page"))
    .replace("<DisplayName>Special<", "<DisplayName>Lens<")
    .replace("<DisplayName>Lamp<", "<DisplayName>Beam<");
  await playground.typeAnew(text);
  assert.equal(await playground.text("#page-tabs [aria-selected=true]"), "Selvane Lens Controls");
  assert.equal(await playground.text(".sheet .label"), "Beam");
});

test("letters typed one by one are on the page", async () => {
  await startAnew();
  await playground.typeBehind("<DisplayName>Lamp", "light");
  assert.equal(await playground.text(".sheet .label"), "Lamplight");
});

test("a slider that is dragged writes at each step, and the controls follow", async () => {
  await startAnew();
  const slider = await playground.page.$(playground.control("slider", "LampBrightness"));
  const { x, y, width, height } = await slider.boundingBox();
  const writes = await playground.writesOf(async () => {
    await playground.page.mouse.move(x + 8, y + height / 2);
    await playground.page.mouse.down();
    for (let step = 1; step <= 5; step++) await playground.page.mouse.move(x + 8 + (step * width) / 10, y + height / 2);
    await playground.page.mouse.up();
  });
  assert.ok(writes.length >= 5, writes.join("\n"));
  for (const line of writes) assert.match(line, /^Set device 3 0x00000100 <- [0-9A-F]{2} 00 00 00, ok$/);
  const shown = Number(await playground.valueOf("edit", "LampBrightness"));
  assert.ok(shown > 20 && shown < 80);
  assert.equal(await playground.valueOf("slider", "LampBrightness"), String(shown));
  assert.equal(writes.at(-1), `Set device 3 0x00000100 <- ${shown.toString(16).toUpperCase().padStart(2, "0")} 00 00 00, ok`);
});

test("a value that is typed goes out when the edit is left, and letters do not appear", async () => {
  await startAnew("named");
  await playground.page.click(playground.control("edit", "LampBrightness"), { clickCount: 3 });
  await playground.page.waitForSelector(".edit input.editable");
  const writes = await playground.writesOf(async () => {
    await playground.page.keyboard.type("4x2");
    assert.equal(await playground.valueOf("edit", "LampBrightness"), "42");
    await playground.page.keyboard.press("Enter");
  });
  assert.deepEqual(writes, ["Set device 4 LampBrightness/Value <- 42, ok"]);
  assert.equal(await playground.valueOf("slider", "LampBrightness"), "42");
  const focused = await playground.page.evaluate(() => document.activeElement.closest(".control")?.dataset.feature);
  assert.notEqual(focused, "LampBrightness");
});

test("a text that is no value shows the box and stays", async () => {
  await startAnew();
  await playground.page.click(playground.control("edit", "LampBrightness"), { clickCount: 3 });
  await playground.page.keyboard.type("--");
  await playground.page.click(".sheet .page");
  await playground.page.waitForSelector("#box[open]");
  assert.equal(await playground.text("#box-caption"), "Error");
  assert.equal(await playground.text("#box-text"), "Error parsing value!");
  await playground.page.keyboard.press("Enter");
  await playground.page.waitForSelector("#box:not([open])");
  assert.equal(await playground.valueOf("edit", "LampBrightness"), "--");
});

test("arrows, list and button reach the driver", async () => {
  await startAnew();
  const up = `.spin-button[data-feature="LampBrightness"] .up`;
  assert.deepEqual(await playground.writesOf(() => playground.page.click(up)), ["Set device 3 0x00000100 <- 01 00 00 00, ok"]);
  const picked = await playground.writesOf(() => playground.page.select(playground.control("combo", "LampMode"), "Blink"));
  assert.deepEqual(picked, ["Set device 3 0x00000108 <- 01 00 00 00, ok"]);
  const pushed = await playground.writesOf(() => playground.page.click(playground.control("button", "LampFlash")));
  assert.deepEqual(pushed, ["Set device 3 0x00000104 <- 01 00 00 00, ok"]);
});

test("a check box shows what the camera holds", async () => {
  await playground.startFrom("simulated_camera");
  await playground.showPage("exposure");
  const box = playground.control("check box", "ExposureAuto");
  const checked = () => playground.page.$eval(box, (input) => input.checked);
  const before = await checked();
  const writes = await playground.writesOf(() => playground.page.click(box));
  assert.equal(writes.length, 1);
  await playground.page.waitForFunction((one, was) => document.querySelector(one).checked !== was, {}, box, before);
  // Automatic exposure leaves nothing to set.
  const disabled = () => playground.page.$eval(playground.control("slider", "ExposureTime"), (input) => input.disabled);
  assert.equal(await disabled(), !before);
});

test("an exposure slider snaps to round times, and what is typed stays as it is", async () => {
  await playground.startFrom("simulated_camera");
  await playground.showPage("exposure");
  await playground.page.focus(playground.control("slider", "ExposureTime"));
  await playground.page.keyboard.press("ArrowRight");
  await playground.settle();
  // The first of a hundred steps to 4 seconds is 1/25.
  assert.equal(await playground.valueOf("edit", "ExposureTime"), "1/30 sec");
  await playground.page.click(playground.control("edit", "ExposureTime"), { clickCount: 3 });
  await playground.page.keyboard.type("1.044");
  await playground.page.keyboard.press("Enter");
  await playground.settle();
  assert.equal(await playground.valueOf("edit", "ExposureTime"), "1.044 sec");
});

test("a byte that is changed in the registers is on the page", async () => {
  await startAnew();
  await playground.page.select(playground.control("combo", "LampMode"), "Blink");
  await playground.showTool("registers");
  await playground.page.waitForFunction(() => document.querySelector('[data-address="0x00000108"]')?.dataset.byte === "01");
  await playground.page.focus('[data-address="0x00000108"]');
  await playground.page.keyboard.type("00");
  await playground.page.keyboard.press("Enter");
  await playground.page.waitForFunction(() => document.querySelector(".combo select").selectedIndex === 0);
  await playground.showTool("calls");
});

test("a click on a control goes to its element, and tells where the value comes from", async () => {
  await startAnew();
  await playground.showTool("describe");
  await playground.page.click(playground.control("combo", "LampMode"));
  await playground.page.keyboard.press("Escape");
  await playground.page.waitForFunction(() => document.querySelector("#description h3")?.textContent.includes("LampMode"));
  assert.match(await playground.text("#description"), /LampModeReg.*register 0x00000108/s);
  assert.match(await playground.text(".cm-line.chosen-line"), /Enumeration Name="LampMode"/);
  await playground.startFrom("simulated_camera");
  await playground.showPage("exposure");
  await playground.page.click(playground.control("slider", "ExposureTime"));
  await playground.page.waitForFunction(() => document.querySelector("#description h3")?.textContent.includes("ExposureTime"));
  assert.match(await playground.text("#description"), /Formula: UNLOCKED && \(AUTO = 0\)UNLOCKED = 1 from UnlockedAUTO = 0 from ExposureAutoReg/);
  await playground.showTool("calls");
});

test("a click on an element shows where it appears, also where that is behind it", async () => {
  await startAnew();
  await playground.showPage("lens");
  const marked = (feature) =>
    playground.page.waitForSelector(`.control.marked[data-feature="${feature}"]`).then(() => true);
  const clickLine = async (words) => {
    await playground.page.waitForFunction(
      (wanted) => [...document.querySelectorAll(".cm-line")].some((line) => line.textContent.includes(wanted)), {}, words);
    // The editor may still move its lines, having measured what it scrolled to.
    const at = await playground.page.evaluate(async (wanted) => {
      const measure = () => {
        const line = [...document.querySelectorAll(".cm-line")].find((one) => one.textContent.includes(wanted));
        const { left = 0, top = 0 } = line?.getBoundingClientRect() ?? {};
        return { x: left + 80, y: top + 8 };
      };
      for (let still = 0, last = measure(); ; ) {
        await new Promise((done) => requestAnimationFrame(done));
        const now = measure();
        still = now.x === last.x && now.y === last.y ? still + 1 : 0;
        if (still === 3) return now;
        last = now;
      }
    }, words);
    await playground.page.mouse.click(at.x, at.y);
  };
  await clickLine('<Integer Name="LampBrightness">');
  assert.ok(await marked("LampBrightness"));
  assert.equal(await playground.text("#page-tabs [aria-selected=true]"), "Selvane Feature Controls");
  await clickLine("<pFeature>LampItem</pFeature>");
  await clickLine('<Category Name="LampItem">');
  assert.ok(await marked("LampMode"));
  // A register appears where the features do that depend on it.
  await playground.page.evaluate(() => document.querySelector(".cm-scroller").scrollTo(0, 1e6));
  await clickLine('<IntReg Name="LampModeReg">');
  await playground.page.waitForFunction(() => {
    const all = [...document.querySelectorAll(".control.marked")];
    return all.length > 0 && all.every((one) => one.dataset.feature === "LampMode");
  });
});

test("findings stand in the margin, at their place and in the list", async () => {
  await startAnew();
  await playground.typeBehind("<Min>0</Min>", "<pIsLokced>Changeable");
  // The editor has closed the element by itself.
  await playground.settleFindings();
  assert.match(await playground.text("#findings-title"), /1 warning/);
  assert.match(await playground.text("#findings"), /nothing knows the element pIsLokced.*Mind the spelling/);
  await playground.page.waitForSelector(".cm-lintRange-warning");
  await playground.page.waitForSelector(".cm-lint-marker-warning");
  assert.equal(await playground.text(".cm-lintRange-warning"), "<pIsLokced");
  await playground.page.hover(".cm-lint-marker-warning");
  await playground.page.waitForSelector(".cm-tooltip .cm-diagnostic");
  assert.match(await playground.text(".cm-tooltip .cm-diagnostic"), /nothing knows the element pIsLokced.*Mind the spelling/s);
  await playground.page.evaluate(() => document.querySelector(".cm-scroller").scrollTo(0, 0));
  await playground.page.evaluate(() => [...document.querySelectorAll(".finding")].find((one) => one.textContent.includes("pIsLokced")).click());
  await playground.page.waitForFunction(() => document.querySelector(".cm-line.chosen-line")?.textContent.includes("pIsLokced"));
});

test("findings of before do not pass for those of an edit that has no pages yet", async () => {
  await startAnew();
  await playground.goBehind("<Min>0</Min>");
  const title = await playground.page.evaluate(async () => {
    const box = document.getElementById("findings-box");
    const access = document.getElementById("access");
    const turn = () => new Promise((done) => setTimeout(done));
    performance.clearMeasures("edit to pages");
    access.value = "named";
    access.dispatchEvent(new Event("change"));
    while (performance.getEntriesByName("edit to pages").length === 0) await turn();
    const [{ startTime, duration }] = performance.getEntriesByName("edit to pages");
    // The findings of these pages are due a quarter of a second behind them: the edit comes right before.
    while (performance.now() < startTime + duration + 255);
    document.execCommand("insertText", false, "<pIsLokced>Changeable</pIsLokced>");
    await turn();
    while (box.ariaBusy === "true") await turn();
    return document.getElementById("findings-title").textContent;
  });
  assert.match(title, /1 warning,/);
});

test("what is done while the pages come is on them", async () => {
  await startAnew();
  const combo = playground.control("combo", "LampMode");
  await playground.page.evaluate((one) => {
    const choose = () => {
      const select = document.querySelector(one);
      select.selectedIndex = 1;
      select.dispatchEvent(new Event("change"));
    };
    addEventListener("request open", choose, { once: true });
  }, combo);
  const writes = await playground.writesOf(() => playground.pasteBehind("<!-- Not zero", " at all"));
  assert.deepEqual(writes, ["Set device 3 0x00000108 <- 01 00 00 00, ok"]);
  assert.equal(await playground.page.$eval(combo, (select) => select.selectedIndex), 1);
});

test("an edit that leaves the controls as they are keeps them, and they act on the new camera", async () => {
  await startAnew();
  await playground.page.evaluate(() => {
    document.querySelector(".sheet").dataset.former = "yes";
    document.getElementById("tab-feature").dataset.former = "yes";
  });
  const isFormer = (selector) => playground.page.$eval(selector, (element) => element.dataset.former === "yes");
  await playground.page.select(playground.control("combo", "LampMode"), "Blink");
  await playground.settle();
  await playground.typeBehind("<!-- Not zero", " at all");
  assert.ok(await isFormer(".sheet"));
  assert.ok(await isFormer("#tab-feature"));
  // A new camera holds what the description states.
  assert.equal(await playground.page.$eval(playground.control("combo", "LampMode"), (select) => select.selectedIndex), 0);
  const picked = await playground.writesOf(() => playground.page.select(playground.control("combo", "LampMode"), "Blink"));
  assert.deepEqual(picked, ["Set device 3 0x00000108 <- 01 00 00 00, ok"]);
  await playground.typeBehind("<DisplayName>Lamp", "p");
  assert.equal(await isFormer(".sheet"), false);
  assert.equal(await playground.text(".sheet .label"), "Lampp");
});

test("the last calls are in sight, the oldest leave", async () => {
  await startAnew();
  await playground.page.focus(playground.control("slider", "LampBrightness"));
  const rounds = 100;
  for (let round = 0; round < rounds; round++) {
    await playground.page.keyboard.press(round % 2 ? "ArrowLeft" : "ArrowRight");
  }
  await playground.settle();
  const { lines, numbers, blocks, atTheEnd } = await playground.page.evaluate(() => {
    const list = document.getElementById("calls");
    const all = [...list.querySelectorAll("li[data-number]")];
    return {
      lines: list.querySelectorAll("li").length,
      numbers: all.map((line) => Number(line.dataset.number)),
      blocks: list.childElementCount,
      atTheEnd: all.at(-1).getBoundingClientRect().bottom <= list.getBoundingClientRect().bottom + 1,
    };
  });
  assert.ok(numbers[0] > 1 && lines >= 500 && lines <= 550, `${lines} lines from ${numbers[0]} on`);
  assert.deepEqual(numbers, numbers.map((_, at) => numbers[0] + at));
  assert.ok(blocks <= 11, `${blocks} blocks`);
  assert.ok(atTheEnd);
  await playground.page.click("#clear-calls");
  assert.deepEqual(await playground.calls(), []);
});

const modeByte = '[data-address="0x00000108"]';
const isChanged = (wanted) =>
  playground.page.waitForFunction(
    (one, is) => document.querySelector(one)?.classList.contains("changed") === is,
    {},
    modeByte,
    wanted,
  );

test("a byte that the camera changes is marked until the next change", async () => {
  await startAnew();
  await playground.showRegisters();
  await isChanged(false);
  await playground.page.select(playground.control("combo", "LampMode"), "Blink");
  await isChanged(true);
  await playground.settle();
  await playground.showRegisters();
  await isChanged(true);
  await playground.page.focus(playground.control("slider", "LampBrightness"));
  await playground.page.keyboard.press("End");
  await isChanged(false);
  await playground.page.waitForSelector('[data-address="0x00000100"].changed');
  await playground.showTool("calls");
});

test("what another camera's registers hold is no change", async () => {
  await startAnew();
  await playground.showRegisters();
  const byte = () => playground.page.$eval(modeByte, (cell) => cell.dataset.byte);
  const before = await byte();
  await playground.page.select(playground.control("combo", "LampMode"), "Blink");
  await isChanged(true);
  await startAnew();
  await playground.page.waitForFunction((one, is) => document.querySelector(one).dataset.byte === is, {}, modeByte, before);
  await isChanged(false);
  await playground.showTool("calls");
});

test("a file that is dropped is opened", async () => {
  await startAnew();
  const text = readText(ourDescription("first_page")).replace("<DisplayName>Lamp<", "<DisplayName>Dropped<");
  await playground.drop(text, "dropped.xml");
  assert.equal(await playground.text(".sheet .label"), "Dropped");
});

test("a file is saved as it was opened, with its mark and its line ends", async () => {
  const text = "\ufeff" + readText(ourDescription("first_page")).replaceAll("\n", "\r\n").replace("Lamp<", "L\u00e4mp<");
  await playground.openText(text, "saved.xml");
  assert.equal(await playground.text(".sheet .label"), "L\u00e4mp");
  const saved = await playground.page.evaluate(async () => {
    const make = URL.createObjectURL;
    const blob = new Promise((done) => (URL.createObjectURL = (made) => (done(made), make(made))));
    document.getElementById("save").click();
    URL.createObjectURL = make;
    return [...new Uint8Array(await (await blob).arrayBuffer())];
  });
  assert.deepEqual(Buffer.from(saved), Buffer.from(text));
});

test("everything is reached by keys, and every control has a name", async () => {
  await startAnew();
  await playground.page.focus("#open");
  const reached = new Set();
  for (let step = 0; step < 60; step++) {
    await playground.page.keyboard.press("Tab");
    const at = await playground.page.evaluate(() => {
      const element = document.activeElement;
      const feature = element.closest(".control")?.dataset.feature;
      return { id: element.id || (feature ? `${feature} ${element.type}` : ""), editor: element.classList.contains("cm-content") };
    });
    if (at.editor) await playground.page.keyboard.press("Escape"); // behind it Tab leaves the editor
    if (at.id) reached.add(at.id);
  }
  for (const id of ["save", "start-from", "clear", "access", "tab-feature", "tab-calls", "LampBrightness range", "LampBrightness text", "LampMode select-one", "LampFlash button"]) {
    assert.ok(reached.has(id), `${id} is not among ${[...reached].join(", ")}`);
  }
  const snapshot = await playground.page.accessibility.snapshot({ interestingOnly: true });
  const unnamed = [];
  const look = (node) => {
    const needsName = ["button", "textbox", "slider", "combobox", "checkbox", "tab", "MenuListPopup"].includes(node.role);
    if (needsName && node.role !== "MenuListPopup" && !node.name) unnamed.push(node);
    for (const child of node.children ?? []) look(child);
  };
  look(snapshot);
  assert.deepEqual(unnamed, []);
  const names = JSON.stringify(snapshot);
  for (const name of ["Lamp", "Lamp Mode", "Lamp Flash"]) assert.ok(names.includes(`"name":"${name}"`), name);
});

test("a slider moves by keys", async () => {
  await startAnew();
  await playground.page.focus(playground.control("slider", "LampBrightness"));
  await playground.settle(); // an edit that had the focus has sent its text
  assert.deepEqual(await playground.writesOf(() => playground.page.keyboard.press("End")), ["Set device 3 0x00000100 <- 64 00 00 00, ok"]);
  assert.deepEqual(await playground.writesOf(() => playground.page.keyboard.press("ArrowLeft")), ["Set device 3 0x00000100 <- 63 00 00 00, ok"]);
});

test("in the dark all grounds are dark, and in a narrow window nothing lies beside it", async () => {
  await startAnew();
  const { page } = playground;
  await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: "dark" }]);
  const grounds = await page.evaluate(() =>
    ["body", ".cm-editor", ".cm-gutters", ".sheet .page", ".edit input", ".combo select", "#open"].map((selector) => {
      const { backgroundColor, color } = getComputedStyle(document.querySelector(selector));
      const light = (words) => words.match(/[\d.]+/g).slice(0, 3).reduce((sum, part) => sum + Number(part) / 3, 0);
      return { selector, ground: light(backgroundColor), ink: light(color) };
    }),
  );
  for (const { selector, ground, ink } of grounds) assert.ok(ground < 80 && ink - ground > 90, `${selector}: ${ink} on ${ground}`);
  await page.emulateMediaFeatures([]);

  const former = page.viewport();
  await page.setViewport({ width: 420, height: 700 });
  await page.waitForFunction(() => innerWidth === 420 && document.documentElement.scrollWidth <= 420);
  // The list of calls scrolls by itself.
  assert.ok((await page.evaluate(() => document.documentElement.scrollHeight)) < 1500);
  // A click on a control shows its element in the editor, and leaves the control where it was.
  const mode = playground.control("combo", "LampMode");
  await page.$eval(mode, (control) => control.scrollIntoView({ block: "start" }));
  const before = await page.$eval(mode, (control) => control.getBoundingClientRect().top);
  await page.click(mode);
  await page.keyboard.press("Escape");
  await page.waitForFunction(() => document.querySelector(".cm-line.chosen-line")?.textContent.includes('Enumeration Name="LampMode"'));
  assert.equal(await page.$eval(mode, (control) => control.getBoundingClientRect().top), before);
  await page.setViewport(former);
});
