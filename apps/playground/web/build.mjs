// build.mjs ENGINE.js OUTPUT.html VERSION: checks and bundles the web part, and puts everything into one file.
// The packages are installed when they are missing, as package-lock.json has them.

import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { existsSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

const here = dirname(fileURLToPath(import.meta.url));
const [engine, output, version] = process.argv.slice(2);
if (!engine || !output || !version) {
  console.error("usage: build.mjs ENGINE.js OUTPUT.html VERSION");
  process.exit(2);
}

const installed = join(here, "node_modules", ".package-lock.json");
if (!existsSync(installed)) {
  execFileSync("npm", ["ci", "--no-audit", "--no-fund", "--ignore-scripts"], { cwd: here, stdio: "inherit" });
}
execFileSync(process.execPath, [join(here, "node_modules/typescript/bin/tsc"), "-p", here], { stdio: "inherit" });
const { build, transform } = await import("esbuild");

async function bundle(name) {
  const result = await build({
    entryPoints: [join(here, "src", name)],
    bundle: true,
    minify: true,
    write: false,
    format: "iife",
    target: "es2022",
    charset: "utf8",
    legalComments: "none",
    logLevel: "warning",
    metafile: true,
    absWorkingDir: here,
  });
  return { text: result.outputFiles[0].text, licences: licencesOf(result.metafile) };
}

/** The licences of the packages that a bundle is made of; equal texts once. */
function licencesOf(metafile) {
  const packages = new Set();
  for (const input of Object.keys(metafile.inputs)) {
    const [, name] = /node_modules\/((?:@[^/]+\/)?[^/]+)\//.exec(input) ?? [];
    if (name) packages.add(name);
  }
  const texts = new Map();
  for (const name of [...packages].sort()) {
    const text = readFileSync(join(here, "node_modules", name, "LICENSE"), "utf8").trim();
    texts.set(text, [...(texts.get(text) ?? []), name]);
  }
  return [...texts].map(([text, names]) => `${names.join(", ")}\n\n${text}`).join("\n\n");
}

/** As gzip would, but for the last twentieth. */
function packed(path) {
  return execFileSync("zopfli", ["-c", path], { maxBuffer: 1 << 26 });
}

async function minified(text) {
  return (await transform(text, { minify: true, target: "es2022", legalComments: "none" })).code;
}

async function style() {
  const result = await build({ entryPoints: [join(here, "src/style.css")], minify: true, write: false });
  return result.outputFiles[0].text.trim();
}

// Nothing in a script may look like its end.
const asScript = (text) => text.replaceAll("</script", "<\\/script").replaceAll("<!--", "<\\!--");

const main = await bundle("main.ts");
const script = asScript(main.text);
const worker = asScript((await minified(readFileSync(engine, "utf8"))) + (await bundle("worker.ts")).text);
const hash = createHash("sha256").update(script).digest("base64");

// Nothing may be loaded and nothing may be sent. The script is told by its hash; styles are the editor's own;
// pictures are those in its style sheet.
const policy = [
  "default-src 'none'",
  "connect-src 'none'",
  `script-src 'sha256-${hash}' 'wasm-unsafe-eval'`,
  "worker-src blob:",
  "style-src 'unsafe-inline'",
  "img-src data:",
  "form-action 'none'",
  "base-uri 'none'",
].join("; ");

const parts = {
  POLICY: policy,
  STYLE: await style(),
  VERSION: version,
  ENGINE: packed(engine.replace(/\.js$/, ".wasm")).toString("base64"),
  WORKER: worker,
  SCRIPT: script,
  LICENCES: asScript(main.licences),
};
const template = readFileSync(join(here, "src/index.html"), "utf8");
const file = template.replace(/@([A-Z]+)@/g, (_, name) => parts[name]);
writeFileSync(output, file);
console.log(`${output}: ${file.length} bytes, ${gzipSync(file, { level: 9 }).length} compressed`);
