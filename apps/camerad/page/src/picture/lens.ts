// What the lens pad offers on a channel, and why something of it cannot be used now.
import type { LensAction, LensView, Metadata, StyleItem } from '../types';

export type Family = 'zoom' | 'focus' | 'once' | 'iris' | 'reset';

// The keys that the metadata of a channel must have for a part to be offered.
const kKeys = {
  zoomIn: 1569,
  zoomOut: 1570,
  focusNear: 1553,
  focusFar: 1554,
  once: 1539,
  irisOpen: 17,
  irisClose: 18,
  reset: 1616,
};
export const kExposureMode = 16;
// Parameters of which it depends how the lens moves, and where the iris stands.
export const kGoverning: readonly number[] = [kExposureMode, 80, 82, 1536];

export interface Offer {
  zoom: boolean;
  focus: boolean;
  once: boolean;
  iris: boolean;
  reset: boolean;
  irisModes: number[]; // values of the exposure mode in which the iris moves by hand; empty: any
  irisModeText: string; // their names
}

function itemsOf(metadata: Metadata | null): Map<number, StyleItem> {
  const items = new Map<number, StyleItem>();
  for (const tab of metadata?.tabs ?? []) {
    for (const group of tab.groups) {
      for (const item of group.parameters) {
        items.set(item.key, item);
      }
    }
  }
  return items;
}

export function offerOf(metadata: Metadata | null): Offer {
  const items = itemsOf(metadata);
  const open = items.get(kKeys.irisOpen);
  const condition = /(?:^|\s)16=([\d|]+)(?:\s|$)/.exec(open?.words?.['show_if'] ?? '');
  const modes =
    null === condition
      ? []
      : (condition[1] ?? '')
          .split('|')
          .filter((text) => '' !== text)
          .map(Number);
  const names = modes.map(
    (mode) => items.get(kExposureMode)?.choices?.find((choice) => choice.value === mode)?.label ?? String(mode),
  );
  return {
    zoom: items.has(kKeys.zoomIn) && items.has(kKeys.zoomOut),
    focus: items.has(kKeys.focusNear) && items.has(kKeys.focusFar),
    once: items.has(kKeys.once),
    iris: undefined !== open && items.has(kKeys.irisClose),
    reset: items.has(kKeys.reset),
    irisModes: modes,
    irisModeText: names.join(' or '),
  };
}

export function offersAnything(offer: Offer): boolean {
  return offer.zoom || offer.focus || offer.once || offer.iris || offer.reset;
}

export function familyOf(action: LensAction): Family {
  switch (action) {
    case 'zoom-in':
    case 'zoom-out':
      return 'zoom';
    case 'focus-near':
    case 'focus-far':
      return 'focus';
    case 'auto-focus':
      return 'once';
    case 'iris-open':
    case 'iris-close':
      return 'iris';
    case 'lens-reset':
      return 'reset';
  }
}

const kFocusAutomatic = 0;

// Why an action cannot be used; empty when it can. `own`: the part that this page set in motion by steps. Further steps
// of it add up; everything else waits until the lens stands.
export function lensReason(
  action: LensAction,
  view: LensView,
  offer: Offer,
  readOnly: string,
  own: Family | null,
  exposureMode: number | undefined,
): string {
  if ('' !== readOnly) {
    return readOnly;
  }
  const family = familyOf(action);
  if ('focus' === family && kFocusAutomatic === view.focus.mode) {
    return 'The focus is automatic; set it to manual to move it by hand';
  }
  if (
    'iris' === family &&
    offer.irisModes.length > 0 &&
    undefined !== exposureMode &&
    !offer.irisModes.includes(exposureMode)
  ) {
    return `The iris moves by hand with the exposure at ${offer.irisModeText}`;
  }
  return view.moving && 'iris' !== family && own !== family ? 'The lens is moving' : '';
}

export function ratioText(view: LensView): string {
  return `${view.zoom.ratio.toFixed(1)}×`;
}

// The iris counts 256ths of a percent.
export function irisText(view: LensView): string {
  return `${Math.round(view.iris.position / 256)} % open`;
}

export function focusModeText(mode: number): string {
  switch (mode) {
    case 0:
      return 'automatic';
    case 1:
      return 'manual';
    case 2:
      return 'automatic after each zoom';
    default:
      return `mode ${mode}`;
  }
}
