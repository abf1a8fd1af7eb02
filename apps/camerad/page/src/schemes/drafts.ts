// Windows as the person has set them, until the camera has taken them.
import { signal } from '@preact/signals';

import { api, explain } from '../api';
import { NewestWins } from '../logic/newest';
import { objection, type Span, spanOf, windowOf } from '../logic/windows';
import { channel, schemes, takeSchemes } from '../store';

export const drafts = signal<ReadonlyMap<number, Span>>(new Map());
export const windowProblems = signal<ReadonlyMap<number, string>>(new Map());

const held = new Set<number>(); // windows that are being dragged

function put<V>(map: ReadonlyMap<number, V>, index: number, value: V | undefined): ReadonlyMap<number, V> {
  const copy = new Map(map);
  if (undefined === value) {
    copy.delete(index);
  } else {
    copy.set(index, value);
  }
  return copy;
}

const sender = new NewestWins<{ channel: number; span: Span }>(
  async (index, { channel: asked, span }) => {
    try {
      takeSchemes(await api.changeScheme(asked, index, { window: windowOf(span) }));
      windowProblems.value = put(windowProblems.value, index, undefined);
    } catch (error) {
      sender.drop(index);
      windowProblems.value = put(windowProblems.value, index, explain(error));
    }
  },
  (index) => {
    const draft = drafts.value.get(index);
    if (!held.has(index) && undefined !== draft && undefined === objection(draft)) {
      drafts.value = put(drafts.value, index, undefined);
    }
  },
);

// The window that is shown: the person's, otherwise the camera's.
export function shownSpan(index: number): Span {
  const scheme = schemes.value?.schemes[index];
  return drafts.value.get(index) ?? (undefined === scheme ? { from: 0, to: 0 } : spanOf(scheme.window));
}

// Shows a window without sending it: while it is dragged.
export function holdWindow(index: number, span: Span): void {
  held.add(index);
  drafts.value = put(drafts.value, index, span);
  windowProblems.value = put(windowProblems.value, index, undefined);
}

// Sends a window. One that could not be stored is kept and explained instead.
export function setWindow(index: number, span: Span): void {
  held.delete(index);
  drafts.value = put(drafts.value, index, span);
  const reason = objection(span)?.text;
  windowProblems.value = put(windowProblems.value, index, reason);
  if (undefined === reason) {
    sender.set(index, { channel: channel.value, span });
  }
}

export function dropDraft(index: number): void {
  held.delete(index);
  drafts.value = put(drafts.value, index, undefined);
  windowProblems.value = put(windowProblems.value, index, undefined);
}

export function dropDrafts(): void {
  held.clear();
  drafts.value = new Map();
  windowProblems.value = new Map();
}
