// The one list of what deviates, by whom and why. A check that fails where the list says so counts as passed; a
// listed deviation that no longer shows fails the run, so that the list cannot rot.

import { readFileSync } from 'node:fs';

const list = JSON.parse(readFileSync(new URL('../deviations.json', import.meta.url), 'utf8'));

export class Deviations {
  // `by` chooses this program's part of the list.
  constructor(by) {
    this.entries = list.filter((d) => by.includes(d.by)).flatMap((d) => {
      const families = d.families ?? [null];
      return families.map((family) => ({ ...d, family, seen: false }));
    });
  }

  // The listed deviation of this check, marked as seen, or null.
  find(by, family, check) {
    const entry = this.entries.find((d) => d.by === by && d.family === family && d.check === check);
    if (entry) entry.seen = true;
    return entry ?? null;
  }

  // The same without marking it.
  expects(by, family, check) {
    return this.entries.find((d) => d.by === by && d.family === family && d.check === check) ?? null;
  }

  unseen() {
    return this.entries.filter((d) => !d.seen);
  }
}
