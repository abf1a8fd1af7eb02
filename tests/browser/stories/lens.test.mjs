// What the lens pad moves, by the picture and on two pages.
import assert from 'node:assert/strict';

import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const kFocusMode = 1536;
const kManual = 1;

// Holds a button until it is enough.
async function hold(visit, id, isEnough, what) {
  await visit.get(id).hover();
  await visit.page.mouse.down();
  await until(isEnough, what);
  await visit.page.mouse.up();
}

const lens = (s) => s.camera.request('GET', '/channels/1/lens');
const untilStanding = (visit) => visit.untilText('lens-moving', /^Standing$/);
const ratio = async (visit) => parseFloat(await visit.text('lens-zoom'));

story('The lens moves for as long as a button is held, and every page shows where it stands', async (s) => {
  await s.camera.request('PATCH', '/scene', { car: false, wind: 0 });
  const visit = await s.visit();
  const other = await s.visit();
  await visit.goTo('settings', 'focus');
  await visit.get(`control-${kFocusMode}`).selectOption(String(kManual));
  await visit.untilText('lens-focus', /^manual$/);
  await visit.untilFrames(2);
  assert.equal(await ratio(visit), 1);
  await visit.get('lens-moving').evaluate((element) => {
    element.said = [];
    new MutationObserver(() => element.said.push(element.textContent))
      .observe(element, { childList: true, characterData: true, subtree: true });
  });
  await hold(visit, 'zoom-in', async () => (await ratio(visit)) >= 1.5, 'it is magnified');
  await untilStanding(visit);
  assert.ok((await visit.get('lens-moving').evaluate((element) => element.said)).includes('Moving'));

  await visit.get('auto-focus').click();
  await until(async () => (await lens(s)).sharpness > 8000 && !(await lens(s)).moving, 'it is in focus');
  await visit.untilFrames(3);
  const sharp = await visit.look();
  const detail = async () => (await visit.look()).detail;
  await hold(visit, 'focus-near', async () => (await detail()) < sharp.detail * 0.2, 'near it is out of focus');
  await untilStanding(visit);
  await visit.untilFrames(3);
  const blurred = await detail();
  await hold(visit, 'focus-far', async () => (await detail()) > blurred + 0.2, 'farther away it is less so');
  await untilStanding(visit);
  await visit.get('auto-focus').click();
  await visit.untilLooks((now) => now.detail > sharp.detail * 0.9, `as sharp as ${sharp.detail} again`);
  await untilStanding(visit);

  const { zoom, focus } = await lens(s);
  assert.ok(zoom.ratio > 1.4, `the camera is at ${zoom.ratio}`);
  for (const page of [visit, other]) {
    await page.untilText('lens-zoom', new RegExp(`^${zoom.ratio.toFixed(1)}×$`));
    await page.untilText('lens-zoom-note', new RegExp(`position ${zoom.position}$`));
    await page.untilText('lens-focus', /^manual$/);
    await page.untilText('lens-focus-note', new RegExp(`position ${focus.position},`));
  }
});
