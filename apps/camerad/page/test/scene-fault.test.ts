import assert from 'node:assert/strict';
import { test } from 'node:test';
import { type FaultForm, faultText, faultWords, formObjection, kEmptyFault } from '../src/scene/faultText';

const form = (change: Partial<FaultForm>): FaultForm => ({ ...kEmptyFault, number: '2369', ...change });

test('a form becomes the line that the camera takes', () => {
  for (const [change, text] of [
    [{}, 'cmd=2369 opt=set result=-5 times=1'],
    [{ option: '', times: '' }, 'cmd=2369 result=-5'],
    [{ number: 'any', option: 'get', nth: '3' }, 'cmd=any opt=get nth=3 result=-5 times=1'],
    [{ channel: '1' }, 'cmd=2369 ch=0 opt=set result=-5 times=1'],
    [{ target: 'key', number: '0x900', channel: '1', times: '' }, 'key=0x900 ch=1 result=-5'],
    [{ effect: 'silent' }, 'cmd=2369 opt=set silent=1 times=1'],
    [{ effect: 'delay', delay: '500' }, 'cmd=2369 opt=set delay=500000 times=1'],
  ] as const) {
    assert.equal(faultText(form(change)), text);
  }
});

test('an incomplete form says what is missing', () => {
  assert.equal(formObjection(form({})), '');
  assert.match(formObjection(kEmptyFault), /Which command/);
  assert.match(formObjection(form({ target: 'key', number: 'brightness' })), /Which key/);
  assert.match(formObjection(form({ result: '0' })), /other than 0/);
  assert.match(formObjection(form({ result: '' })), /other than 0/);
  assert.equal(formObjection(form({ effect: 'silent', result: '0' })), '');
  assert.match(formObjection(form({ effect: 'delay', delay: '0' })), /milliseconds/);
  assert.match(formObjection(form({ channel: 'x' })), /channel/);
  assert.match(formObjection(form({ channel: '0' })), /from 1/);
  assert.match(formObjection(form({ times: '0' })), /How many/);
  assert.match(formObjection(form({ nth: '-1' })), /From which/);
});

test('a fault is told in words', () => {
  const name = (number: number): string => (2369 === number ? 'Strength' : '');
  for (const [text, words] of [
    [
      'cmd=2369 ch=any opt=set nth=1 result=-5 times=1 delay=0 silent=0',
      'Driver command 2369 (Strength), set: returns -5, once',
    ],
    ['cmd=any opt=any result=-4', 'Any driver command: returns -4, always'],
    [
      'cmd=34 ch=0 silent=1 times=3 nth=2',
      'Driver command 34, channel 1: does nothing and says that it did, from call 2 on, 3 times',
    ],
    ['key=2384 ch=1 result=5', 'Notification 2384, channel 1: returns 5, always'],
    ['cmd=34 delay=500000', 'Driver command 34: waits 500 ms, always'],
    ['cmd=34 delay=20', 'Driver command 34: waits 20 µs, always'],
  ] as const) {
    assert.equal(faultWords(text, name), words);
  }
});
