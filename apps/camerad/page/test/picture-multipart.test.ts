import assert from 'node:assert/strict';
import { test } from 'node:test';
import { MultipartReader } from '../src/picture/multipart';

const bytes = (text: string): Uint8Array => Uint8Array.from(text, (character) => character.charCodeAt(0));
const text = (picture: Uint8Array): string => String.fromCharCode(...picture);
const part = (body: string): string =>
  `--frame\r\nContent-Type: image/jpeg\r\nContent-Length: ${body.length}\r\n\r\n${body}\r\n`;

test('pictures come out as they went in', () => {
  const reader = new MultipartReader();
  assert.deepEqual(reader.push(bytes(part('one') + part('second'))).map(text), ['one', 'second']);
});

test('it does not matter where the network cuts the stream', () => {
  const stream = bytes(part('first') + part('--frame\r\n\r\n') + part('') + part('last'));
  for (let size = 1; size <= stream.length; size += 1) {
    const reader = new MultipartReader();
    const pictures: string[] = [];
    for (let at = 0; at < stream.length; at += size) {
      pictures.push(...reader.push(stream.subarray(at, at + size)).map(text));
    }
    assert.deepEqual(pictures, ['first', '--frame\r\n\r\n', '', 'last'], `in pieces of ${size}`);
  }
});

test('a picture stays as it is when more comes', () => {
  const reader = new MultipartReader();
  const [first] = reader.push(bytes(part('first')));
  reader.push(bytes(part('other')));
  assert.equal(text(first as Uint8Array), 'first');
});

test('a stream that is none is refused', () => {
  for (const bad of [
    '--frame\r\nContent-Type: image/jpeg\r\n\r\n',
    '--frame\r\nContent-Length: -5\r\n\r\n',
    '--frame\r\nContent-Length: 12x\r\n\r\n',
    '--frame\r\nContent-Length: 99999999\r\n\r\n',
    '--frame\r\nContent-Length: 99999999999999999999\r\n\r\n',
    'HTTP/1.1 200\r\nContent-Length: 5\r\n\r\n',
    'x'.repeat(5000),
  ]) {
    assert.throws(() => new MultipartReader().push(bytes(bad)), Error, bad.slice(0, 60));
  }
});

test('a long picture in small pieces does not cost more the longer it is', () => {
  const body = 'x'.repeat(400_000);
  const stream = bytes(part(body));
  const reader = new MultipartReader();
  let found = 0;
  for (let at = 0; at < stream.length; at += 1000) {
    found += reader.push(stream.subarray(at, at + 1000)).length;
  }
  assert.equal(found, 1);
});
