// Gathers the log from the moment the page starts, whether or not somebody looks at it: the list first, then events, and
// what was missed after each connection. Drawing is told at most once for each picture of the screen.
import { signal } from '@preact/signals';

import { api, explain } from '../api';
import { onAnew, onEvent } from '../store';
import type { LogEntry } from '../types';
import { type LogLine, LogRing } from './ring';

const kMostAtOnce = 2000;
const kMostRequests = 4;
const kDrawPause = 80; // milliseconds; lines come in batches of 100 ms, and nobody reads faster

export const ring = new LogRing();
// Grows when there is something new to draw.
export const drawn = signal(0);
export const feedProblem = signal('');

let isDue = false;

function changed(): void {
  if (isDue) {
    return;
  }
  isDue = true;
  const draw = (): void => {
    isDue = false;
    drawn.value += 1;
  };
  // A hidden page is given no pictures to draw, and must not wait for them.
  if (document.hidden) {
    setTimeout(draw, 1000);
  } else {
    setTimeout(() => requestAnimationFrame(draw), kDrawPause);
  }
}

export function clearLog(): void {
  ring.clear();
  changed();
}

function take(entries: readonly LogEntry[], dropped: number): void {
  ring.add(entries);
  ring.addGap(dropped);
  changed();
}

function isSame(a: LogLine | undefined, b: LogEntry): boolean {
  return undefined !== a && a.number === b.number && a.time === b.time && a.text === b.text;
}

let isLoading = false;
let isWanted = false;

// Asks for what came since the newest line. That line is asked for too: when it is another one now, or none, the camera's
// process began anew, and so does the list.
async function load(): Promise<void> {
  if (isLoading) {
    isWanted = true;
    return;
  }
  isLoading = true;
  try {
    do {
      isWanted = false;
      await catchUp();
    } while (isWanted);
    feedProblem.value = '';
  } catch (error) {
    feedProblem.value = explain(error);
  }
  isLoading = false;
}

async function catchUp(): Promise<void> {
  const known = ring.newestLine;
  let after = undefined === known ? 0 : known.number - 1;
  for (let request = 0; request < kMostRequests; request += 1) {
    const view = await api.log(after, kMostAtOnce);
    const first = view.entries[0];
    if (0 === request && undefined !== known) {
      if (undefined === first || (first.number === known.number && !isSame(known, first))) {
        ring.restart();
        changed();
        isWanted = true; // from the beginning
        return;
      }
      if (first.number > known.number + 1) {
        ring.addGap(first.number - known.number - 1);
      }
    }
    take(view.entries, 0);
    const last = view.entries[view.entries.length - 1];
    if (undefined === last || view.entries.length < kMostAtOnce) {
      return;
    }
    after = last.number;
  }
}

let isStarted = false;

// Called once when the page starts.
export function startLog(): void {
  if (isStarted) {
    return;
  }
  isStarted = true;
  onEvent('driver', (event) => take(event.entries, event.dropped));
  onEvent('message', (event) =>
    take([{ number: event.number, time: event.time, kind: 'message', channel: 0, command: 0, option: '', result: 0,
      text: event.text }], 0));
  onAnew(() => void load());
}
