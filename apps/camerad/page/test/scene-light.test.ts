import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  fromStep,
  kDistanceScale,
  kLightMarks,
  kLightScale,
  kSteps,
  lightWord,
  plainNumber,
  toStep,
} from '../src/scene/light';

test('the slider goes from starlight to noon, evenly for each power of ten', () => {
  assert.equal(fromStep(kLightScale, 0), 0.001);
  assert.equal(fromStep(kLightScale, kSteps), 100000);
  assert.equal(fromStep(kLightScale, 500), 10);
  assert.equal(toStep(kLightScale, 10), 500);
  assert.equal(toStep(kLightScale, 0.1), 250);
});

test('light beyond the ends of the slider stands at the end', () => {
  assert.equal(toStep(kLightScale, 0), 0);
  assert.equal(toStep(kLightScale, -1), 0);
  assert.equal(toStep(kLightScale, NaN), 0);
  assert.equal(toStep(kLightScale, 200000), kSteps);
  assert.equal(fromStep(kLightScale, -5), 0.001);
  assert.equal(fromStep(kLightScale, 5000), 100000);
});

test('what the slider says is where it stands', () => {
  for (const scale of [kLightScale, kDistanceScale]) {
    for (let step = 0; step <= kSteps; step += 7) {
      assert.ok(Math.abs(toStep(scale, fromStep(scale, step)) - step) <= 6, `${step}`);
    }
  }
});

test('a light has a name', () => {
  for (const [lux, word] of [
    [0, 'Darkness'],
    [0.001, 'Starlight'],
    [0.1, 'Full moon'],
    [10, 'Street lamp'],
    [300, 'Office'],
    [2000, 'Overcast'],
    [30000, 'Sunshine'],
    [100000, 'Noon sun'],
    [200000, 'Noon sun'],
  ] as const) {
    assert.equal(lightWord(lux), word, `${lux} lux`);
  }
});

test('the marks of the slider keep their promise', () => {
  for (const mark of kLightMarks) {
    assert.ok(lightWord(mark.lux).startsWith(mark.label), mark.label);
  }
});

test('numbers are said as shortly as they can be', () => {
  for (const [value, text] of [
    [0.001, '0.001'],
    [0.0123456, '0.0123'],
    [12.34, '12.3'],
    [1000, '1000'],
    [20000, '20\u202f000'],
    [100000, '100\u202f000'],
    [0, '0'],
    [5, '5'],
  ] as const) {
    assert.equal(plainNumber(value), text);
  }
});
