import assert from 'node:assert/strict';
import { test } from 'node:test';
import { irisText, lensReason, type Offer, offerOf, offersAnything, ratioText } from '../src/picture/lens';
import type { LensAction, LensView, Metadata, StyleItem } from '../src/types';

const item = (key: number, more: Partial<StyleItem> = {}): StyleItem => ({
  key,
  name: '',
  label: String(key),
  type: 'button',
  recorded: false,
  ...more,
});
const metadata = (...parameters: StyleItem[]): Metadata => ({
  channel: 1,
  revision: 1,
  tabs: [{ key: 'a', label: 'A', groups: [{ label: '', parameters }] }],
});
const exposure = item(16, {
  type: 'choice',
  choices: [
    { value: 0, label: 'Automatic' },
    { value: 2, label: 'Iris priority' },
    { value: 3, label: 'Manual' },
  ],
});
const everything = metadata(
  exposure,
  item(1569),
  item(1570),
  item(1553),
  item(1554),
  item(1539),
  item(1616),
  item(17, { words: { show_if: '16=2|3' } }),
  item(18, { words: { show_if: '16=2|3' } }),
);
const lens: LensView = {
  zoom: { position: 16384, ratio: 1 },
  focus: { position: 2000, mode: 1 },
  iris: { position: 12800 },
  sharpness: 1,
  moving: false,
};
const reason = (
  action: LensAction,
  change: Partial<LensView> = {},
  own: Parameters<typeof lensReason>[4] = null,
  mode = 2,
  readOnly = '',
): string => lensReason(action, { ...lens, ...change }, offerOf(everything), readOnly, own, mode);

test('only what the channel has is offered', () => {
  const none: Offer = {
    zoom: false,
    focus: false,
    once: false,
    iris: false,
    reset: false,
    irisModes: [],
    irisModeText: '',
  };
  assert.deepEqual(offerOf(null), none);
  assert.deepEqual(offerOf(metadata(item(34), item(1569))), none);
  assert.equal(offersAnything(none), false);
  assert.deepEqual(offerOf(metadata(item(1569), item(1570))), { ...none, zoom: true });
  assert.deepEqual(offerOf(metadata(item(1539))), { ...none, once: true });
  assert.deepEqual(offerOf(everything), {
    zoom: true,
    focus: true,
    once: true,
    iris: true,
    reset: true,
    irisModes: [2, 3],
    irisModeText: 'Iris priority or Manual',
  });
});

test('a viewer is told so for everything', () => {
  for (const action of ['zoom-in', 'focus-far', 'auto-focus', 'iris-open', 'lens-reset'] as const) {
    assert.equal(reason(action, {}, null, 2, 'You are signed in as a viewer'), 'You are signed in as a viewer');
    assert.equal(reason(action), '');
  }
});

test('while the lens moves, only more of the same can be asked for', () => {
  const moving = { moving: true };
  for (const action of ['zoom-in', 'focus-near', 'auto-focus', 'lens-reset'] as const) {
    assert.equal(reason(action, moving), 'The lens is moving', action);
  }
  assert.equal(reason('zoom-in', moving, 'zoom'), '');
  assert.equal(reason('zoom-out', moving, 'zoom'), '');
  assert.equal(reason('focus-far', moving, 'zoom'), 'The lens is moving');
  // The iris has no motor that could be busy.
  assert.equal(reason('iris-open', moving), '');
});

test('an automatic focus is not moved by hand', () => {
  const automatic = { focus: { position: 0, mode: 0 } };
  assert.match(reason('focus-near', automatic), /^The focus is automatic/);
  assert.equal(reason('auto-focus', automatic), '');
  assert.equal(reason('focus-near', { focus: { position: 0, mode: 2 } }), '');
});

test('the iris moves by hand in the modes that the style names', () => {
  assert.equal(reason('iris-open', {}, null, 0), 'The iris moves by hand with the exposure at Iris priority or Manual');
  assert.equal(reason('iris-close', {}, null, 3), '');
  const free = offerOf(metadata(item(17), item(18)));
  assert.equal(lensReason('iris-open', lens, free, '', null, 0), '');
});

test('positions are said as people say them', () => {
  assert.equal(ratioText({ ...lens, zoom: { position: 28672, ratio: 4 } }), '4.0×');
  assert.equal(irisText(lens), '50 % open');
});
