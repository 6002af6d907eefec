// The playground against the inspector's layout, and against the same engine as a native program.

import assert from "node:assert/strict";
import { basename } from "node:path";
import { test } from "node:test";

import { inspect, NativeEngine, ourDescription, realDescriptions, useBrowser } from "./support.mjs";

let playground;
useBrowser((made) => (playground = made));

const descriptions = [...["first_page", "value_nodes", "identity"].map(ourDescription), ...realDescriptions()];

for (const description of descriptions) {
  test(`rectangles of ${basename(description)}`, async () => {
    await playground.openFile(description);
    for (const access of ["named", "registers"]) {
      await playground.chooseAccess(access);
      const { pages } = inspect("pages", description, "--defaults", "--access", access);
      for (const expected of pages) {
        await playground.showPage(expected.page);
        const places = expected.controls.map(({ kind, left, top, width, height }) => ({ kind, left, top, width, height }));
        assert.deepEqual(await playground.places(), places, `${expected.page} over ${access}`);
      }
    }
  });
}

// Ten things that a user does, in the browser and by the native program.
const deeds = [
  ["slider", "LampBrightness", { deed: "move", value: 100 }, (page) => page.keyboard.press("End")],
  ["slider", "LampBrightness", { deed: "move", value: 99 }, (page) => page.keyboard.press("ArrowLeft")],
  ["slider", "LampBrightness", { deed: "move", value: 0 }, (page) => page.keyboard.press("Home")],
  ["spin button", "LampBrightness", { deed: "move", value: 1 }, (page) => page.click(".spin-button .up")],
  ["edit", "LampBrightness", { deed: "commit", text: "17" }],
  ["edit", "LampBrightness", { deed: "commit", text: "300" }],
  ["combo", "LampMode", { deed: "pick", value: 1 }, (page) => page.select(".combo select", "Blink")],
  ["combo", "LampMode", { deed: "pick", value: 0 }, (page) => page.select(".combo select", "Steady")],
  ["button", "LampFlash", { deed: "push" }, (page) => page.keyboard.press("Space")],
  ["spin button", "LampBrightness", { deed: "move", value: 16 }, (page) => page.click(".spin-button .down")],
];

for (const access of ["named", "registers"]) {
  test(`ten deeds over ${access} access`, async () => {
    const description = ourDescription("first_page");
    const native = new NativeEngine();
    await playground.openFile(description);
    await playground.chooseAccess(access);
    await native.ask({ do: "open", access, simulated: false, page: "feature", file: description });
    const { layout } = await native.ask({ do: "show", page: "feature" });
    let seen = 0;
    for (const [kind, feature, deed, work] of deeds) {
      const control = layout.findIndex((one) => one.kind === kind && one.feature === feature);
      const expected = [];
      const act = async (done) => expected.push(...(await native.ask({ do: "act", page: "feature", control, ...done })).calls);
      let calls;
      if (kind === "edit") {
        await act({ deed: "focus" });
        await act(deed);
        calls = await playground.callsOf(() => typeInto(feature, deed.text));
      } else {
        await act(deed);
        const selector = playground.control(kind, feature);
        if (kind === "slider" || kind === "button") await playground.page.focus(selector);
        calls = await playground.callsOf(() => work(playground.page));
      }
      assert.deepEqual(calls, expected, `${kind} ${feature} ${JSON.stringify(deed)}`);
      seen += calls.length;
    }
    assert.ok(seen > 20, `${seen} calls`);
    native.end();
  });
}

async function typeInto(feature, text) {
  await playground.page.focus(playground.control("edit", feature));
  await playground.page.$eval(playground.control("edit", feature), (input) => input.select());
  await playground.page.keyboard.type(text);
  await playground.page.evaluate(() => document.activeElement.blur());
  await playground.settle();
  await playground.page.evaluate(() => document.getElementById("box").close());
}
