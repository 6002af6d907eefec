// The editor of the description.

import { defaultKeymap, history, historyKeymap, indentWithTab } from "@codemirror/commands";
import { xml } from "@codemirror/lang-xml";
import {
  bracketMatching,
  defaultHighlightStyle,
  foldGutter,
  foldKeymap,
  HighlightStyle,
  indentOnInput,
  syntaxHighlighting,
} from "@codemirror/language";
import { type Diagnostic, lintGutter, lintKeymap, setDiagnostics } from "@codemirror/lint";
import { highlightSelectionMatches, search, searchKeymap } from "@codemirror/search";
import { Compartment, EditorState, type Extension, StateEffect, StateField, Transaction } from "@codemirror/state";
import {
  Decoration,
  type DecorationSet,
  drawSelection,
  EditorView,
  highlightActiveLine,
  highlightActiveLineGutter,
  highlightSpecialChars,
  keymap,
  lineNumbers,
} from "@codemirror/view";
import { tags } from "@lezer/highlight";

const chooseLine = StateEffect.define<number>();

const chosenLine = StateField.define<DecorationSet>({
  create: () => Decoration.none,
  update(lines, change) {
    lines = lines.map(change.changes);
    for (const effect of change.effects) {
      if (!effect.is(chooseLine)) continue;
      const line = change.state.doc.lineAt(effect.value);
      lines = Decoration.set([Decoration.line({ class: "chosen-line" }).range(line.from)]);
    }
    return lines;
  },
  provide: (field) => EditorView.decorations.from(field),
});

const darkColours = HighlightStyle.define([
  { tag: tags.tagName, color: "#8ab4f8" },
  { tag: tags.attributeName, color: "#c58af9" },
  { tag: [tags.attributeValue, tags.string], color: "#81c995" },
  { tag: tags.comment, color: "#9aa0a6" },
  { tag: [tags.processingInstruction, tags.documentMeta, tags.meta], color: "#9aa0a6" },
  { tag: tags.invalid, color: "#f28b82" },
]);

export interface EditorEvents {
  /** The text is another one than before. */
  changed(): void;
  /** The cursor stands elsewhere, by mouse or keys. */
  moved(place: number): void;
}

export class Editor {
  readonly view: EditorView;
  private readonly colours = new Compartment();
  private text: string | undefined;

  constructor(parent: HTMLElement, events: EditorEvents) {
    const dark = matchMedia("(prefers-color-scheme: dark)");
    dark.addEventListener("change", () => {
      this.view.dispatch({ effects: this.colours.reconfigure(this.coloursFor(dark.matches)) });
    });
    const listener = EditorView.updateListener.of((update) => {
      if (update.docChanged) {
        this.text = undefined;
        events.changed();
      }
      const byUser = update.transactions.some((one) => one.isUserEvent("select"));
      if (update.selectionSet && byUser) events.moved(update.state.selection.main.head);
    });
    this.view = new EditorView({
      parent,
      state: EditorState.create({ extensions: [this.extensions(dark.matches), listener] }),
    });
  }

  /** The whole text, with plain line ends. */
  getText(): string {
    this.text ??= this.view.state.doc.toString();
    return this.text;
  }

  setText(text: string): void {
    this.view.dispatch({
      changes: { from: 0, to: this.view.state.doc.length, insert: text },
      selection: { anchor: 0 },
      annotations: Transaction.addToHistory.of(true),
      scrollIntoView: true,
    });
  }

  showFindings(findings: Diagnostic[]): void {
    this.view.dispatch(setDiagnostics(this.view.state, findings));
  }

  /** Marks the line of a place, and shows it in the editor. */
  choose(place: number): void {
    this.view.dispatch({ effects: chooseLine.of(place) });
    // The editor's own way would scroll the window as well, and a narrow one away from what was clicked.
    const { top, height } = this.view.lineBlockAt(place);
    const { scrollDOM } = this.view;
    scrollDOM.scrollTop = top - (scrollDOM.clientHeight - height) / 2;
  }

  /** The same with the cursor there, and the editor in sight. */
  goTo(place: number): void {
    this.view.dispatch({
      effects: [chooseLine.of(place), EditorView.scrollIntoView(place, { y: "center" })],
      selection: { anchor: place },
    });
    this.view.focus();
  }

  private coloursFor(dark: boolean): Extension {
    return [
      syntaxHighlighting(dark ? darkColours : defaultHighlightStyle, { fallback: true }),
      EditorView.theme({}, { dark }),
    ];
  }

  private extensions(dark: boolean): Extension {
    return [
      lineNumbers(),
      highlightActiveLineGutter(),
      highlightSpecialChars(),
      history(),
      foldGutter(),
      lintGutter(),
      drawSelection(),
      indentOnInput(),
      bracketMatching(),
      highlightActiveLine(),
      highlightSelectionMatches(),
      search({ top: true }),
      xml(),
      chosenLine,
      this.colours.of(this.coloursFor(dark)),
      EditorView.contentAttributes.of({ "aria-label": "Device description" }),
      // Escape, then Tab leaves the editor by keys.
      keymap.of([...defaultKeymap, ...searchKeymap, ...historyKeymap, ...foldKeymap, ...lintKeymap, indentWithTab]),
    ];
  }
}
