import assert from 'node:assert/strict';
import { test } from 'node:test';

import {
  dayOf,
  inForceIn,
  minutesOf,
  moved,
  objection,
  parseTime,
  remarks,
  schemeAt,
  snapped,
  spanOf,
  spanOfNumbers,
  timeText,
} from '../src/logic/windows';

const span = (start: string, end: string) => spanOf({ start, end });
const day = (...windows: [string, string][]) =>
  dayOf(windows.map(([start, end]) => span(start, end)), 'scheme-0').map(
    (piece) => `${timeText(piece.from)}-${timeText(piece.to)} ${piece.scheme} (${piece.matching.join(',')})`,
  );

test('a scheme with the whole day leaves no room', () => {
  assert.deepEqual(day(['00:00', '24:00'], ['12:00', '13:00']), [
    '00:00-12:00 0 (0)',
    '12:00-13:00 0 (0,1)',
    '13:00-24:00 0 (0)',
  ]);
});

test('scheme 0 serves where no window matches', () => {
  assert.deepEqual(day(['06:00', '08:00'], ['12:00', '13:00']), [
    '00:00-06:00 0 ()',
    '06:00-08:00 0 (0)',
    '08:00-12:00 0 ()',
    '12:00-13:00 1 (1)',
    '13:00-24:00 0 ()',
  ]);
});

test('the start is in the window and the end is not', () => {
  const spans = [span('06:00', '08:00'), span('12:00', '13:00')];
  assert.equal(schemeAt(spans, 'scheme-0', minutesOf('11:59')), 0);
  assert.equal(schemeAt(spans, 'scheme-0', minutesOf('12:00')), 1);
  assert.equal(schemeAt(spans, 'scheme-0', minutesOf('12:59')), 1);
  assert.equal(schemeAt(spans, 'scheme-0', minutesOf('13:00')), 0);
});

test('a window past midnight never matches', () => {
  assert.deepEqual(day(['08:00', '09:00'], ['22:00', '06:00']), [
    '00:00-08:00 0 ()',
    '08:00-09:00 0 (0)',
    '09:00-24:00 0 ()',
  ]);
});

test('the lowest number wins where windows overlap', () => {
  assert.deepEqual(day(['00:00', '01:00'], ['18:00', '21:00'], ['20:00', '23:00']).slice(2), [
    '18:00-20:00 1 (1)',
    '20:00-21:00 1 (1,2)',
    '21:00-23:00 2 (2)',
    '23:00-24:00 0 ()',
  ]);
});

test('pieces and single minutes agree, and cover the day without a hole', () => {
  const spans = [span('03:10', '05:00'), span('04:00', '23:00'), span('22:30', '24:00'), span('12:00', '02:00')];
  const pieces = dayOf(spans, 'scheme-0');
  let at = 0;
  for (const piece of pieces) {
    assert.equal(piece.from, at);
    for (let minute = piece.from; minute < piece.to; ++minute) {
      assert.equal(schemeAt(spans, 'scheme-0', minute), piece.scheme, timeText(minute));
    }
    at = piece.to;
  }
  assert.equal(at, 1440);
});

test('a minute beyond 59 counts as the next hour, as the camera compares it', () => {
  assert.equal(minutesOf('08:75'), minutesOf('09:00'));
});

for (const [start, end, code] of [
  ['00:00', '24:00', undefined],
  ['23:59', '24:00', undefined],
  ['24:30', '25:00', 505],
  ['06:00', '24:15', 506],
  ['22:00', '06:00', 507],
  ['06:00', '06:00', 507],
  ['24:00', '24:00', 507],
] as [string, string, number | undefined][]) {
  test(`a window from ${start} to ${end} ${undefined === code ? 'can be stored' : `is refused with ${code}`}`, () => {
    assert.equal(objection(span(start, end))?.code, code);
  });
}

test('who wants a night is told how', () => {
  assert.match(objection(span('22:00', '06:00'))?.text ?? '', /past midnight/);
  assert.doesNotMatch(objection(span('06:00', '06:00'))?.text ?? '', /past midnight/);
});

test('gaps, overlaps and windows that never count are said in words', () => {
  const spans = [span('06:00', '20:00'), span('19:00', '22:00'), span('07:00', '08:00')];
  assert.deepEqual(remarks(spans, ['Day', 'Evening', 'Third'], 'scheme-0'), [
    'No window covers 00:00 to 06:00 and 22:00 to 24:00: Day, the first scheme, is in force there.',
    'Day and Third overlap from 07:00 to 08:00: Day stands first and is in force.',
    'Day and Evening overlap from 19:00 to 20:00: Day stands first and is in force.',
    'Third is never in force by its window: schemes before it cover all of it.',
  ]);
  assert.deepEqual(remarks([span('00:00', '24:00')], ['Day'], 'scheme-0'), []);
});

test('on a camera for number plates day and night decide where no window matches', () => {
  const spans = [span('08:00', '12:00'), span('12:00', '20:00'), span('11:00', '13:00')];
  assert.deepEqual(
    dayOf(spans, 'day-night').map((piece) => piece.scheme),
    [null, 0, 0, 1, 1, null],
  );
  assert.equal(schemeAt(spans, 'day-night', minutesOf('07:59')), null);
  assert.equal(schemeAt(spans, 'day-night', minutesOf('08:00')), 0);
  assert.equal(schemeAt(spans, 'day-night', minutesOf('20:00')), null);
  const names = ['Day', 'Night', 'Noon', 'Factory'];
  assert.deepEqual(remarks(spans, names, 'day-night').slice(0, 2), [
    'No window covers 00:00 to 08:00 and 20:00 to 24:00: day and night decide there, Day by day, Night at night.',
    'Day and Noon overlap from 11:00 to 12:00: Day stands first and is in force.',
  ]);
  assert.deepEqual(
    dayOf(spans, 'day-night').map((piece) => inForceIn(piece, names)),
    ['Day by day, Night at night', 'Day', 'Day', 'Night', 'Night', 'Day by day, Night at night'],
  );
  // With one scheme of the user the night is the factory's.
  assert.deepEqual(remarks([span('08:00', '24:00')], ['Day', 'Factory'], 'day-night'), [
    'No window covers 00:00 to 08:00: day and night decide there, Day by day, Factory at night.',
  ]);
});

test('a new camera, whose schemes all have the whole day, gets two sentences', () => {
  const whole = span('00:00', '24:00');
  assert.deepEqual(remarks([whole, whole, whole], ['A', 'B', 'C'], 'scheme-0'), [
    'A, B and C overlap from 00:00 to 24:00: A stands first and is in force.',
    'B and C are never in force by their windows: schemes before them cover all of them.',
  ]);
});

test('a window that could not be stored is no remark: it is explained beside it', () => {
  assert.deepEqual(remarks([span('00:00', '24:00'), span('23:00', '05:00')], ['A', 'B'], 'scheme-0'), []);
});

for (const [text, minutes] of [
  ['6', 360],
  ['06:30', 390],
  ['6.30', 390],
  ['0630', 390],
  ['6h', 360],
  [' 24:00 ', 1440],
  ['24:30', 1470],
  ['630', 390],
  ['6:60', undefined],
  ['-1', undefined],
  ['', undefined],
  ['noon', undefined],
] as [string, number | undefined][]) {
  test(`"${text}" is ${undefined === minutes ? 'no time' : timeText(minutes)}`, () => {
    assert.equal(parseTime(text), minutes);
  });
}

test('an edge stops before the other one, and a window stays in the day', () => {
  const window = span('06:00', '20:00');
  assert.deepEqual(moved(window, 'from', 1300), { from: 1199, to: 1200 });
  assert.deepEqual(moved(window, 'from', -20), { from: 0, to: 1200 });
  assert.deepEqual(moved(window, 'to', 100), { from: 360, to: 361 });
  assert.deepEqual(moved(window, 'to', 9999), { from: 360, to: 1440 });
  assert.deepEqual(moved(window, 'whole', 9999), { from: 600, to: 1440 });
  assert.deepEqual(moved(window, 'whole', -5), { from: 0, to: 840 });
});

test('whatever is moved can be stored afterwards', () => {
  for (const window of [span('22:00', '06:00'), span('25:00', '26:00'), span('06:00', '06:00'), span('00:00', '24:00')]) {
    for (const to of [-100, 0, 359, 720, 1440, 2000]) {
      assert.equal(objection(moved(window, 'whole', to)), undefined);
    }
  }
});

test('times snap to a grid', () => {
  assert.equal(snapped(367, 15), 360);
  assert.equal(snapped(368, 15), 375);
});

test('a window in four numbers is objected to by the same rule', () => {
  assert.deepEqual(spanOfNumbers([8, 30, 10, 5]), { from: 510, to: 605 });
  assert.equal(objection(spanOfNumbers([8, 0, 24, 0])), undefined);
  assert.equal(objection(spanOfNumbers([8, 0, 24, 1]))?.code, 506);
  assert.equal(objection(spanOfNumbers([22, 0, 6, 0]))?.code, 507);
  assert.equal(objection(spanOfNumbers([8, 30, 8, 30]))?.code, 507);
});
