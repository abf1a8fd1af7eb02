// What parameters are called on a channel, by their numbers, with the tab that they are found in.
import type { Metadata } from '../types';

export function labelsOf(metadata: Metadata | null): Map<number, string> {
  const labels = new Map<number, string>();
  for (const tab of metadata?.tabs ?? []) {
    for (const group of tab.groups) {
      for (const item of group.parameters) {
        if ('' !== item.label && !labels.has(item.key)) {
          labels.set(item.key, `${tab.label}: ${item.label}`);
        }
      }
    }
  }
  return labels;
}
