import assert from 'node:assert/strict';
import { test } from 'node:test';

import { EventParser } from '../src/logic/sse';

const kStream = ': hello\nid: 7\nevent: scheme\ndata: {"a":1}\n\ndata: one\ndata: two\n\nevent: empty\n\n';
const kEvents = [
  { id: '7', type: 'scheme', data: '{"a":1}' },
  { id: '7', type: 'message', data: 'one\ntwo' },
];

test('events come out whole wherever the stream is cut', () => {
  for (const stream of [kStream, kStream.replaceAll('\n', '\r\n'), kStream.replaceAll('\n', '\r')]) {
    for (let cut = 0; cut <= stream.length; ++cut) {
      const parser = new EventParser();
      const events = [...parser.push(stream.slice(0, cut)), ...parser.push(stream.slice(cut)), ...parser.push(':')];
      assert.deepEqual(events, kEvents, `cut at ${cut}`);
    }
  }
});

test('an event that is not complete is not handed out', () => {
  const parser = new EventParser();
  assert.deepEqual(parser.push('data: {"a":1}\n'), []);
  assert.equal(parser.push('\n').length, 1);
});

test('a line without end is refused instead of gathered for ever', () => {
  const parser = new EventParser();
  const piece = 'x'.repeat(1024 * 1024);
  assert.throws(() => {
    for (let count = 0; count < 8; ++count) {
      parser.push(piece);
    }
  }, /too long/);
});
