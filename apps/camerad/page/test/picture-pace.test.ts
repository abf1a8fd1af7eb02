import assert from 'node:assert/strict';
import { test } from 'node:test';
import { FrameRate, waitBeforeTry } from '../src/picture/pace';

test('frames at an even pace give their rate', () => {
  const rate = new FrameRate();
  for (let now = 0; now <= 3000; now += 40) {
    rate.add(now);
  }
  assert.ok(Math.abs(rate.at(3000) - 25) < 0.01, String(rate.at(3000)));
});

test('a stream that stalls slows down and comes to 0', () => {
  const rate = new FrameRate();
  for (let now = 0; now <= 2000; now += 100) {
    rate.add(now);
  }
  assert.ok(Math.abs(rate.at(2000) - 10) < 0.01);
  assert.ok(rate.at(3000) < 7, String(rate.at(3000)));
  assert.equal(rate.at(4001), 0);
});

test('nothing and one frame are no rate to speak of', () => {
  const rate = new FrameRate();
  assert.equal(rate.at(0), 0);
  rate.add(10);
  assert.equal(rate.at(10), 0.5);
  rate.clear();
  assert.equal(rate.at(10), 0);
});

test('waiting doubles up to eight seconds', () => {
  assert.deepEqual(
    [1, 2, 3, 4, 5, 6, 100].map((failures) => waitBeforeTry(failures)),
    [500, 1000, 2000, 4000, 8000, 8000, 8000],
  );
});

test('the camera may ask for a longer wait, but not for ever', () => {
  assert.equal(waitBeforeTry(1, 5), 5000);
  assert.equal(waitBeforeTry(5, 1), 8000);
  assert.equal(waitBeforeTry(1, 100000), 60000);
});
