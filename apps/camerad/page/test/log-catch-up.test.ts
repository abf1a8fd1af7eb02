import assert from 'node:assert/strict';
import { test } from 'node:test';
import { catchUp } from '../src/log/catchUp';
import { LogRing } from '../src/log/ring';
import type { LogEntry, LogView } from '../src/types';

const entry = (number: number, run = 'a'): LogEntry => ({
  number,
  time: '2026-11-21T12:00:00',
  kind: 'driver',
  channel: 1,
  command: 34,
  option: 'set',
  result: 0,
  text: `${run}${number}`,
});
// A camera that keeps the lines from `oldest` to `newest`.
function camera(oldest: number, newest: number, run = 'a') {
  const asked: number[] = [];
  const ask = (after: number, limit: number): Promise<LogView> => {
    asked.push(after);
    const entries: LogEntry[] = [];
    for (let number = Math.max(oldest, after + 1); number <= newest && entries.length < limit; number += 1) {
      entries.push(entry(number, run));
    }
    return Promise.resolve({ entries, last: entries[entries.length - 1]?.number ?? after });
  };
  return { asked, ask };
}
const texts = (ring: LogRing): string[] => ring.shown().map((line) => ('gap' === line.kind ? 'gap' : line.text));

test('at first everything that the camera keeps is asked for', async () => {
  const ring = new LogRing();
  const one = camera(1, 3);
  await catchUp(ring, one.ask);
  assert.deepEqual(texts(ring), ['a1', 'a2', 'a3']);
  assert.deepEqual(one.asked, [0]);
});

test('a long list comes in several answers', async () => {
  const ring = new LogRing();
  const one = camera(1, 7);
  await catchUp(ring, one.ask, 3);
  assert.equal(ring.shown().length, 7);
  assert.deepEqual(one.asked, [0, 3, 6]);
});

test('a list without end is not asked for without end', async () => {
  const one = camera(1, 1000);
  await catchUp(new LogRing(), one.ask, 3);
  assert.equal(one.asked.length, 4);
});

test('later only what is new is asked for', async () => {
  const ring = new LogRing();
  ring.add([entry(1), entry(2)]);
  const one = camera(1, 4);
  await catchUp(ring, one.ask);
  assert.deepEqual(texts(ring), ['a1', 'a2', 'a3', 'a4']);
  assert.deepEqual(one.asked, [1]);
});

test('what the camera no longer keeps is told as a gap', async () => {
  const ring = new LogRing();
  ring.add([entry(1), entry(2)]);
  await catchUp(ring, camera(10, 11).ask);
  assert.deepEqual(texts(ring), ['a1', 'a2', 'gap', 'a10', 'a11']);
  assert.match(ring.shown()[2]?.text ?? '', /^7 lines/);
});

test('a camera that began anew has other lines, whether fewer or more', async () => {
  for (const newest of [2, 5, 9]) {
    const ring = new LogRing();
    ring.add([entry(4), entry(5)]);
    await catchUp(ring, camera(1, newest, 'b').ask);
    assert.deepEqual(
      texts(ring),
      Array.from({ length: newest }, (_, i) => `b${i + 1}`),
      `${newest} lines`,
    );
  }
});

test('also after the lines were cleared away', async () => {
  const ring = new LogRing();
  ring.add([entry(4), entry(5)]);
  ring.clear();
  await catchUp(ring, camera(4, 6).ask);
  assert.deepEqual(texts(ring), ['a6']);
  ring.clear();
  await catchUp(ring, camera(1, 2, 'b').ask);
  assert.deepEqual(texts(ring), ['b1', 'b2']);
});
