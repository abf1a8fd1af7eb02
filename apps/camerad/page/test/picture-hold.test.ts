import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Hold } from '../src/picture/hold';

// A step that says when it was begun, and is answered by hand.
function steps() {
  let begun: () => void = () => undefined;
  let answer: (more: boolean) => void = () => undefined;
  let count = 0;
  let next = new Promise<void>((resolve) => {
    begun = resolve;
  });
  return {
    step: (): Promise<boolean> => {
      count += 1;
      const mine = begun;
      next = new Promise<void>((resolve) => {
        begun = resolve;
      });
      return new Promise<boolean>((resolve) => {
        answer = resolve;
        mine();
      });
    },
    count: () => count,
    next: () => next,
    answer: (more: boolean) => answer(more),
  };
}
const settled = async (): Promise<void> => {
  for (let i = 0; i < 10; i += 1) {
    await Promise.resolve();
  }
};

test('a tap is one step', async () => {
  const one = steps();
  const hold = new Hold(one.step, 0, 0);
  hold.begin();
  hold.end();
  one.answer(true);
  await settled();
  assert.equal(one.count(), 1);
});

test('held, steps follow each other, never two at once', async () => {
  const one = steps();
  const hold = new Hold(one.step, 0, 0);
  hold.begin();
  hold.begin();
  await settled();
  assert.equal(one.count(), 1);
  for (let i = 2; i <= 5; i += 1) {
    const next = one.next();
    one.answer(true);
    await next;
    assert.equal(one.count(), i);
  }
  hold.end();
  one.answer(true);
  await settled();
  assert.equal(one.count(), 5);
});

test('a refusal ends it, and a new press begins anew', async () => {
  const one = steps();
  const hold = new Hold(one.step, 0, 0);
  hold.begin();
  one.answer(false);
  await settled();
  assert.equal(one.count(), 1);
  hold.begin();
  assert.equal(one.count(), 2);
  hold.end();
  one.answer(true);
  await settled();
  assert.equal(one.count(), 2);
});
