import assert from 'node:assert/strict';
import { test } from 'node:test';

import { valuesOf, withChanges, withScheme, withValue } from '../src/logic/merge';

const kValues = valuesOf({
  channel: 1,
  scheme: 0,
  revision: 17,
  parameters: [{ key: 34, name: 'KEY_BRIGHTNESS', value: 50, default: 50, stored: 50, unsaved: false }],
});

const kEvent = {
  channel: 1,
  scheme: 0,
  revision: 18,
  changes: [{ key: 34, value: 60, stored: 50, unsaved: true }],
  by: 'admin',
  origin: '',
};

test('an event changes what it names and nothing else', () => {
  const values = withChanges(kValues, kEvent);
  assert.deepEqual(values.byKey.get(34), {
    key: 34,
    name: 'KEY_BRIGHTNESS',
    value: 60,
    default: 50,
    stored: 50,
    unsaved: true,
  });
  assert.equal(values.revision, 18);
  assert.equal(kValues.byKey.get(34)?.value, 50);
});

for (const [what, event] of [
  ['that is contained already', { ...kEvent, revision: 17 }],
  ['of another channel', { ...kEvent, channel: 2 }],
  ['of another scheme', { ...kEvent, scheme: 1 }],
] as const) {
  test(`an event ${what} changes nothing`, () => {
    assert.equal(withChanges(kValues, event), kValues);
  });
}

test('an event without "stored" keeps what was stored', () => {
  const values = withChanges(kValues, { ...kEvent, changes: [{ key: 34, value: 60, unsaved: true }] });
  assert.equal(values.byKey.get(34)?.stored, 50);
});

test('an event may bring a parameter that was not known', () => {
  const values = withChanges(kValues, { ...kEvent, changes: [{ key: 65, value: 3, unsaved: false }] });
  assert.equal(values.byKey.get(65)?.value, 3);
});

test('after a change of scheme the events of the new one count', () => {
  const values = withScheme(kValues, { channel: 1, from: 0, to: 1, why: 'host', by: 'admin' });
  assert.equal(withChanges(values, kEvent), values);
  assert.equal(withChanges(values, { ...kEvent, scheme: 1 }).byKey.get(34)?.value, 60);
  assert.equal(withScheme(kValues, { channel: 2, from: 0, to: 1, why: 'host', by: 'admin' }), kValues);
});

test('a single value is put in, and keeps what it does not say', () => {
  const values = withValue(kValues, { key: 34, name: 'KEY_BRIGHTNESS', value: 70, unsaved: true });
  assert.equal(values.byKey.get(34)?.value, 70);
  assert.equal(values.byKey.get(34)?.default, 50);
});
