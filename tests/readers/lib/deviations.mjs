// The one list of what deviates, by whom and why. A check that fails where the list says so counts as passed; a
// listed deviation that no longer shows fails the run, so that the list cannot rot. An entry is
//
//   id      a short name                         by      who finds it: a reader, or 'strict' for the strict check
//   check   which check it fails, or the fault   in      the section families or models where it shows
//   factor  by how much, where that is known     reason  why it is so

import { readFileSync } from 'node:fs';

const list = JSON.parse(readFileSync(new URL('../deviations.json', import.meta.url), 'utf8'));

export class Deviations {
  // `mine(by, name)` chooses the entries that this program is to see.
  constructor(mine) {
    this.entries = list.flatMap((d) => d.in.map((name) => ({ ...d, name, seen: false }))).filter((d) => mine(d.by, d.name));
  }

  // The listed deviation of this check, marked as seen, or null.
  find(by, name, check) {
    const entry = this.entries.find((d) => d.by === by && d.name === name && d.check === check);
    if (entry) entry.seen = true;
    return entry ?? null;
  }

  // The same without marking it.
  expects(by, name, check) {
    return this.entries.find((d) => d.by === by && d.name === name && d.check === check) ?? null;
  }

  // Says what was let through, and fails the run for what no longer shows.
  conclude(run) {
    for (const d of this.entries) {
      const place = `${d.by}, ${d.name}, ${d.check}`;
      if (d.seen) console.log(`listed: ${d.id} (${place})`);
      else run.check(`the listed deviation "${d.id}" (${place}) still shows`, false, 'take it off the list');
    }
  }
}
