import assert from 'node:assert/strict';
import { test } from 'node:test';
import { describe, difference, heights, histogramOf } from '../src/picture/histogram';

const grey = (...levels: number[]): number[] => levels.flatMap((level) => [level, level, level, 255]);

test('grey has the same level in luminance and in each colour', () => {
  const histogram = histogramOf(grey(0, 255, 100, 100));
  assert.equal(histogram.pixels, 4);
  for (const counts of [histogram.luminance, histogram.red, histogram.green, histogram.blue]) {
    assert.equal(counts[0], 1);
    assert.equal(counts[100], 2);
    assert.equal(counts[255], 1);
  }
  assert.equal(histogram.mean.luminance, 113.75);
  assert.equal(histogram.black, 0.25);
  assert.equal(histogram.white, 0.25);
});

test('green is brighter than red, and red than blue', () => {
  const level = (r: number, g: number, b: number): number => histogramOf([r, g, b, 255]).mean.luminance;
  assert.equal(level(255, 0, 0), 76);
  assert.equal(level(0, 255, 0), 150);
  assert.equal(level(0, 0, 255), 29);
});

test('colours are counted apart', () => {
  const histogram = histogramOf([10, 20, 30, 255]);
  assert.deepEqual([histogram.mean.red, histogram.mean.green, histogram.mean.blue], [10, 20, 30]);
});

test('no picture has no levels', () => {
  const histogram = histogramOf([]);
  assert.equal(histogram.mean.luminance, 0);
  assert.equal(histogram.black, 0);
  assert.ok(heights(histogram.luminance).every((height) => 0 === height));
});

test('the highest column fills the height, rare levels stay visible', () => {
  const columns = heights(histogramOf(grey(...new Array<number>(100).fill(50), 200)).luminance);
  assert.equal(columns[50], 1);
  assert.equal(columns[200], 0.1);
  assert.equal(columns[0], 0);
});

test('the words tell the mean level and what is lost', () => {
  assert.equal(describe(histogramOf(grey(0, 255, 100, 100))), 'Mean level 114 of 255; 25 % black, 25 % white');
  assert.equal(difference(96.2, 111.8), 'brighter by 16');
  assert.equal(difference(100, 90), 'darker by 10');
  assert.equal(difference(99.6, 100.4), 'no difference');
});
