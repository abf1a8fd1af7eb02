import assert from 'node:assert/strict';
import { test } from 'node:test';

import {
  blockedBy,
  holds,
  isShown,
  labelOf,
  offersSideBySide,
  parseConditions,
  rangeOf,
  shownWhen,
  styleOf,
  valueText,
} from '../src/logic/style';
import type { Metadata, StyleItem } from '../src/types';

const item = (key: number, more: Partial<StyleItem> = {}): StyleItem => ({
  key,
  name: '',
  label: `P${key}`,
  type: 'slider',
  recorded: true,
  ...more,
});

const kOnOff = [
  { value: 0, label: 'Off' },
  { value: 1, label: 'On' },
];

const kMetadata: Metadata = {
  channel: 1,
  revision: 1,
  tabs: [
    {
      key: 'light',
      label: 'Light',
      groups: [
        {
          label: '',
          parameters: [
            item(112, { label: 'Highlight compensation', type: 'choice', choices: kOnOff, words: { enable_list: '128', enable_when: '0' } }),
            item(128, { label: 'Backlight', type: 'choice', choices: kOnOff, words: { enable_list: '112', enable_when: '0' } }),
            item(66, { label: 'Gain', words: { show_if: '16=3' } }),
            item(16, { label: 'Exposure', type: 'choice', choices: [{ value: 0, label: 'Automatic' }, { value: 3, label: 'Manual' }] }),
            item(2385, { type: 'switch', words: { absent_if: '11' } }),
            item(11, { type: 'notice', recorded: false, words: { text: 'Not now.' } }),
            item(2433, { label: 'Shift', min: -100, max: 100, minKey: 2434, maxKey: 2435 }),
          ],
        },
        { label: 'Sensor 1', showIf: '9004=1 9005=0|1', parameters: [item(9101, { words: { show_if: '16=0' } })] },
      ],
    },
  ],
};

const style = styleOf(kMetadata);
const known = (values: Record<number, number>) => (key: number) => values[key];
const place = (key: number) => {
  const found = style.places.get(key);
  assert.ok(found);
  return found;
};

for (const [text, values, expected] of [
  ['', {}, true],
  ['16=3', { 16: 3 }, true],
  ['16=3', { 16: 0 }, false],
  ['16=3', {}, false],
  ['16=0|3', { 16: 3 }, true],
  ['16=0|3', { 16: 2 }, false],
  ['160=1 161=2', { 160: 1, 161: 2 }, true],
  ['160=1 161=2', { 160: 1, 161: 1 }, false],
  ['  160=1   161=2 ', { 160: 1, 161: 2 }, true],
  ['16=-1', { 16: -1 }, true],
  ['nonsense 16=3', { 16: 3 }, true],
  ['16=', { 16: 1 }, true],
  ['16=3|', { 16: 1 }, true],
] as [string, Record<number, number>, boolean][]) {
  test(`"${text}" with ${JSON.stringify(values)} ${expected ? 'holds' : 'does not hold'}`, () => {
    assert.equal(holds(parseConditions(text), known(values)), expected);
  });
}

test('a group hides what stands in it, and the parameter may hide itself besides', () => {
  assert.equal(isShown(style, place(9101), known({ 9004: 1, 9005: 1, 16: 0 })), true);
  assert.equal(isShown(style, place(9101), known({ 9004: 1, 9005: 2, 16: 0 })), false);
  assert.equal(isShown(style, place(9101), known({ 9004: 1, 9005: 1, 16: 3 })), false);
});

test('a parameter is absent while the document holds its notice', () => {
  assert.equal(isShown(style, place(2385), known({})), false);
  const metadata = structuredClone(kMetadata);
  const group = metadata.tabs[0]?.groups[0];
  assert.ok(group);
  group.parameters = group.parameters.filter((entry) => 11 !== entry.key);
  assert.equal(isShown(styleOf(metadata), place(2385), known({})), true);
});

test('a parameter that another one switches off says which and how it stands', () => {
  assert.equal(blockedBy(style, place(128).item, known({ 112: 1, 128: 0 })), 'Off because Highlight compensation is on');
  assert.equal(blockedBy(style, place(128).item, known({ 112: 0, 128: 1 })), '');
  assert.equal(blockedBy(style, place(128).item, known({})), '');
});

test('two that exclude each other and are both on can both be switched off', () => {
  assert.equal(blockedBy(style, place(112).item, known({ 112: 1, 128: 1 })), '');
  assert.equal(blockedBy(style, place(128).item, known({ 112: 1, 128: 1 })), '');
});

test('limits that the camera gives only tighten those of the document', () => {
  const shift = place(2433).item;
  assert.deepEqual(rangeOf(shift, known({})), { min: -100, max: 100, step: 1 });
  assert.deepEqual(rangeOf(shift, known({ 2434: -20, 2435: 300 })), { min: -20, max: 100, step: 1 });
  assert.deepEqual(rangeOf(item(1, { step: 0 }), known({})), { min: undefined, max: undefined, step: 1 });
});

test('keys that no scheme holds and on which controls depend are asked for', () => {
  assert.deepEqual(style.askedKeys.sort(), [2434, 2435, 9004, 9005]);
});

test('a hidden parameter says when it is shown', () => {
  assert.equal(shownWhen(style, place(66)), 'Exposure is Manual');
  assert.equal(shownWhen(style, place(9101)), 'parameter 9004 is 1 and parameter 9005 is 0 or 1 and Exposure is Automatic');
  assert.equal(shownWhen(style, place(16)), '');
});

test('values are read as a person would say them', () => {
  assert.equal(valueText(item(1, { type: 'switch' }), 1), 'On');
  assert.equal(valueText(item(1, { unit: 'h' }), -5), '\u22125 h');
  assert.equal(valueText(place(16).item, 3), 'Manual');
  assert.equal(valueText(place(16).item, 100), '100 (as the camera decides)');
  assert.equal(valueText(place(16).item, 7), '7 (none of the choices)');
  assert.equal(labelOf(style, 9101), 'Sensor 1: P9101');
  assert.equal(labelOf(style, 4711), 'Parameter 4711');
});

test('few short choices stand side by side', () => {
  assert.equal(offersSideBySide(item(1, { choices: kOnOff })), true);
  assert.equal(offersSideBySide(item(1)), false);
  assert.equal(offersSideBySide(item(1, { choices: [...kOnOff, ...kOnOff, ...kOnOff] })), false);
  assert.equal(offersSideBySide(item(1, { choices: [{ value: 0, label: 'As the fastest stream has it' }] })), false);
});
