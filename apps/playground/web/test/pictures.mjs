// pictures.mjs FOLDER: pictures of the playground to look at, light and dark, wide and narrow.

import { mkdirSync } from "node:fs";
import { join } from "node:path";

import { Browser, ourDescription } from "./support.mjs";

const [folder = "pictures"] = process.argv.slice(2);
mkdirSync(folder, { recursive: true });

const browser = await Browser.start();
try {
  for (const scheme of ["light", "dark"]) {
    for (const [name, width, height] of [["wide", 1400, 900], ["narrow", 420, 1500]]) {
      const playground = await browser.open(async (page) => {
        await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: scheme }]);
        await page.setViewport({ width, height });
      });
      await playground.startFrom("simulated_camera");
      await playground.settleFindings();
      await playground.showPage("exposure");
      await playground.showTool("describe");
      await playground.page.click(playground.control("slider", "ExposureTime"));
      await playground.page.waitForSelector("#description h3");
      await playground.page.screenshot({ path: join(folder, `${scheme}-${name}.png`) });
      await playground.showTool("registers");
      await playground.page.waitForSelector("#registers td input");
      await playground.page.screenshot({ path: join(folder, `${scheme}-${name}-registers.png`) });
      await playground.page.close();
    }
  }
  const playground = await browser.open();
  await playground.openFile(ourDescription("first_page"));
  await playground.chooseAccess("registers");
  await playground.typeBehind("<Min>0</Min>", "<pIsLokced>Changeable");
  await playground.settleFindings();
  await playground.page.focus(playground.control("slider", "LampBrightness"));
  for (const key of ["PageUp", "PageUp", "PageUp", "ArrowRight"]) await playground.page.keyboard.press(key);
  await playground.settle();
  await playground.page.screenshot({ path: join(folder, "first-page.png") });
} finally {
  await browser.end();
}
