// The window of the scheme in force, where it is set by its four numbers. What of them could not be stored stays with the
// person until the others fit, and is explained at the control; the camera gets a window only as a whole.
import { batch, effect, signal } from '@preact/signals';

import { objection, spanOfNumbers, type WindowNumbers } from '../logic/windows';
import { channel, holdParameter, releaseParameter, setParameter, setRefusal, setTogether, shownValue, values } from '../store';

const kWindowKeys = [8001, 8002, 8003, 8004]; // start: hour, minute; end: hour, minute

export const isWindowKey = (key: number): boolean => kWindowKeys.includes(key);

// The control at which a window that is kept back is explained, and the scheme that it is meant for.
const keptBack = signal<{ key: number; channel: number; scheme: number } | null>(null);

export const isKeptBackAt = (key: number): boolean => key === keptBack.value?.key;
export const isKeptBack = (key: number): boolean => isWindowKey(key) && null !== keptBack.value;

export function setWindowNumber(key: number, value: number): void {
  const numbers = kWindowKeys.map((each) => (each === key ? value : shownValue(each)));
  if (numbers.includes(undefined)) {
    setParameter(key, value); // a document that offers no whole window
    return;
  }
  const window = numbers as WindowNumbers;
  const reason = objection(spanOfNumbers(window))?.text;
  batch(() => {
    if (undefined === reason) {
      keptBack.value = null;
      kWindowKeys.forEach(releaseParameter);
      setTogether(window.map((number, place) => ({ key: kWindowKeys[place] as number, value: number })));
      return;
    }
    kWindowKeys.forEach((each, place) => {
      holdParameter(each, window[place]);
      setRefusal(each, each === key ? `Not sent until the window can be stored. ${reason}` : '');
    });
    keptBack.value = { key, channel: channel.value, scheme: values.value.scheme };
  });
}

// Goes back to the window that the camera has.
export function takeWindowBack(): void {
  const kept = keptBack.value;
  if (null === kept) {
    return;
  }
  batch(() => {
    keptBack.value = null;
    setRefusal(kept.key, '');
    kWindowKeys.forEach(releaseParameter);
  });
}

// It was meant for the scheme that was in force.
effect(() => {
  const kept = keptBack.value;
  if (null !== kept && (kept.channel !== channel.value || kept.scheme !== values.value.scheme)) {
    takeWindowBack();
  }
});
