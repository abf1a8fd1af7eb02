import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  clockText,
  type Curve,
  dayProgress,
  dayState,
  luxAt,
  minutesOf,
  objection,
  planText,
  readPlan,
  secondsOf,
  timeText,
} from '../src/scene/day';

const kCurve: Curve = { sunrise: '06:00', sunset: '20:00', twilightMinutes: 30, dayLux: 20000, nightLux: 0.1 };
const clock = (time: string, simulated = true, speed = 1440) => ({ time, simulated, speed, revision: 0 });

test('times of the day are read strictly', () => {
  assert.equal(minutesOf('06:30'), 390);
  assert.equal(minutesOf('6:30'), 390);
  assert.equal(minutesOf('23:59:30'), 1439);
  for (const bad of ['', '24:00', '12:60', '12', '12:5', 'noon', '-1:00', '12:00 ']) {
    assert.equal(minutesOf(bad), undefined, bad);
  }
  assert.equal(timeText(390), '06:30');
  assert.equal(timeText(1440 + 5), '00:05');
  assert.equal(timeText(-5), '23:55');
});

test('the day is light, the night is dark, and twilight is in between by the logarithm', () => {
  assert.equal(luxAt(kCurve, 12 * 60), 20000);
  assert.equal(luxAt(kCurve, 0), 0.1);
  assert.equal(luxAt(kCurve, 5 * 60 + 30), 0.1);
  assert.ok(Math.abs(luxAt(kCurve, 6 * 60 + 30) - 20000) < 1e-6);
  assert.ok(Math.abs(luxAt(kCurve, 6 * 60) - Math.sqrt(0.1 * 20000)) < 1e-6);
  assert.ok(Math.abs(luxAt(kCurve, 20 * 60) - Math.sqrt(0.1 * 20000)) < 1e-6);
});

test('a twilight may reach over midnight', () => {
  const early = { ...kCurve, sunrise: '00:10', twilightMinutes: 60 };
  assert.ok(luxAt(early, 1439) > 0.1);
  assert.ok(luxAt(early, 1439) < luxAt(early, 0));
});

test('a night without any light is drawn, not divided by', () => {
  assert.ok(Number.isFinite(luxAt({ ...kCurve, nightLux: 0 }, 6 * 60)));
});

test('a curve that cannot be is explained', () => {
  assert.equal(objection(kCurve), '');
  for (const [change, word] of [
    [{ sunrise: 'x' }, 'times of the day'],
    [{ sunset: '05:00' }, 'rise before'],
    [{ sunset: '06:00' }, 'rise before'],
    [{ twilightMinutes: 0 }, 'twilight'],
    [{ twilightMinutes: 181 }, 'twilight'],
    [{ twilightMinutes: NaN }, 'twilight'],
    [{ nightLux: -1 }, 'Light is between'],
    [{ dayLux: 300000 }, 'Light is between'],
    [{ dayLux: 0.01 }, 'darker than'],
  ] as const) {
    assert.match(objection({ ...kCurve, ...change }), new RegExp(word), JSON.stringify(change));
  }
});

test('the camera’s times are read and written without a zone', () => {
  const seconds = secondsOf('2026-11-21T22:40:05') as number;
  assert.equal(clockText(seconds), '2026-11-21T22:40:05');
  assert.equal(clockText(seconds + 86400), '2026-11-22T22:40:05');
  assert.equal(clockText(secondsOf('2026-11-21T22:40') as number), '2026-11-21T22:40:00');
  for (const bad of ['', '2026-11-21', '2026-02-31T00:00:00', '2026-13-01T00:00:00', '2026-01-01T25:00:00']) {
    assert.equal(secondsOf(bad), undefined, bad);
  }
});

test('a day in a minute goes on until a day has passed', () => {
  const plan = { from: '2026-11-21T22:40:05', lightBefore: { kind: 'fixed', lux: 5 } };
  assert.equal(dayState(plan, clock('2026-11-21T22:40:05')), 'running');
  assert.equal(dayState(plan, clock('2026-11-22T22:40:04')), 'running');
  assert.equal(dayState(plan, clock('2026-11-22T22:40:05')), 'over');
  assert.equal(dayProgress(plan, clock('2026-11-22T10:40:05')), 0.5);
  assert.equal(dayProgress(plan, clock('2027-11-22T10:40:05')), 1);
});

test('who changes the clock ends the day', () => {
  const plan = { from: '2026-11-21T22:40:05', lightBefore: null };
  assert.equal(dayState(plan, clock('2026-11-21T23:00:00', false, 1)), 'gone');
  assert.equal(dayState(plan, clock('2026-11-21T23:00:00', true, 60)), 'gone');
  assert.equal(dayState(plan, clock('2026-11-21T21:40:00')), 'gone');
  // News of the clock that was overtaken by the answer that began the day is no change.
  assert.equal(dayState(plan, clock('2026-11-21T22:40:00')), 'running');
  assert.equal(dayProgress(plan, clock('2026-11-21T22:40:00')), 0);
});

test('a plan survives a reload; anything else in its place does not', () => {
  const plan = { from: '2026-11-21T22:40:05', lightBefore: { kind: 'fixed', lux: 5 } };
  assert.deepEqual(readPlan(planText(plan)), plan);
  for (const bad of [null, '', 'null', '3', '{}', '{"from":5}', '{"from":"soon"}', '[']) {
    assert.equal(readPlan(bad), undefined, String(bad));
  }
});
