// What the controls of the settings have in common.
import { computed, signal } from '@preact/signals';

import { isShown, labelOf, parseConditions, type Place, shownWhen, styleOf } from '../logic/style';
import { go } from '../place';
import { metadata, notify, shownValue, values } from '../store';

export const style = computed(() => styleOf(metadata.value));

// Values as they are shown, for conditions.
export const valueOf = (key: number): number | undefined => shownValue(key);

export const isUnsaved = (key: number): boolean => true === values.value.byKey.get(key)?.unsaved;

// A control that was searched for: it scrolls into view, takes the focus and is marked for a moment.
export const found = signal<{ key: number; count: number } | null>(null);
let count = 0;

const kDepth = 8; // of parameters that hide each other

// Leads to a parameter, or, when it is not shown, to the one on which that depends.
export function reveal(key: number): void {
  const asked = style.value.places.get(key);
  if (undefined === asked) {
    return;
  }
  let target: Place = asked;
  for (let depth = 0; depth < kDepth && !isShown(style.value, target, valueOf); ++depth) {
    const conditions = [...parseConditions(target.group.showIf), ...parseConditions(target.item.words?.['show_if'])];
    const missing = conditions.find((condition) => {
      const value = valueOf(condition.key);
      return undefined === value || !condition.values.includes(value);
    });
    const next = undefined === missing ? undefined : style.value.places.get(missing.key);
    if (undefined === next) {
      break;
    }
    target = next;
  }
  if (target !== asked) {
    notify(`${labelOf(style.value, key)} is shown when ${shownWhen(style.value, asked)}.`);
  } else if (!isShown(style.value, asked, valueOf)) {
    notify(`${labelOf(style.value, key)} is not offered now.`);
  }
  go({ view: 'settings', tab: target.tab.key });
  found.value = { key: target.item.key, count: ++count };
}
