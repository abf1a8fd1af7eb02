// A person with a phone: fingers in place of a mouse, on 360 pixels.
import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';
import { kPhone } from '../support/visit.mjs';

// What fingers do, as the browser hears of it from the screen. Each finger goes from its first point to its last.
async function fingers(visit, ...ways) {
  const screen = await visit.page.context().newCDPSession(visit.page);
  const points = (part) =>
    ways.map(([from, to], id) => ({ x: from.x + (to.x - from.x) * part, y: from.y + (to.y - from.y) * part, id }));
  await screen.send('Input.dispatchTouchEvent', { type: 'touchStart', touchPoints: points(0) });
  for (let step = 1; step <= 8; ++step) {
    await screen.send('Input.dispatchTouchEvent', { type: 'touchMove', touchPoints: points(step / 8) });
  }
  await screen.send('Input.dispatchTouchEvent', { type: 'touchEnd', touchPoints: [] });
  await screen.detach();
}

// A point of an element, by parts of its width and height, once it can be seen.
async function at(visit, id, x, y = 0.5) {
  await visit.get(id).scrollIntoViewIfNeeded();
  const box = await visit.get(id).boundingBox();
  return { x: box.x + box.width * x, y: box.y + box.height * y };
}

story('With fingers alone somebody signs in, moves a slider and a window, looks closer and saves', async (s) => {
  await s.camera.request('PATCH', '/channels/1/schemes/1', { window: { start: '06:00', end: '12:00' } });
  await s.camera.request('POST', '/channels/1/save');
  const visit = await s.open({ size: kPhone, isTouched: true });
  await visit.get('login-name').tap();
  await visit.page.keyboard.type('admin');
  await visit.get('login-password').tap();
  await visit.page.keyboard.type(s.camera.password);
  await visit.get('login-submit').tap();
  await visit.untilLive();
  await visit.untilFrames(1);

  await visit.get('view-settings').tap();
  await visit.get('tab-image').tap();
  await visit.untilShown(kBrightness, 50);
  const slider = `control-${kBrightness}`;
  await fingers(visit, [await at(visit, slider, 0.5), await at(visit, slider, 0.9)]);
  const shown = await visit.shown(kBrightness);
  assert.ok(shown > 75, `the slider stands at ${shown}`);
  await until(async () => shown === (await s.camera.value(kBrightness)), 'the camera has what the slider shows');

  await visit.get('view-schemes').tap();
  const lane = await visit.get('lane-1').boundingBox();
  const edge = await at(visit, 'window-1-to', 0.5);
  await fingers(visit, [edge, { x: edge.x + lane.width / 4, y: edge.y }]);
  await until(
    async () => '18:00' === (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.end,
    'the window ends six hours later',
  );

  assert.equal(await visit.isSeen('picture-scale'), false);
  await fingers(
    visit,
    [await at(visit, 'picture-frame', 0.45), await at(visit, 'picture-frame', 0.2)],
    [await at(visit, 'picture-frame', 0.55), await at(visit, 'picture-frame', 0.8)],
  );
  await visit.untilText('picture-scale', /^[2-9].*×$/);

  await visit.get('save').tap();
  await visit.untilUnsaved(0);
});
