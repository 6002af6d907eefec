// The text stays in the browser's own storage until it is cleared. Where there is no storage, nothing stays.

import type { FileForm } from "./encoding";
import type { Access } from "./protocol";

export interface Kept {
  name: string;
  text: string;
  form: FileForm;
  simulated: boolean;
  access: Access;
}

const key = "selvane_playground";

export function keep(what: Kept): boolean {
  try {
    localStorage.setItem(key, JSON.stringify(what));
    return true;
  } catch {
    return false;
  }
}

export function kept(): Kept | undefined {
  try {
    const stored = localStorage.getItem(key);
    return stored === null ? undefined : (JSON.parse(stored) as Kept);
  } catch {
    return undefined;
  }
}

export function forget(): void {
  try {
    localStorage.removeItem(key);
  } catch {
    // Nothing was kept.
  }
}
