import assert from 'node:assert/strict';
import { test } from 'node:test';

import { limitsText, parseNumber } from '../src/logic/numbers';

for (const [text, limits, expected] of [
  ['50', {}, 50],
  [' 50 ', { min: 0, max: 100 }, 50],
  ['-5', { min: -10, max: 10 }, -5],
  ['\u22125', { min: -10, max: 10 }, -5],
  ['+7', {}, 7],
  ['-0', {}, 0],
  ['10', { min: 0, max: 100, step: 5 }, 10],
  ['101', { min: 0, max: 100 }, undefined],
  ['-1', { min: 0, max: 100 }, undefined],
  ['12', { min: 0, max: 100, step: 5 }, undefined],
  ['', {}, undefined],
  ['5.5', {}, undefined],
  ['0x10', {}, undefined],
  ['1e3', {}, undefined],
  ['99999999999999999999', {}, undefined],
] as [string, object, number | undefined][]) {
  test(`"${text}" with ${JSON.stringify(limits)} is ${expected ?? 'refused'}`, () => {
    const result = parseNumber(text, limits);
    assert.equal('value' in result ? result.value : undefined, expected);
    assert.equal('objection' in result, undefined === expected);
  });
}

test('a refusal says what is taken', () => {
  const result = parseNumber('101', { min: 0, max: 100, step: 5 });
  assert.equal('objection' in result ? result.objection : '', 'It takes 0 to 100 in steps of 5.');
  assert.equal(limitsText({ min: 1 }), '1 or more');
  assert.equal(limitsText({ max: -1 }), '\u22121 or less');
});
