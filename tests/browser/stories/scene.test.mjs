import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

story('A day passes in a minute, and the clock is real again when it is stopped', async (s) => {
  const visit = await s.visit();
  await visit.goTo('scene');
  await visit.get('scene-day-start').click();
  await until(async () => 1440 === (await s.camera.request('GET', '/clock')).speed, 'the clock runs');
  await visit.untilSeen('scene-day-stop');
  const before = (await s.camera.request('GET', '/clock')).time;
  await until(
    async () => Date.parse((await s.camera.request('GET', '/clock')).time) - Date.parse(before) > 30 * 60 * 1000,
    'half an hour goes by',
  );
  await visit.page.reload();
  await visit.untilLive();
  await visit.goTo('scene');
  await visit.get('scene-day-stop').click();
  await until(async () => !(await s.camera.request('GET', '/clock')).simulated, 'the clock is real');
});

story('A fault of the driver is added by its words and removed again', async (s) => {
  const visit = await s.visit();
  await visit.goTo('scene');
  await visit.untilSeen('fault-none');
  await visit.get('fault-text').fill(`cmd=${kBrightness} opt=set result=-5`);
  await visit.get('fault-add').click();
  await visit.untilSeen('fault-list');
  const { faults } = await s.camera.request('GET', '/faults');
  assert.equal(faults.length, 1);
  await visit.get(`fault-remove-${faults[0].id}`).click();
  await visit.untilSeen('fault-none');
  assert.deepEqual((await s.camera.request('GET', '/faults')).faults, []);
});

story('Words that are no fault are explained', async (s) => {
  const visit = await s.visit();
  await visit.goTo('scene');
  await visit.get('fault-text').fill('all is well');
  await visit.get('fault-add').click();
  await visit.untilText('fault-problem', /\w+ \w+/);
  assert.deepEqual((await s.camera.request('GET', '/faults')).faults, []);
});

story('Switched off and on, the camera comes back with what was saved', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.save();
  await visit.type(kBrightness, 88);
  await visit.untilUnsaved(1);
  await visit.goTo('scene');
  await visit.get('power-cycle').click();
  await visit.get('power-confirm').click();
  await visit.untilGone('power-dialog');
  await visit.goTo('settings', 'image');
  await visit.untilShown(kBrightness, 63);
  await visit.untilUnsaved(0);
});

story('Each channel has a picture and settings of its own', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(2);
  await visit.get('channel-select').selectOption('2');
  await visit.untilFrames(2);
  assert.match(await visit.get('picture').getAttribute('aria-label'), /channel 2/);
  await visit.goTo('settings', 'thermal');
  await visit.get('channel-select').selectOption('1');
  await visit.untilGone('tab-thermal');
}, { variant: 'thermal' });
