// Light as people say it, and the logarithmic scales of light and distance.

// A slider counts from 0 to kSteps; least and most are the values at its ends.
export const kSteps = 1000;

export interface LogScale {
  least: number;
  most: number;
}

export const kLightScale: LogScale = { least: 0.001, most: 100000 };
export const kDistanceScale: LogScale = { least: 0.1, most: 1000 };

export function toStep(scale: LogScale, value: number): number {
  if (!(value > scale.least)) {
    return 0;
  }
  const part = Math.log(value / scale.least) / Math.log(scale.most / scale.least);
  return Math.round(kSteps * Math.min(1, part));
}

// Two digits that count are as fine as a hand is.
export function fromStep(scale: LogScale, step: number): number {
  const part = Math.min(1, Math.max(0, step / kSteps));
  return rounded(scale.least * Math.pow(scale.most / scale.least, part), 2);
}

export function rounded(value: number, digits: number): number {
  return Number(value.toPrecision(digits));
}

// A number as short as it can be said: "0.003", "12", "100 000".
export function plainNumber(value: number): string {
  const text = String(rounded(value, 3));
  if (text.includes('e')) {
    return value < 1 ? '0' : String(Math.round(value));
  }
  const [whole = '', part] = text.split('.');
  const grouped = whole.length > 4 ? whole.replace(/\B(?=(\d{3})+$)/g, '\u202f') : whole;
  return undefined === part ? grouped : `${grouped}.${part}`;
}

const kWords: ReadonlyArray<readonly [number, string]> = [
  [0, 'Darkness'],
  [0.0005, 'Starlight'],
  [0.05, 'Full moon'],
  [0.8, 'Dark street'],
  [5, 'Street lamp'],
  [40, 'Living room'],
  [200, 'Office'],
  [800, 'Overcast'],
  [5000, 'Bright sky'],
  [25000, 'Sunshine'],
  [70000, 'Noon sun'],
];

export function lightWord(lux: number): string {
  let word = 'Darkness';
  for (const [from, name] of kWords) {
    if (lux >= from) {
      word = name;
    }
  }
  return word;
}

// Places on the slider that a person finds by name.
export const kLightMarks: ReadonlyArray<{ lux: number; label: string }> = [
  { lux: 0.001, label: 'Starlight' },
  { lux: 10, label: 'Street lamp' },
  { lux: 2000, label: 'Overcast' },
  { lux: 100000, label: 'Noon' },
];
