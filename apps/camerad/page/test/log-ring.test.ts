import assert from 'node:assert/strict';
import { test } from 'node:test';
import { type LogLine, LogRing } from '../src/log/ring';

const line = (number: number, kind = 'driver'): LogLine => ({
  number,
  time: '2026-11-21T12:00:00',
  kind,
  channel: 1,
  command: 34,
  option: 'set',
  result: 0,
  text: `line ${number}`,
});
const numbers = (ring: LogRing): number[] => ring.shown().map((one) => one.number);

test('lines stand in the order of their numbers, each once, wherever they come from', () => {
  const ring = new LogRing();
  assert.equal(ring.add([line(1), line(2), line(5, 'message')]), 3);
  assert.equal(ring.add([line(3), line(4), line(5), line(6)]), 3);
  assert.equal(ring.add([line(1), line(6)]), 0);
  assert.deepEqual(numbers(ring), [1, 2, 3, 4, 5, 6]);
  assert.equal(ring.last, 6);
});

test('the newest are kept, and what went does not come back', () => {
  const ring = new LogRing(100);
  for (let i = 1; i <= 1000; i += 1) {
    ring.add([line(i)]);
    assert.ok(ring.all.length <= 150);
  }
  assert.deepEqual(
    numbers(ring),
    Array.from({ length: 100 }, (_, i) => 901 + i),
  );
  ring.add([line(5)]);
  assert.equal(ring.shown().length, 100);
});

test('a batch that is larger than the ring leaves its newest', () => {
  const ring = new LogRing(10);
  ring.add(Array.from({ length: 1000 }, (_, i) => line(i + 1)));
  assert.deepEqual(numbers(ring), [991, 992, 993, 994, 995, 996, 997, 998, 999, 1000]);
});

test('cleared lines do not come back with the next list', () => {
  const ring = new LogRing();
  ring.add([line(1), line(2)]);
  ring.clear();
  // What came last stays known: it tells whether the camera still counts on.
  assert.equal(ring.newestLine?.number, 2);
  ring.add([line(1), line(2), line(3)]);
  assert.deepEqual(numbers(ring), [3]);
  assert.equal(ring.received, 3);
});

test('a camera that began anew counts from 1', () => {
  const ring = new LogRing();
  ring.add([line(500)]);
  ring.restart();
  assert.equal(ring.newestLine, undefined);
  ring.add([line(1)]);
  assert.deepEqual(numbers(ring), [1]);
});

test('lines that did not come are told, in their place', () => {
  const ring = new LogRing();
  ring.add([line(1)]);
  ring.addGap(0);
  ring.addGap(30);
  ring.add([line(32)]);
  assert.deepEqual(
    ring.shown().map((one) => one.kind),
    ['driver', 'gap', 'driver'],
  );
  assert.match(ring.shown()[1]?.text ?? '', /^30 lines were left out/);
});

test('missing lines are found and filled in, and what was said of them goes', () => {
  const ring = new LogRing();
  ring.add([line(1), line(2)]);
  assert.equal(ring.missingAfter(), undefined);
  ring.addGap(2);
  ring.add([line(5)]);
  assert.equal(ring.missingAfter(), 2);
  ring.fill(2, [line(3), line(4), line(5)]);
  assert.deepEqual(
    ring.shown().map((one) => one.text),
    ['line 1', 'line 2', 'line 3', 'line 4', 'line 5'],
  );
  assert.equal(ring.missingAfter(), undefined);
});

test('lines that are missing behind the newest are found, too', () => {
  const ring = new LogRing();
  ring.add([line(1)]);
  ring.addGap(2);
  assert.equal(ring.missingAfter(), 1);
  ring.fill(1, [line(2), line(3)]);
  assert.deepEqual(numbers(ring), [1, 2, 3]);
});

test('messages that nobody told of are found by their numbers', () => {
  const ring = new LogRing();
  ring.add([line(1), line(4)]);
  assert.equal(ring.missingAfter(), 1);
});

test('what the camera does not have either is asked for once', () => {
  const ring = new LogRing();
  ring.add([line(1)]);
  ring.addGap(5);
  ring.add([line(9)]);
  ring.fill(1, [line(8), line(9)]);
  assert.deepEqual(
    ring.shown().map((one) => one.number),
    [1, 1.5, 8, 9],
  );
  assert.equal(ring.missingAfter(), undefined);
  ring.add([line(12)]);
  assert.equal(ring.missingAfter(), 9);
});

test('each change is seen by its version', () => {
  const ring = new LogRing();
  const versions = [ring.version];
  ring.add([line(1)]);
  versions.push(ring.version);
  ring.add([line(1)]);
  assert.equal(ring.version, versions[1]);
  ring.addGap(1);
  versions.push(ring.version);
  ring.clear();
  versions.push(ring.version);
  ring.restart();
  versions.push(ring.version);
  assert.equal(new Set(versions).size, 5);
});

test('a thousand lines a second for a minute are no burden', () => {
  const ring = new LogRing();
  const began = process.cpuUsage();
  for (let i = 0; i < 600; i += 1) {
    ring.add(Array.from({ length: 100 }, (_, k) => line(100 * i + k + 1)));
    ring.shown();
  }
  assert.equal(ring.shown().length, 2000);
  const spent = process.cpuUsage(began);
  assert.ok(spent.user + spent.system < 5_000_000, `${spent.user + spent.system} µs`);
});
