// "Let a day pass in a minute": begins it, and ends it when a day has passed on the camera's clock.
//
// The plan lies in the browser's storage, so that a reload goes on with it; whether it still runs is told by the camera's
// clock alone. Without a plan, for instance in another browser, a clock of that speed can be stopped, but does not end by
// itself.
import { effect, signal } from '@preact/signals';

import { api, explain } from '../api';
import { clock, isAdmin, notify, scene, takeClock, takeScene } from '../store';
import type { FixedLight } from '../types';
import { type DayPlan, dayState, kDaySpeed, planText, readPlan } from './day';
import { lightOf, rememberLight } from './edit';

const kPlace = 'camera-day-plan';

function stored(): DayPlan | undefined {
  try {
    return readPlan(localStorage.getItem(kPlace));
  } catch {
    return undefined; // no storage allowed: the plan lives as long as the page
  }
}

function store(plan: DayPlan | null): void {
  dayPlan.value = plan;
  try {
    if (null === plan) {
      localStorage.removeItem(kPlace);
    } else {
      localStorage.setItem(kPlace, planText(plan));
    }
  } catch {
    // As above.
  }
}

export const dayPlan = signal<DayPlan | null>(stored() ?? null);
export const isDayBusy = signal(false); // it is being begun or ended

export async function beginDay(): Promise<void> {
  const before = scene.value;
  if (null === before || isDayBusy.value) {
    return;
  }
  isDayBusy.value = true;
  try {
    rememberLight(before.light);
    takeScene(await api.changeScene({ light: lightOf('day') }));
    const now = await api.setClock({ simulated: true, speed: kDaySpeed });
    store({ from: now.time, lightBefore: before.light });
    takeClock(now);
  } catch (error) {
    notify(`The day could not begin. ${explain(error)}`, 'error');
    await putBack(before.light);
  }
  isDayBusy.value = false;
}

export async function endDay(note: string): Promise<void> {
  if (isDayBusy.value) {
    return;
  }
  isDayBusy.value = true;
  const plan = dayPlan.value;
  try {
    takeClock(await api.setClock({ simulated: false }));
    store(null);
    await putBack(plan?.lightBefore);
    notify(note);
  } catch (error) {
    notify(`The clock could not be put back. ${explain(error)}`, 'error');
    retryAt = Date.now() + 5_000;
  }
  isDayBusy.value = false;
}

let retryAt = 0;

function isFixed(light: unknown): light is FixedLight {
  return null !== light && 'object' === typeof light && 'fixed' === (light as Partial<FixedLight>).kind;
}

// A light that followed the day before follows it still, and one that was set meanwhile stays. The camera judges what
// came out of the storage like anything else.
async function putBack(light: unknown): Promise<void> {
  if (isFixed(light) && 'day' === scene.value?.light.kind) {
    try {
      takeScene(await api.changeScene({ light }));
    } catch (error) {
      notify(`The light could not be put back. ${explain(error)}`, 'error');
    }
  }
}

let isWatching = false;

// Called once when the page starts: looks at each tick of the camera's clock whether the day is over.
export function watchDay(): void {
  if (isWatching) {
    return;
  }
  isWatching = true;
  effect(() => {
    const plan = dayPlan.value;
    const now = clock.value;
    if (null === plan || null === now || isDayBusy.value || !isAdmin.value) {
      return;
    }
    const state = dayState(plan, now);
    if ('over' === state && Date.now() >= retryAt) {
      setTimeout(() => void endDay('A day has passed. The camera is back in real time.'));
    } else if ('gone' === state) {
      // Somebody else set the clock: what they want now is not known, so nothing is put back.
      setTimeout(() => store(null));
    }
  });
}
