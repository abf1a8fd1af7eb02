// The day curve of the scene, the camera's clock, and the plan "let a day pass in a minute".

import type { Clock, DayLight } from '../types';

export type Curve = Omit<DayLight, 'kind'>;

export const kMinutes = 1440;

// "06:30" to minutes of the day; undefined for anything else.
export function minutesOf(text: string): number | undefined {
  const parts = /^(\d{1,2}):(\d{2})(?::\d{2})?$/.exec(text);
  if (null === parts) {
    return undefined;
  }
  const hour = Number(parts[1]);
  const minute = Number(parts[2]);
  return hour > 23 || minute > 59 ? undefined : 60 * hour + minute;
}

export function timeText(minutes: number): string {
  const day = ((Math.round(minutes) % kMinutes) + kMinutes) % kMinutes;
  return `${String(Math.floor(day / 60)).padStart(2, '0')}:${String(day % 60).padStart(2, '0')}`;
}

// The light at a minute of the day, as the scene calculates it: in a twilight the logarithm changes evenly.
export function luxAt(curve: Curve, minute: number): number {
  const sunrise = minutesOf(curve.sunrise) ?? 0;
  const sunset = minutesOf(curve.sunset) ?? kMinutes;
  const dayPart = Math.min(
    riseAt(minute, sunrise, curve.twilightMinutes),
    1 - riseAt(minute, sunset, curve.twilightMinutes),
  );
  // A twilight may reach over midnight.
  const wrapped = Math.max(
    dayPart,
    riseAt(minute - kMinutes, sunrise, curve.twilightMinutes),
    1 - riseAt(minute + kMinutes, sunset, curve.twilightMinutes),
  );
  const night = Math.max(curve.nightLux, 1e-6);
  const day = Math.max(curve.dayLux, night);
  return night * Math.pow(day / night, Math.min(1, Math.max(0, wrapped)));
}

// 0 before a twilight, 1 after it.
function riseAt(minute: number, centre: number, half: number): number {
  if (half <= 0) {
    return minute >= centre ? 1 : 0;
  }
  return Math.min(1, Math.max(0, (minute - centre + half) / (2 * half)));
}

// What is wrong with a curve, for a person; empty when nothing is.
export function objection(curve: Curve): string {
  const sunrise = minutesOf(curve.sunrise);
  const sunset = minutesOf(curve.sunset);
  if (undefined === sunrise || undefined === sunset) {
    return 'Sunrise and sunset are times of the day, such as 06:00.';
  }
  if (sunrise >= sunset) {
    return 'The sun must rise before it sets.';
  }
  if (!(curve.twilightMinutes >= 1 && curve.twilightMinutes <= 180)) {
    return 'A twilight takes 1 to 180 minutes before and after.';
  }
  if (!(curve.nightLux >= 0 && curve.dayLux <= 200000)) {
    return 'Light is between 0 and 200 000 lux.';
  }
  return curve.dayLux >= curve.nightLux ? '' : 'The day cannot be darker than the night.';
}

// The camera's times have no zone: they are counted as if they were Greenwich's, and never shown as such.
export function secondsOf(time: string): number | undefined {
  const parts = /^(\d{4})-(\d{2})-(\d{2})T(\d{2}):(\d{2})(?::(\d{2}))?(?:\.\d+)?$/.exec(time);
  if (null === parts) {
    return undefined;
  }
  const [year, month, day, hour, minute, second] = parts.slice(1).map((part) => Number(part ?? 0)) as [
    number,
    number,
    number,
    number,
    number,
    number,
  ];
  const seconds = Date.UTC(year, month - 1, day, hour, minute, second) / 1000;
  // 31 February is a date that Date would take for one in March.
  return clockText(seconds).startsWith(`${parts[1]}-${parts[2]}-${parts[3]}T${parts[4]}`) ? seconds : undefined;
}

export function clockText(seconds: number): string {
  return new Date(seconds * 1000).toISOString().slice(0, 19);
}

// --- A day in a minute ---

export const kDaySpeed = 1440;
const kDaySeconds = 86400;
// What the camera said of its clock may reach the page a little later than what it said afterwards.
const kLate = 3600;

// What has to be known to end a day that was begun, kept in the browser so that a reload goes on with it.
export interface DayPlan {
  from: string; // the camera's clock when it began
  lightBefore: unknown; // the scene's light, to be put back
}

export function planText(plan: DayPlan): string {
  return JSON.stringify(plan);
}

export function readPlan(text: string | null): DayPlan | undefined {
  if (null === text) {
    return undefined;
  }
  try {
    const plan = JSON.parse(text) as Partial<DayPlan> | null;
    if (
      null !== plan &&
      'object' === typeof plan &&
      'string' === typeof plan.from &&
      undefined !== secondsOf(plan.from)
    ) {
      return { from: plan.from, lightBefore: plan.lightBefore };
    }
  } catch {
    // Whatever stands there was not written by this page.
  }
  return undefined;
}

// running: still to go on; over: a day has passed, go back to real time; gone: somebody else changed the clock.
export type DayState = 'running' | 'over' | 'gone';

export function dayState(plan: DayPlan, clock: Clock): DayState {
  const from = secondsOf(plan.from);
  const now = secondsOf(clock.time);
  if (undefined === from || undefined === now || !clock.simulated || kDaySpeed !== clock.speed || now < from - kLate) {
    return 'gone';
  }
  return now - from >= kDaySeconds ? 'over' : 'running';
}

// 0 to 1.
export function dayProgress(plan: DayPlan, clock: Clock): number {
  const from = secondsOf(plan.from) ?? 0;
  const now = secondsOf(clock.time) ?? 0;
  return Math.min(1, Math.max(0, (now - from) / kDaySeconds));
}
