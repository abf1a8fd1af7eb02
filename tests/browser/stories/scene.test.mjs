import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { blocks, difference } from '../support/motion.mjs';
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

// The camera takes the second scheme by night.
async function followDayAndNight(s) {
  await s.camera.request('PATCH', '/channels/1/schemes', { follow: 'day-night', automatic: true });
}

story('Whoever lets night fall by the slider of the light sees the camera switch', async (s) => {
  await followDayAndNight(s);
  const visit = await s.visit();
  await visit.untilFrames(2);
  await visit.goTo('scene');
  await visit.get('scene-clock-kind-1').check();
  await visit.get('scene-speed-60').check(); // the camera waits some seconds before it switches
  await visit.get('scene-light').focus();
  await visit.press('Home');
  await visit.untilText('scene-lux', /^Starlight/);
  assert.deepEqual((await s.camera.request('GET', '/scene')).light, { kind: 'fixed', lux: 0.001 });
  await visit.untilDayNight('night');
  await visit.untilLooks((now) => Math.abs(now.red - now.blue) < 3, 'without colour');
  await visit.goTo('schemes');
  await visit.untilScheme(1);
  await visit.goTo('scene');
  await visit.get('scene-light').focus();
  await visit.press('End');
  await visit.untilText('scene-lux', /^Noon/);
  await visit.untilDayNight('day');
  await visit.goTo('schemes');
  await visit.untilScheme(0);
});

story('A car drives by for as long as the scene has one', async (s) => {
  await s.camera.request('PATCH', '/scene', { wind: 0 });
  const visit = await s.visit();
  await visit.untilFrames(2);
  await visit.goTo('scene');
  const untilMoves = async () => {
    const before = await blocks(visit);
    await until(async () => difference(before, await blocks(visit)) > 10, 'something moves');
  };
  await untilMoves();
  await visit.get('scene-car').click();
  await until(async () => !(await s.camera.request('GET', '/scene')).car, 'there is no car');
  await visit.untilFrames(3);
  const still = await blocks(visit);
  for (let count = 0; count < 3; ++count) {
    await visit.untilFrames(4);
    const by = difference(still, await blocks(visit));
    assert.ok(by < 5, `nothing moves, and yet there is a difference of ${by}`);
  }
  await visit.get('scene-car').click();
  await untilMoves();
});

story('The clock of the camera is set and hurried on the page', async (s) => {
  const clock = () => s.camera.request('GET', '/clock');
  const visit = await s.visit();
  await visit.goTo('scene');
  assert.equal((await clock()).simulated, false);
  await visit.get('scene-clock-kind-1').check();
  await visit.get('scene-speed-0').check();
  await visit.get('scene-time').fill('2026-06-01T12:34:56');
  await visit.get('scene-time-set').click();
  await until(async () => '2026-06-01T12:34:56' === (await clock()).time.slice(0, 19), 'the camera has that time');
  assert.equal((await clock()).speed, 0);
  await visit.untilText('clock', /^12:34:56$/);
  await visit.get('scene-speed-60').check();
  await until(async () => (await clock()).time > '2026-06-01T12:37', 'minutes pass in seconds');
  await visit.untilText('clock', /^12:(3[7-9]|[45])/);
  await visit.get('scene-clock-kind-0').check();
  await until(async () => !(await clock()).simulated, 'the clock is real');
});

story('When a day has passed, the clock is real and the light as it was, and both schemes were in force', async (s) => {
  const light = { kind: 'fixed', lux: 1234 };
  await followDayAndNight(s);
  await s.camera.request('PATCH', '/scene', { light });
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-01T18:30:00', speed: 0 });
  const visit = await s.visit();
  await visit.goTo('scene');
  await visit.get('scene-day-start').click();
  await visit.untilSeen('scene-day-progress');
  assert.equal((await s.camera.request('GET', '/scene')).light.kind, 'day');
  await visit.goTo('schemes');
  await visit.untilScheme(1);
  await visit.untilDayNight('night');
  // What is left of the night, and then of the day, is passed over.
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-02T05:00:00', speed: 1440 });
  await visit.untilScheme(0);
  await visit.untilDayNight('day');
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-02T17:30:00', speed: 1440 });
  await visit.goTo('scene');
  await visit.untilSeen('scene-day-start');
  await until(async () => !(await s.camera.request('GET', '/clock')).simulated, 'the clock is real');
  await until(async () => 'fixed' === (await s.camera.request('GET', '/scene')).light.kind, 'the light is back');
  assert.deepEqual((await s.camera.request('GET', '/scene')).light, light);
  await visit.page.getByText('A day has passed').first().waitFor();
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
