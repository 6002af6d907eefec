// Files as bytes, and the texts in them. What is opened goes to the engine, and is saved, in its own encoding and with
// its own line ends, so that the driver hands out the bytes that stand in the file.

export type Encoding = "utf-8" | "utf-8 with mark" | "utf-16le" | "utf-16be" | "latin1";

export interface FileForm {
  encoding: Encoding;
  lineEnd: "\n" | "\r\n" | "\r";
}

export const plainForm: FileForm = { encoding: "utf-8", lineEnd: "\n" };

function encodingOf(bytes: Uint8Array): Encoding {
  const [first, second, third] = bytes;
  if (first === 0xef && second === 0xbb && third === 0xbf) return "utf-8 with mark";
  if (first === 0xff && second === 0xfe) return "utf-16le";
  if (first === 0xfe && second === 0xff) return "utf-16be";
  const head = new TextDecoder("latin1").decode(bytes.subarray(0, 200));
  return /^<\?xml[^>]*encoding\s*=\s*["'](iso-8859-1|latin1)["']/i.test(head) ? "latin1" : "utf-8";
}

function lineEndOf(text: string): FileForm["lineEnd"] {
  const at = text.search(/[\r\n]/);
  if (at < 0 || text[at] === "\n") return "\n";
  return text[at + 1] === "\n" ? "\r\n" : "\r";
}

export function decode(bytes: Uint8Array): { text: string; form: FileForm } {
  const encoding = encodingOf(bytes);
  const label = encoding === "utf-8 with mark" ? "utf-8" : encoding;
  const text = encoding === "latin1" ? bytesAsText(bytes) : new TextDecoder(label).decode(bytes);
  return { text, form: { encoding, lineEnd: lineEndOf(text) } };
}

// The decoder of browsers takes latin1 for another table.
function bytesAsText(bytes: Uint8Array): string {
  let text = "";
  for (const byte of bytes) text += String.fromCharCode(byte);
  return text;
}

function utf16(text: string, littleEndian: boolean): Uint8Array {
  const view = new DataView(new ArrayBuffer(2 + 2 * text.length));
  view.setUint16(0, 0xfeff, littleEndian);
  for (let at = 0; at < text.length; at++) view.setUint16(2 + 2 * at, text.charCodeAt(at), littleEndian);
  return new Uint8Array(view.buffer);
}

/** The text as the editor has it, with plain line ends. */
export function encode(text: string, form: FileForm): Uint8Array {
  const lines = form.lineEnd === "\n" ? text : text.replaceAll("\n", form.lineEnd);
  switch (form.encoding) {
    case "utf-8":
      return new TextEncoder().encode(lines);
    case "utf-8 with mark":
      return new TextEncoder().encode("\ufeff" + lines);
    case "latin1":
      return Uint8Array.from(lines, (character) => {
        const code = character.charCodeAt(0);
        return code < 0x100 ? code : 0x3f;
      });
    default:
      return utf16(lines, form.encoding === "utf-16le");
  }
}
