// Short words for making elements.

type Attributes = Record<string, string | number | boolean | undefined>;

export function make<Tag extends keyof HTMLElementTagNameMap>(
  tag: Tag,
  attributes: Attributes = {},
  ...inside: (Node | string)[]
): HTMLElementTagNameMap[Tag] {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === undefined || value === false) continue;
    made.setAttribute(name, value === true ? "" : String(value));
  }
  made.append(...inside);
  return made;
}

/** A text that is there already is not put there again: that would have the browser lay it out anew. */
export function write(element: HTMLElement, text: string): void {
  if (element.textContent !== text) element.textContent = text;
}

export function byId<Kind extends HTMLElement>(id: string): Kind {
  const found = document.getElementById(id);
  if (!found) throw new Error(`no element ${id}`);
  return found as Kind;
}

/** Arrow keys, Home and End move the focus among elements of which one can be reached by Tab. */
export function moveWithArrows(parent: HTMLElement, selector: string): void {
  parent.addEventListener("keydown", (event) => {
    const all = [...parent.querySelectorAll<HTMLElement>(selector)];
    const at = all.indexOf(document.activeElement as HTMLElement);
    if (at < 0) return;
    const steps: Record<string, number> = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: all.length - 1 };
    const to = steps[event.key];
    if (to === undefined) return;
    event.preventDefault();
    all[(to + all.length) % all.length]?.focus();
  });
}
