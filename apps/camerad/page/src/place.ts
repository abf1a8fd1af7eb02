// Where the person is on the page, kept in the address: "#settings/exposure", "#schemes", "#scene", "#log".
import { signal } from '@preact/signals';

export const kViews = ['settings', 'schemes', 'scene', 'log'] as const;
export type View = (typeof kViews)[number];

export interface Place {
  view: View;
  tab: string; // key of the tab of the settings; empty: the first
}

export function placeOf(hash: string): Place {
  const [view = '', ...tab] = hash.replace(/^#/, '').split('/');
  const known = kViews.find((name) => name === view);
  let key = tab.join('/');
  try {
    key = decodeURIComponent(key);
  } catch {
    key = '';
  }
  return { view: known ?? 'settings', tab: 'settings' === known ? key : '' };
}

export function hashOf(place: Place): string {
  return `#${place.view}${'' === place.tab ? '' : `/${encodeURIComponent(place.tab)}`}`;
}

export const place = signal<Place>(placeOf('undefined' === typeof location ? '' : location.hash));

export function go(to: Place): void {
  if (hashOf(to) !== location.hash) {
    history.pushState(null, '', hashOf(to));
  }
  place.value = to;
}

if ('undefined' !== typeof window) {
  const follow = () => {
    place.value = placeOf(location.hash);
  };
  window.addEventListener('hashchange', follow);
  window.addEventListener('popstate', follow);
}
