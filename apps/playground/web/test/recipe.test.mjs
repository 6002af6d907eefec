// A description as a camera brings it along, and its way onto a page by the recipe of descriptions/README.md.

import assert from "node:assert/strict";
import { test } from "node:test";

import { useBrowser } from "./support.mjs";

let playground;
useBrowser((made) => (playground = made));

const camera = `<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Other" VendorName="Others" ToolTip="For other programs" StandardNameSpace="None"
  SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0"
  SubMinorVersion="0" ProductGuid="6E0B8A8C-6B0E-4D52-9A55-0D5C1B9E9F17"
  VersionGuid="6E0B8A8C-6B0E-4D52-9A55-0D5C1B9E9F18" xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>ImageFormatControl</pFeature></Category>
  <Category Name="ImageFormatControl"><pFeature>Width</pFeature></Category>
  <Integer Name="Width">
    <pIsLocked>TLParamsLocked</pIsLocked>
    <pValue>WidthReg</pValue>
    <Min>8</Min>
    <Max>16376</Max>
    <Inc>8</Inc>
  </Integer>
  <IntReg Name="WidthReg">
    <Address>0x10200</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Endianess>BigEndian</Endianess>
  </IntReg>
  <Integer Name="TLParamsLocked"><Value>0</Value></Integer>
  <Port Name="Device"/>
</RegisterDescription>
`;

const group = "<pFeature>PageGroup</pFeature>";
const item = `<Category Name="PageGroup"><DisplayName>Special</DisplayName><pFeature>PageItem</pFeature></Category>
  <Category Name="PageItem">
    <Extension><ZELItemGUID>{0A6C2C52-6C0B-4E4B-9E0E-6D3C5A0F7B10}</ZELItemGUID></Extension>
    <DisplayName>Image</DisplayName><pFeature>Width</pFeature>
  </Category>
  `;
const mark = "<Extension><ZELElementGUID>{0A6C2C52-6C0B-4E4B-9E0E-6D3C5A0F7B11}</ZELElementGUID></Extension>";
const turnedRound = `<IntSwissKnife Name="MayBeChanged">
    <pVariable Name="LOCKED">TLParamsLocked</pVariable><Formula>LOCKED=0</Formula>
  </IntSwissKnife>
  `;

const findings = async () => {
  await playground.settleFindings();
  return playground.text("#findings");
};

test("a camera's description is marked, appears, is moved, and the write is read", async () => {
  await playground.chooseAccess("registers");
  await playground.drop(camera, "other.xml");
  assert.match(await playground.text("#page-panel"), /nothing to show/);
  assert.match(await findings(), /no-marks/);

  await playground.pasteBehind('<Category Name="Root">', group);
  await playground.pasteBehind(`${group}<pFeature>ImageFormatControl</pFeature></Category>`, `\n  ${item}`);
  await playground.pasteBehind('<Integer Name="Width">', mark);
  assert.equal(await playground.text("#page-tabs [aria-selected=true]"), "Selvane Feature Controls");
  const slider = playground.control("slider", "Width");
  assert.equal(await playground.page.$eval(slider, (input) => input.disabled), true);
  assert.match(await findings(), /mark-grey.*X=0/s);
  await playground.page.evaluate(() => [...document.querySelectorAll(".finding")].find((one) => one.textContent.includes("mark-grey")).click());
  assert.match(await playground.text(".cm-line.chosen-line"), /TLParamsLocked/);

  await playground.pasteBehind("</IntReg>", `\n  ${turnedRound}`);
  await playground.goBehind("<pIsLocked>TLParamsLocked");
  for (const _ of "TLParamsLocked") await playground.page.keyboard.press("Backspace");
  await playground.insert("MayBeChanged");
  await playground.page.waitForFunction((one) => document.querySelector(one)?.disabled === false, {}, slider);
  await playground.settle();
  assert.doesNotMatch(await findings(), /mark-grey/);

  await playground.page.focus(slider);
  const writes = await playground.writesOf(() => playground.page.keyboard.press("End"));
  assert.deepEqual(writes, ["Set device 3 0x00010200 <- 00 00 3F F8, ok"]);
  assert.equal(await playground.valueOf("edit", "Width"), "16376");
});

test("findings are those over the registers that the camera holds", async () => {
  await playground.startFrom("simulated_camera");
  const found = await findings();
  assert.doesNotMatch(found, /ExposureUnlocked reads 0/);
  assert.doesNotMatch(found, /--memory/);
});
