// Gathers the log from the moment the page starts, whether or not somebody looks at it: the list first, then events, and
// what was missed after each connection. Drawing is told at most once for each picture of the screen.
import { signal } from '@preact/signals';

import { api, explain } from '../api';
import { onAnew, onEvent } from '../store';
import type { LogEntry } from '../types';
import { catchUp } from './catchUp';
import { kMostLines, LogRing } from './ring';

const kQuiet = 500; // milliseconds
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
  fillWhenQuiet();
}

// What did not come as events is asked for once no more come: in a burst more is logged than is told.
let quiet: ReturnType<typeof setTimeout> | undefined;

function fillWhenQuiet(): void {
  clearTimeout(quiet);
  quiet = setTimeout(() => {
    const after = ring.missingAfter();
    if (undefined === after || isLoading) {
      return;
    }
    api.log(after, kMostLines).then(
      (view) => {
        ring.fill(after, view.entries);
        changed();
        fillWhenQuiet(); // there may be another gap
      },
      () => undefined, // it stays a gap
    );
  }, kQuiet);
}

let isLoading = false;
let isWanted = false;
let isListed = false; // the list has been here

async function load(): Promise<void> {
  if (isLoading) {
    isWanted = true;
    return;
  }
  isLoading = true;
  try {
    do {
      isWanted = false;
      if (!isListed) {
        ring.restart(); // what came before it as events stands in it, too, and much that is older
      }
      await catchUp(ring, (after, limit) => api.log(after, limit));
      isListed = true;
      changed();
    } while (isWanted);
    feedProblem.value = '';
  } catch (error) {
    feedProblem.value = explain(error);
  }
  isLoading = false;
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
    take(
      [
        {
          number: event.number,
          time: event.time,
          kind: 'message',
          channel: 0,
          command: 0,
          option: '',
          result: 0,
          text: event.text,
        },
      ],
      event.dropped,
    ),
  );
  onAnew(() => void load());
}
