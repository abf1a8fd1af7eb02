// Asks the camera for the lines that came since the newest one that is known.
import type { LogView } from '../types';
import type { LogRing } from './ring';

const kMostRequests = 4;

// The newest known line is asked for too: when it is another one now, or none, the camera's process began anew, and so
// does the ring. `ask` gets the number after which lines are wanted, and how many at most.
export async function catchUp(
  ring: LogRing,
  ask: (after: number, limit: number) => Promise<LogView>,
  limit = 2000,
): Promise<void> {
  const known = ring.newestLine;
  let after = undefined === known ? 0 : known.number - 1;
  let isFirst = undefined !== known;
  for (let request = 0; request < kMostRequests; request += 1) {
    const view = await ask(after, limit);
    const first = view.entries[0];
    if (isFirst && undefined !== known) {
      isFirst = false;
      const isOther = first?.number === known.number && (first.time !== known.time || first.text !== known.text);
      if (undefined === first || isOther) {
        ring.restart();
        after = 0;
        continue;
      }
      ring.addGap(first.number - known.number - 1);
    }
    ring.add(view.entries);
    const last = view.entries[view.entries.length - 1];
    if (undefined === last || view.entries.length < limit) {
      return;
    }
    after = last.number;
  }
}
