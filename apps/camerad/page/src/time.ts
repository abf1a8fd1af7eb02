// The camera's clock between two of its events.
import { computed, signal } from '@preact/signals';

import { clock, clockSeen } from './store';
import type { Clock } from './types';

const tick = signal(0);

// Milliseconds since 1970 as if the camera's local time were UTC; NaN when the text is none.
export function millisecondsOf(time: string): number {
  return Date.parse(`${time}Z`);
}

export function timeAt(view: Clock, seen: number, now: number): number {
  return millisecondsOf(view.time) + Math.max(0, now - seen) * (view.simulated ? view.speed : 1);
}

// Now, by the camera's clock; undefined while it is not known.
export const deviceTime = computed(() => {
  void tick.value;
  if (null === clock.value) {
    return undefined;
  }
  const time = timeAt(clock.value, clockSeen.value, performance.now());
  return Number.isFinite(time) ? time : undefined;
});

export const deviceMinute = computed(() =>
  undefined === deviceTime.value ? undefined : Math.floor((deviceTime.value / 60_000) % 1440),
);

if ('undefined' !== typeof window) {
  setInterval(() => {
    if (!document.hidden) {
      tick.value += 1;
    }
  }, 500);
}
