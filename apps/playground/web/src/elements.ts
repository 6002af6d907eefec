// Where features stand in the text of a description.

import { ensureSyntaxTree } from "@codemirror/language";
import type { EditorState } from "@codemirror/state";
import type { SyntaxNode } from "@lezer/common";

/** The offset of the start tag with this name; -1 for none. Names of links stand inside elements, not in tags. */
export function findElement(text: string, name: string): number {
  for (const quoted of [`"${name}"`, `'${name}'`]) {
    for (let at = text.indexOf(quoted); at >= 0; at = text.indexOf(quoted, at + 1)) {
      const tag = text.lastIndexOf("<", at);
      const head = text.slice(tag, at);
      if (tag >= 0 && /^<[A-Za-z][^>]*\sName\s*=\s*$/.test(head) && !isCommentedOut(text, tag)) return tag;
    }
  }
  return -1;
}

function isCommentedOut(text: string, at: number): boolean {
  const opened = text.lastIndexOf("<!--", at);
  return opened >= 0 && text.lastIndexOf("-->", at) < opened;
}

export interface NamedElement {
  tag: string;
  name: string;
  /** The features that it lists or links to, directly. */
  links: string[];
}

function childOf(node: SyntaxNode, ...names: string[]): SyntaxNode | null {
  for (const name of names) {
    const found = node.getChild(name);
    if (found) return found;
  }
  return null;
}

function nameIn(state: EditorState, tag: SyntaxNode): string {
  for (const attribute of tag.getChildren("Attribute")) {
    const name = attribute.getChild("AttributeName");
    const value = attribute.getChild("AttributeValue");
    if (name && value && state.sliceDoc(name.from, name.to) === "Name")
      return state.sliceDoc(value.from + 1, value.to - 1);
  }
  return "";
}

function linksIn(state: EditorState, element: SyntaxNode): string[] {
  const inside = state.sliceDoc(element.from, Math.min(element.to, element.from + 20_000));
  return [...inside.matchAll(/<p[A-Z]\w*[^>]*>\s*([\w.-]+)\s*</g)].map((match) => match[1] ?? "");
}

/** The named elements around a position in the text, the innermost first. */
export function elementsAt(state: EditorState, position: number): NamedElement[] {
  const tree = ensureSyntaxTree(state, Math.min(state.doc.length, position + 1000), 20);
  const found: NamedElement[] = [];
  for (let node: SyntaxNode | null = tree?.resolveInner(position, -1) ?? null; node; node = node.parent) {
    if (node.name !== "Element") continue;
    const tag = childOf(node, "OpenTag", "SelfClosingTag");
    const name = tag ? nameIn(state, tag) : "";
    const word = tag?.getChild("TagName");
    if (name && word) found.push({ tag: state.sliceDoc(word.from, word.to), name, links: linksIn(state, node) });
  }
  return found;
}
