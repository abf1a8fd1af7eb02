import assert from 'node:assert/strict';
import { test } from 'node:test';

import { hashOf, placeOf } from '../src/place';

for (const [hash, view, tab] of [
  ['#settings/exposure', 'settings', 'exposure'],
  ['#settings', 'settings', ''],
  ['#schemes', 'schemes', ''],
  ['#log/exposure', 'log', ''],
  ['#nonsense/exposure', 'settings', ''],
  ['', 'settings', ''],
  ['#settings/a%20b%2Fc', 'settings', 'a b/c'],
  ['#settings/%', 'settings', ''],
] as const) {
  test(`"${hash}" leads to ${view} ${tab}`, () => {
    assert.deepEqual(placeOf(hash), { view, tab });
  });
}

test('an address leads back to its place', () => {
  for (const tab of ['', 'exposure', 'a b/c', '%']) {
    const place = { view: 'settings' as const, tab };
    assert.deepEqual(placeOf(hashOf(place)), place);
  }
});
