import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  fingersOf,
  keyView,
  kMostScale,
  kWhole,
  panBy,
  pinch,
  scaleText,
  type View,
  wheelFactor,
  zoomAt,
} from '../src/picture/view';

// The place of the picture, 0 to 1, that is seen at a place of the frame.
const seenAt = (view: View, x: number, y: number): [number, number] => [
  (x - view.x) / view.scale,
  (y - view.y) / view.scale,
];
const near = (a: number, b: number): void => assert.ok(Math.abs(a - b) < 1e-9, `${a} is not ${b}`);
const covers = (view: View): boolean =>
  view.x <= 0 && view.y <= 0 && view.x + view.scale >= 1 && view.y + view.scale >= 1;

test('what is under the pointer stays there', () => {
  const view = zoomAt(kWhole, 3, 0.25, 0.75);
  assert.deepEqual([view.scale], [3]);
  const [x, y] = seenAt(view, 0.25, 0.75);
  near(x, 0.25);
  near(y, 0.75);
  const closer = zoomAt(view, 1.5, 0.9, 0.1);
  const before = seenAt(view, 0.9, 0.1);
  const after = seenAt(closer, 0.9, 0.1);
  near(before[0], after[0]);
  near(before[1], after[1]);
});

test('the picture always covers its frame', () => {
  let view = kWhole;
  for (let i = 0; i < 200; i += 1) {
    view = zoomAt(panBy(view, Math.sin(i), Math.cos(2 * i)), i % 3 === 0 ? 0.6 : 1.4, (i % 7) / 6, (i % 5) / 4);
    assert.ok(covers(view), JSON.stringify(view));
  }
  assert.deepEqual(zoomAt(zoomAt(kWhole, 4, 1, 1), 0.01, 0, 0), kWhole);
});

test('the magnification has ends, and nonsense changes nothing', () => {
  assert.equal(zoomAt(kWhole, 1e6, 0.5, 0.5).scale, kMostScale);
  assert.equal(zoomAt(kWhole, 0.1, 0.5, 0.5).scale, 1);
  for (const factor of [0, -1, NaN, Infinity]) {
    assert.deepEqual(zoomAt(kWhole, factor, 0.5, 0.5), kWhole);
  }
});

test('two fingers that part magnify, and carry the picture along', () => {
  const view = pinch(zoomAt(kWhole, 4, 0.5, 0.5), fingersOf(0.4, 0.5, 0.6, 0.5), fingersOf(0.4, 0.6, 0.8, 0.6));
  near(view.scale, 8);
  // The middle of the picture was between the fingers, and still is.
  const [x, y] = seenAt(view, 0.6, 0.6);
  near(x, 0.5);
  near(y, 0.5);
  // Fingers on the same spot have no distance that could grow.
  assert.equal(pinch(kWhole, fingersOf(0.5, 0.5, 0.5, 0.5), fingersOf(0.4, 0.5, 0.6, 0.5)).scale, 1);
});

test('a wheel away from the hand magnifies, and a wild one does not jump', () => {
  assert.ok(wheelFactor(-100) > 1);
  assert.ok(wheelFactor(100) < 1);
  near(wheelFactor(-100) * wheelFactor(100), 1);
  assert.equal(wheelFactor(-100000), 2);
});

test('keys zoom, go back to the whole, and move what is magnified', () => {
  assert.equal(keyView(kWhole, '+')?.scale, 1.5);
  assert.deepEqual(keyView({ scale: 1.5, x: -0.25, y: -0.25 }, '-'), kWhole);
  assert.deepEqual(keyView({ scale: 5, x: -1, y: -1 }, '0'), kWhole);
  near(keyView({ scale: 2, x: -0.5, y: -0.5 }, 'ArrowRight')?.x ?? 0, -0.6);
  near(keyView({ scale: 2, x: -0.5, y: -0.5 }, 'ArrowUp')?.y ?? 0, -0.4);
  // The page keeps its arrow keys as long as there is nothing to move.
  assert.equal(keyView(kWhole, 'ArrowRight'), undefined);
  assert.equal(keyView(kWhole, 'a'), undefined);
});

test('a magnification is said shortly', () => {
  assert.equal(scaleText(1), '1×');
  assert.equal(scaleText(2.25), '2.3×');
  assert.equal(scaleText(11.39), '11×');
});
