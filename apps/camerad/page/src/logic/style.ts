// What the words of a style document mean for a control: whether it is shown, whether it can be used, what it takes.
// docs/style-documents.md says it in prose.
import type { Metadata, StyleGroup, StyleItem, StyleTab } from '../types';

export type ValueOf = (key: number) => number | undefined; // undefined: not known

export interface Condition {
  key: number;
  values: number[];
}

// "160=1 161=1|2": several conditions with blanks between them, several values with "|". A word that is no condition is
// left out, so that a slip in a document hides nothing.
export function parseConditions(text: string | undefined): Condition[] {
  const conditions: Condition[] = [];
  for (const word of (text ?? '').trim().split(/\s+/)) {
    const match = /^(\d+)=(-?\d+(?:\|-?\d+)*)$/.exec(word);
    if (null !== match) {
      conditions.push({ key: Number(match[1]), values: (match[2] ?? '').split('|').map(Number) });
    }
  }
  return conditions;
}

export function holds(conditions: Condition[], valueOf: ValueOf): boolean {
  return conditions.every(({ key, values }) => {
    const value = valueOf(key);
    return undefined !== value && values.includes(value);
  });
}

function numbersOf(text: string | undefined): number[] {
  return (text ?? '').match(/-?\d+/g)?.map(Number) ?? [];
}

// --- A document, prepared for questions ---

export interface Place {
  tab: StyleTab;
  group: StyleGroup;
  item: StyleItem;
}

export interface Enabler {
  item: StyleItem;
  when: number[];
}

export interface Style {
  tabs: StyleTab[];
  places: ReadonlyMap<number, Place>; // by key; of a key that stands twice, the first
  notices: ReadonlySet<number>;
  enablers: ReadonlyMap<number, Enabler[]>; // by the key that is enabled
  askedKeys: number[]; // keys outside the schemes on which controls depend
}

export function styleOf(metadata: Metadata | null): Style {
  const places = new Map<number, Place>();
  const notices = new Set<number>();
  const enablers = new Map<number, Enabler[]>();
  const needed = new Set<number>();
  for (const tab of metadata?.tabs ?? []) {
    for (const group of tab.groups) {
      parseConditions(group.showIf).forEach(({ key }) => needed.add(key));
      for (const item of group.parameters) {
        if (!places.has(item.key)) {
          places.set(item.key, { tab, group, item });
        }
        if ('notice' === item.type) {
          notices.add(item.key);
        }
        const when = numbersOf(item.words?.['enable_when']);
        for (const key of 0 === when.length ? [] : numbersOf(item.words?.['enable_list'])) {
          enablers.set(key, [...(enablers.get(key) ?? []), { item, when }]);
        }
        parseConditions(item.words?.['show_if']).forEach(({ key }) => needed.add(key));
        [item.minKey, item.maxKey].forEach((key) => undefined !== key && needed.add(key));
      }
    }
  }
  const askedKeys = [...needed].filter((key) => true !== places.get(key)?.item.recorded);
  return { tabs: metadata?.tabs ?? [], places, notices, enablers, askedKeys };
}

// Whether a person sees the parameter at all.
export function isShown(style: Style, { group, item }: { group: StyleGroup; item: StyleItem }, valueOf: ValueOf): boolean {
  const absentIf = item.words?.['absent_if'];
  return (
    !(undefined !== absentIf && numbersOf(absentIf).some((key) => style.notices.has(key))) &&
    holds(parseConditions(group.showIf), valueOf) &&
    holds(parseConditions(item.words?.['show_if']), valueOf)
  );
}

// Why the parameter cannot be changed, by what other parameters are; empty when it can. Two parameters that exclude each
// other and are both in force are both left usable, or nobody could ever mend it.
export function blockedBy(style: Style, item: StyleItem, valueOf: ValueOf): string {
  const own = valueOf(item.key);
  for (const enabler of style.enablers.get(item.key) ?? []) {
    const value = valueOf(enabler.item.key);
    if (undefined === value || enabler.when.includes(value)) {
      continue;
    }
    const blocksBack = (style.enablers.get(enabler.item.key) ?? []).some(
      (back) => back.item.key === item.key && undefined !== own && !back.when.includes(own),
    );
    if (!blocksBack) {
      return `Off because ${enabler.item.label} is ${valueText(enabler.item, value).toLowerCase()}`;
    }
  }
  return '';
}

export interface Range {
  min: number | undefined;
  max: number | undefined;
  step: number;
}

// What a slider or a number takes now.
export function rangeOf(item: StyleItem, valueOf: ValueOf): Range {
  const tighter = (own: number | undefined, key: number | undefined, pick: (a: number, b: number) => number) => {
    const other = undefined === key ? undefined : valueOf(key);
    return undefined === own ? other : undefined === other ? own : pick(own, other);
  };
  const min = tighter(item.min, item.minKey, Math.max);
  const max = tighter(item.max, item.maxKey, Math.min);
  return { min, max, step: undefined !== item.step && 0 < item.step ? item.step : 1 };
}

// --- What a person reads ---

// A value that stands for itself, like the 100 by which a parameter takes the default of the camera.
export function strangeText(value: number): string {
  return 100 === value ? '100 (as the camera decides)' : `${value} (none of the choices)`;
}

export function valueText(item: StyleItem, value: number): string {
  if ('switch' === item.type) {
    return 0 === value ? 'Off' : 1 === value ? 'On' : String(value);
  }
  if ('choice' === item.type) {
    const label = item.choices?.find((choice) => choice.value === value)?.label;
    return undefined === label ? strangeText(value) : withUnit(label, item.unit);
  }
  return withUnit(String(value).replace('-', '\u2212'), item.unit);
}

function withUnit(text: string, unit: string | undefined): string {
  return undefined === unit || '' === unit || !/\d$/.test(text) ? text : '%' === unit ? `${text} %` : `${text} ${unit}`;
}

// "Exposure is Manual" or "Exposure is Automatic or Manual": what has to be so that the parameter is shown. Empty when
// it is shown in any case.
export function shownWhen(style: Style, { group, item }: { group: StyleGroup; item: StyleItem }): string {
  const sentences = [...parseConditions(group.showIf), ...parseConditions(item.words?.['show_if'])].map((condition) => {
    const other = style.places.get(condition.key)?.item;
    const label = other?.label ?? `parameter ${condition.key}`;
    const texts = condition.values.map((value) => (undefined === other ? String(value) : valueText(other, value)));
    return `${label} is ${texts.join(' or ')}`;
  });
  return [...new Set(sentences)].join(' and ');
}

export function labelOf(style: Style, key: number): string {
  const place = style.places.get(key);
  return undefined === place || '' === place.item.label
    ? `Parameter ${key}`
    : '' === place.group.label
      ? place.item.label
      : `${place.group.label}: ${place.item.label}`;
}

const kFewChoices = 4;
const kShortLabel = 16;
const kShortLabels = 44; // of all together

// Few choices with short names are offered side by side, others in a list.
export function offersSideBySide(item: StyleItem): boolean {
  const labels = (item.choices ?? []).map((choice) => choice.label);
  return (
    0 < labels.length &&
    kFewChoices >= labels.length &&
    labels.every((label) => kShortLabel >= label.length) &&
    kShortLabels >= labels.join('').length
  );
}
