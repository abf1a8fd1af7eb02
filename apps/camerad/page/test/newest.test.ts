import assert from 'node:assert/strict';
import { test } from 'node:test';

import { NewestWins } from '../src/logic/newest';

// Deliveries that the test ends one by one.
function line() {
  const sent: string[] = [];
  const rested: number[] = [];
  const open: (() => void)[] = [];
  const sender = new NewestWins<number>(
    (key, value) => {
      sent.push(`${key}=${value}`);
      return new Promise((resolve) => open.push(resolve));
    },
    (key) => rested.push(key),
  );
  const finish = async () => {
    open.shift()?.();
    await new Promise((resolve) => setImmediate(resolve));
  };
  return { sent, rested, sender, finish };
}

test('while a value is on its way, only the newest of those that follow is sent', async () => {
  const { sent, rested, sender, finish } = line();
  for (const value of [1, 2, 3, 4]) {
    sender.set(34, value);
  }
  assert.deepEqual(sent, ['34=1']);
  await finish();
  assert.deepEqual(sent, ['34=1', '34=4']);
  assert.deepEqual(rested, []);
  await finish();
  assert.deepEqual(sent, ['34=1', '34=4']);
  assert.deepEqual(rested, [34]);
});

test('keys do not wait for each other', async () => {
  const { sent, sender, finish } = line();
  sender.set(34, 1);
  sender.set(65, 9);
  assert.deepEqual(sent, ['34=1', '65=9']);
  assert.equal(sender.isBusy(34), true);
  await finish();
  assert.equal(sender.isBusy(34), false);
  assert.equal(sender.isBusy(65), true);
});

test('what waits can be dropped', async () => {
  const { sent, rested, sender, finish } = line();
  sender.set(34, 1);
  sender.set(34, 2);
  sender.drop(34);
  await finish();
  assert.deepEqual(sent, ['34=1']);
  assert.deepEqual(rested, [34]);
});

test('a value set after the rest is sent at once', async () => {
  const { sent, sender, finish } = line();
  sender.set(34, 1);
  await finish();
  sender.set(34, 1);
  assert.deepEqual(sent, ['34=1', '34=1']);
});
