// Waiting for what is about to happen, with a deadline.
import assert from 'node:assert/strict';
import { setTimeout as pause } from 'node:timers/promises';

const kTime = 15_000; // milliseconds; a machine may be busy with other things
const kBetween = 25;

// Asks until the answer is true, and gives that answer.
export async function until(ask, what, time = kTime) {
  const end = Date.now() + time;
  for (;;) {
    const answer = await ask();
    if (answer) {
      return answer;
    }
    if (Date.now() > end) {
      assert.fail(`Within ${time / 1000} s it did not come that ${'function' === typeof what ? what() : what}`);
    }
    await pause(kBetween);
  }
}
