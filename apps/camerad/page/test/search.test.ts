import assert from 'node:assert/strict';
import { test } from 'node:test';

import { search } from '../src/logic/search';
import { styleOf } from '../src/logic/style';
import type { StyleItem } from '../src/types';

const item = (key: number, name: string, label: string, more: Partial<StyleItem> = {}): StyleItem => ({
  key,
  name,
  label,
  type: 'slider',
  recorded: true,
  ...more,
});

const style = styleOf({
  channel: 1,
  revision: 1,
  tabs: [
    {
      key: 'image',
      label: 'Picture',
      groups: [
        {
          label: '',
          parameters: [
            item(34, 'KEY_BRIGHTNESS', 'Brightness'),
            item(2340, 'KEY_OTHER', 'Gain in the dark'),
            item(2384, 'KEY_MIRROR', 'Mirror', { type: 'choice', choices: [{ value: 1, label: 'Left and right' }] }),
          ],
        },
      ],
    },
    {
      key: 'exposure',
      label: 'Exposure',
      groups: [{ label: 'Gain', parameters: [item(65, 'KEY_MAX_GAIN', 'Largest'), item(66, 'KEY_FIX_GAIN', 'Gain')] }],
    },
  ],
});

const keys = (query: string) => search(style, query).map((hit) => hit.item.key);

for (const [query, expected] of [
  ['bright', [34]],
  ['BRIGHTNESS', [34]],
  ['34', [34]],
  ['234', [2340]],
  ['key_max_gain', [65]],
  ['max gain', [65]],
  ['left', [2384]],
  ['mirror right', [2384]],
  ['gain', [66, 2340, 65]],
  ['exposure', [65, 66]],
  ['brightness nonsense', []],
  ['', []],
  ['   ', []],
  ['(', []],
  ['\\', []],
] as [string, number[]][]) {
  test(`"${query}" finds ${expected.join(', ') || 'nothing'}`, () => {
    assert.deepEqual(keys(query), expected);
  });
}

test('a hit says what matched when it is not the label', () => {
  assert.equal(search(style, 'left')[0]?.because, 'choice Left and right');
  assert.equal(search(style, 'bright')[0]?.because, '');
});

test('there are no more hits than asked for', () => {
  assert.equal(search(style, 'key', 2).length, 2);
});
