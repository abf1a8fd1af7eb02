import assert from 'node:assert/strict';
import { test } from 'node:test';

import { millisecondsOf, timeAt } from '../src/time';

const kNoon = { time: '2026-11-21T12:00:00', simulated: false, speed: 1, revision: 0 };
const at = (clock: typeof kNoon, after: number) => new Date(timeAt(clock, 1000, 1000 + after)).toISOString().slice(11, 19);

test('the clock goes on between two events', () => {
  assert.equal(at(kNoon, 0), '12:00:00');
  assert.equal(at(kNoon, 5000), '12:00:05');
});

test('a simulated clock goes at its speed, or stands', () => {
  assert.equal(at({ ...kNoon, simulated: true, speed: 1440 }, 1000), '12:24:00');
  assert.equal(at({ ...kNoon, simulated: true, speed: 0 }, 9000), '12:00:00');
});

test('the real clock goes at the pace of time, whatever speed is set', () => {
  assert.equal(at({ ...kNoon, speed: 1440 }, 1000), '12:00:01');
});

test('a clock does not go backwards', () => {
  assert.equal(timeAt(kNoon, 1000, 900), millisecondsOf(kNoon.time));
});

test('a text that is no time is none', () => {
  assert.ok(Number.isNaN(millisecondsOf('nonsense')));
});
