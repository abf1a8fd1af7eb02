import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  isEverything,
  isFailure,
  kEverything,
  type LogFilter,
  lineText,
  matcher,
  nameOf,
  visibleRows,
} from '../src/log/filter';
import type { LogLine } from '../src/log/ring';

const kSet: LogLine = {
  number: 1,
  time: '2026-11-21T12:00:05',
  kind: 'driver',
  channel: 1,
  command: 2369,
  option: 'set',
  result: -5,
  text: 'set 2369 80 = -5 wide dynamic range strength',
};
const kNotified: LogLine = {
  ...kSet,
  number: 2,
  kind: 'video',
  channel: 2,
  command: 2384,
  option: '',
  result: 0,
  text: 'notify 2384 = 0 mirror',
};
const kMessage: LogLine = {
  ...kSet,
  number: 3,
  kind: 'message',
  channel: 0,
  command: 0,
  option: '',
  result: 0,
  text: 'Scheme 1 stored',
};
const kAll = [kSet, kNotified, kMessage];
const shown = (change: Partial<LogFilter>): number[] =>
  kAll.filter(matcher({ ...kEverything, ...change })).map((line) => line.number);

test('without a filter everything is shown', () => {
  assert.deepEqual(shown({}), [1, 2, 3]);
  assert.ok(isEverything(kEverything));
  assert.ok(isEverything({ ...kEverything, text: '  ' }));
});

test('each part of the filter takes away', () => {
  for (const [change, expected] of [
    [{ driver: false }, [2, 3]],
    [{ video: false }, [1, 3]],
    [{ message: false }, [1, 2]],
    [{ failedOnly: true }, [1]],
    [{ channel: 1 }, [1, 3]],
    [{ channel: 2 }, [2, 3]],
    [{ text: 'MIRROR' }, [2]],
    [{ text: 'notify mirror' }, [2]],
    [{ text: 'mirror range' }, []],
    [{ text: '2369' }, [1]],
    [{ text: '-mirror' }, [1, 3]],
    [{ text: '-5' }, [1]],
    [{ text: 'stored' }, [3]],
    [{ text: '12:00:05' }, [1, 2, 3]],
    [{ text: ' - ' }, [1, 2, 3]],
    [{ text: '"set 2369"' }, [1]],
    [{ text: '"80 2369"' }, []],
    [{ text: '"scheme 1 sto' }, [3]],
    [{ text: '-"scheme 1" -mirror' }, [1]],
    [{ text: 'notify "= 0"' }, [2]],
    [{ text: '"-5"' }, [1]],
    [{ text: '"" -"" "' }, [1, 2, 3]],
  ] as const) {
    assert.deepEqual(shown(change), expected, JSON.stringify(change));
    assert.equal(isEverything({ ...kEverything, ...change }), false, JSON.stringify(change));
  }
});

test('what a number is called can be searched, too', () => {
  const names = new Map([
    [2384, 'Picture: Mirror'],
    [2369, 'Exposure: Strength'],
  ]);
  assert.deepEqual(
    kAll.map((line) => nameOf(line, names)),
    ['Exposure: Strength', 'Picture: Mirror', ''],
  );
  assert.deepEqual(kAll.filter(matcher({ ...kEverything, text: 'exposure' }, names)), [kSet]);
  assert.deepEqual(kAll.filter(matcher({ ...kEverything, text: 'exposure' })), []);
});

test('a failure is a call that did not return 0', () => {
  assert.deepEqual(kAll.map(isFailure), [true, false, false]);
  assert.equal(isFailure({ ...kMessage, result: -1 }), false);
});

test('a line is copied with its time, kind and channel', () => {
  assert.equal(lineText(kSet), '12:00:05  driver  ch1  set 2369 80 = -5 wide dynamic range strength');
  assert.equal(lineText(kMessage), '12:00:05  message  Scheme 1 stored');
});

test('only rows that can be seen are drawn', () => {
  assert.deepEqual(visibleRows(0, 20, 0, 400), { from: 0, to: 0 });
  assert.deepEqual(visibleRows(5, 20, 0, 400), { from: 0, to: 5 });
  assert.deepEqual(visibleRows(2000, 20, 0, 400, 5), { from: 0, to: 31 });
  assert.deepEqual(visibleRows(2000, 20, 2000, 400, 5), { from: 95, to: 126 });
  assert.deepEqual(visibleRows(2000, 20, 40000 - 400, 400, 5), { from: 1969, to: 2000 });
  // After the filter has taken rows away, the place may be beyond the end for a moment.
  assert.deepEqual(visibleRows(50, 20, 40000, 400, 5), { from: 19, to: 50 });
  assert.deepEqual(visibleRows(2000, 0, 0, 400), { from: 0, to: 0 });
});
