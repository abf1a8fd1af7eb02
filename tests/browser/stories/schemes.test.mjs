import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const untilScheme = (visit, index) =>
  until(async () => 'true' === (await visit.get(`scheme-${index}`).getAttribute('aria-pressed')), `scheme ${index} is in force`);

async function setWindow(visit, index, from, to) {
  for (const [part, text] of [['to', '24:00'], ['from', from], ['to', to]]) {
    await visit.get(`time-${index}-${part}`).fill(text);
    await visit.get(`time-${index}-${part}`).press('Enter');
  }
}

// Two schemes by the time of day, the second one dark, and the clock shortly before the second begins.
async function beforeEvening(s, visit) {
  await visit.goTo('schemes');
  await setWindow(visit, 0, '06:00', '20:00');
  await setWindow(visit, 1, '20:00', '24:00');
  await until(async () => {
    const { schemes } = await s.camera.request('GET', '/channels/1/schemes');
    return '20:00' === schemes[0].window.end && '20:00' === schemes[1].window.start;
  }, 'the camera has both windows');
  await s.camera.request('PATCH', '/channels/1/schemes', { current: 1 });
  await s.camera.request('PUT', `/channels/1/parameters/${kBrightness}`, { value: 10 });
  await s.camera.request('PATCH', '/channels/1/schemes', { current: 0 });
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-01T19:58:30', speed: 0 });
}

story('In the evening the camera takes the scheme of the evening by itself', async (s) => {
  const visit = await s.visit();
  await beforeEvening(s, visit);
  await visit.untilFrames(2);
  const before = await visit.look();
  await visit.get('follow-schedule').click();
  await visit.get('automatic').click();
  await untilScheme(visit, 0);
  await until(async () => '1198' === (await visit.get('lane-0').getByTestId('now-marker').getAttribute('data-minute')),
    'the marker stands at 19:58');
  await s.camera.request('PUT', '/clock', { speed: 60, simulated: true });
  await untilScheme(visit, 1);
  await visit.untilText('scheme-mode', /time of day/);
  await visit.untilLooks((now) => now.mean < before.mean - 10, `the picture is darker than ${before.mean}`);
  await visit.goTo('settings', 'image');
  await visit.untilShown(kBrightness, 10);
});

story('When night falls the camera takes the second scheme, and the first again in the morning', async (s) => {
  const visit = await s.visit();
  await visit.goTo('schemes');
  await visit.get('follow-day-night').click();
  await visit.get('automatic').click();
  await until(async () => {
    const { follow, automatic } = await s.camera.request('GET', '/channels/1/schemes');
    return 'day-night' === follow && automatic;
  }, 'the camera follows day and night');
  await untilScheme(visit, 0);
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 0.01 } });
  await s.camera.request('PUT', '/clock', { simulated: true, speed: 60 });
  await untilScheme(visit, 1);
  await until(async () => 'night' === (await visit.get('day-night-badge').getAttribute('data-state')), 'it is night');
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 20000 } });
  await untilScheme(visit, 0);
  await until(async () => 'day' === (await visit.get('day-night-badge').getAttribute('data-state')), 'it is day');
});

story('The time line shows which scheme will be in force, and a window is dragged by the mouse', async (s) => {
  const visit = await s.visit();
  await visit.goTo('schemes');
  await setWindow(visit, 0, '06:00', '18:00');
  await setWindow(visit, 1, '18:00', '24:00');
  await visit.get(`piece-${18 * 60}`).waitFor();
  assert.equal(await visit.get(`piece-${18 * 60}`).getAttribute('data-scheme'), '1');
  const lane = await visit.get('lane-0').boundingBox();
  const edge = await visit.get('window-0-to').boundingBox();
  const y = edge.y + edge.height / 2;
  await visit.page.mouse.move(edge.x + edge.width / 2, y);
  await visit.page.mouse.down();
  await visit.page.mouse.move(edge.x + edge.width / 2 + (lane.width * 2) / 24, y, { steps: 8 });
  await visit.page.mouse.up();
  await until(
    async () => '20:00' === (await s.camera.request('GET', '/channels/1/schemes')).schemes[0].window.end,
    'the window ends at 20:00',
  );
  await visit.get(`piece-${20 * 60}`).waitFor();
  assert.equal(await visit.get(`piece-${20 * 60}`).getAttribute('data-scheme'), '1');
});

story('On a camera for number plates day and night decide where no window is, and the page says so', async (s) => {
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-01T15:00:00', speed: 0 });
  for (const [index, name, start, end] of [
    [0, 'Day', '06:00', '08:00'],
    [1, 'Night', '09:00', '10:00'],
    [2, 'Third', '10:00', '11:00'],
    [3, 'Fourth', '11:00', '12:00'],
  ]) {
    await s.camera.request('PATCH', `/channels/1/schemes/${index}`, { name, window: { start, end } });
  }
  const visit = await s.visit();
  await visit.goTo('schemes');
  await visit.untilText('remarks', /^No window covers 00:00 to 06:00, 08:00 to 09:00 and 12:00 to 24:00: day and night decide there, Day by day, Night at night\.$/);
  const gap = visit.get(`piece-${12 * 60}`);
  assert.equal(await gap.getAttribute('data-scheme'), 'day-night');
  assert.equal(await gap.getAttribute('title'), '12:00 to 24:00: Day by day, Night at night, no window matches');
  assert.match(await visit.get('lane-result').getAttribute('aria-label'), /12:00 to 24:00 Day by day, Night at night$/);
  assert.equal(await visit.get(`piece-${6 * 60}`).getAttribute('data-scheme'), '0');
  await visit.get('follow-schedule').click();
  await visit.get('automatic').click();
  await visit.untilText('follow-says', /Outside of every window, by day the camera takes Day, at night Night\.$/);
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-01T15:00:00', speed: 60 });
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 0.01 } });
  await untilScheme(visit, 1);
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 20000 } });
  await untilScheme(visit, 0);
}, { variant: 'plate' });

story('A window that cannot be stored is explained before it is sent', async (s) => {
  const visit = await s.visit();
  await visit.goTo('schemes');
  await setWindow(visit, 1, '08:00', '12:00');
  await until(
    async () => '12:00' === (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.end,
    'the window is set',
  );
  await visit.get('time-1-from').fill('13:00');
  await visit.get('time-1-from').press('Enter');
  await visit.untilText('window-problem-1', /\w+ \w+/);
  assert.equal((await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.start, '08:00');
  await visit.get('window-undo-1').click();
  await visit.untilGone('window-problem-1');
  assert.equal(await visit.get('time-1-from').inputValue(), '08:00');
});

story('Each scheme has values of its own', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.untilSeen('scheme-unsaved-0');
  await visit.get('scheme-1').click();
  await untilScheme(visit, 1);
  await visit.untilShown(kBrightness, 50);
  await visit.get('scheme-0').click();
  await untilScheme(visit, 0);
  await visit.untilShown(kBrightness, 63);
  assert.equal(await s.camera.value(kBrightness), 63);
});
