import assert from 'node:assert/strict';

import { kBrightness, kEndHour, kEndMinute, kStartHour } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

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
  await visit.untilScheme(0);
  await until(async () => '1198' === (await visit.get('lane-0').getByTestId('now-marker').getAttribute('data-minute')),
    'the marker stands at 19:58');
  await s.camera.request('PUT', '/clock', { speed: 60, simulated: true });
  await visit.untilScheme(1);
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
  await visit.untilScheme(0);
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 0.01 } });
  await s.camera.request('PUT', '/clock', { simulated: true, speed: 60 });
  await visit.untilScheme(1);
  await visit.untilDayNight('night');
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 20000 } });
  await visit.untilScheme(0);
  await visit.untilDayNight('day');
});

story('A scheme that is pressed while the camera switches by itself ends that, and stays', async (s) => {
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-01T12:00:00', speed: 0 });
  const visit = await s.visit();
  await visit.goTo('schemes');
  await visit.get('follow-schedule').click();
  await visit.get('automatic').click();
  await visit.untilText('scheme-mode', /^Switched by the time of day$/);
  assert.equal(await visit.get('automatic').isChecked(), true);
  await visit.untilScheme(0);
  await visit.get('scheme-1').click();
  await visit.untilText('notices', /Automatic switching is off now, so that your choice stays\./);
  await visit.untilScheme(1);
  await visit.untilText('scheme-mode', /^Chosen by hand$/);
  assert.equal(await visit.get('automatic').isChecked(), false);
  await visit.untilText('follow-says', /^Switching is off/);
  // The camera would take it back within a second of its clock; a minute goes by.
  await s.camera.request('PUT', '/clock', { simulated: true, speed: 60 });
  await until(async () => '2026-06-01T12:01:00' < (await s.camera.request('GET', '/clock')).time, 'a minute has gone by');
  const { automatic, current, follow } = await s.camera.request('GET', '/channels/1/schemes');
  assert.deepEqual({ automatic, current, follow }, { automatic: false, current: 1, follow: 'schedule' });
  await visit.untilScheme(1);
});

story('The time line says where no window is, where several are, and which never counts', async (s) => {
  for (const [index, name, start, end] of [
    [0, 'Day', '06:00', '12:00'],
    [1, 'Evening', '10:00', '20:00'],
    [2, 'Inside', '10:30', '11:00'],
    [3, 'Late', '20:00', '22:00'],
  ]) {
    await s.camera.request('PATCH', `/channels/1/schemes/${index}`, { name, window: { start, end } });
  }
  const visit = await s.visit();
  await visit.goTo('schemes');
  await visit.untilSeen('remarks');
  assert.deepEqual(await visit.get('remarks').locator('li').allTextContents(), [
    'No window covers 00:00 to 06:00 and 22:00 to 24:00: Day, the first scheme, is in force there.',
    'Day and Evening overlap from 10:00 to 10:30 and 11:00 to 12:00: Day stands first and is in force.',
    'Day, Evening and Inside overlap from 10:30 to 11:00: Day stands first and is in force.',
    'Inside is never in force by its window: schemes before it cover all of it.',
  ]);
  const pieces = await visit.get('lane-result').locator('[data-scheme]').evaluateAll((list) => list.map((piece) => [piece.title, piece.dataset.scheme]));
  assert.deepEqual(pieces, [
    ['00:00 to 06:00: Day, no window matches', '0'],
    ['06:00 to 10:00: Day', '0'],
    ['10:00 to 10:30: Day, windows overlap', '0'],
    ['10:30 to 11:00: Day, windows overlap', '0'],
    ['11:00 to 12:00: Day, windows overlap', '0'],
    ['12:00 to 20:00: Evening', '1'],
    ['20:00 to 22:00: Late', '3'],
    ['22:00 to 24:00: Day, no window matches', '0'],
  ]);
  // As the camera itself says it.
  const { schemes } = await s.camera.request('GET', '/channels/1/schemes');
  assert.deepEqual(schemes.map((scheme) => scheme.inForce), [
    [{ start: '00:00', end: '12:00' }, { start: '22:00', end: '24:00' }],
    [{ start: '12:00', end: '20:00' }],
    [],
    [{ start: '20:00', end: '22:00' }],
  ]);
});

story('A window across midnight is explained, and nothing of it reaches the camera', async (s) => {
  await s.camera.request('PATCH', '/channels/1/schemes/1', { window: { start: '01:00', end: '06:00' } });
  const visit = await s.visit();
  await visit.goTo('schemes');
  await until(async () => '01:00' === (await visit.get('time-1-from').inputValue()), 'the window is shown');
  const before = await s.camera.request('GET', '/channels/1/schemes');
  const sent = [];
  visit.page.on('request', (request) => 'GET' === request.method() || sent.push(`${request.method()} ${request.url()}`));
  await visit.get('time-1-from').fill('22:00');
  await visit.get('time-1-from').press('Enter');
  await visit.untilText('window-problem-1', /starts at 22:00 and ends at 06:00, so it would never be in force\. A window cannot go past midnight/);
  assert.equal(await visit.get('time-1-from').inputValue(), '22:00');
  await visit.get('window-undo-1').click();
  await visit.untilGone('window-problem-1');
  assert.equal(await visit.get('time-1-from').inputValue(), '01:00');
  assert.deepEqual(sent, []);
  assert.deepEqual(await s.camera.request('GET', '/channels/1/schemes'), before);
});

story('A whole window is dragged by the mouse, and keeps its length', async (s) => {
  await s.camera.request('PATCH', '/channels/1/schemes/1', { window: { start: '10:00', end: '14:30' } });
  const visit = await s.visit();
  await visit.goTo('schemes');
  await until(async () => '14:30' === (await visit.get('time-1-to').inputValue()), 'the window is shown');
  const lane = await visit.get('lane-1').boundingBox();
  const body = await visit.get('window-1-whole').boundingBox();
  const [x, y] = [body.x + body.width / 2, body.y + body.height / 2];
  await visit.page.mouse.move(x, y);
  await visit.page.mouse.down();
  await visit.page.mouse.move(x + (lane.width * 3) / 24, y, { steps: 6 });
  await visit.page.mouse.up();
  const windowNow = async () => (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window;
  await until(async () => '13:00' === (await windowNow()).start, 'the window starts at 13:00');
  assert.deepEqual(await windowNow(), { start: '13:00', end: '17:30' });
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
  const inForce = await visit.page.locator('table.windows tbody tr td:last-child').allTextContents();
  assert.deepEqual(inForce.map((text) => text.trim()), ['06:00–08:00 else by day', '09:00–10:00 else at night', '10:00–11:00', '11:00–12:00']);
  await visit.get('follow-schedule').click();
  await visit.get('automatic').click();
  await visit.untilText('follow-says', /Outside of every window, by day the camera takes Day, at night Night\.$/);
  await s.camera.request('PUT', '/clock', { simulated: true, time: '2026-06-01T15:00:00', speed: 60 });
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 0.01 } });
  await visit.untilScheme(1);
  await s.camera.request('PATCH', '/scene', { light: { kind: 'fixed', lux: 20000 } });
  await visit.untilScheme(0);
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

story('A window is explained at its numbers, too, and is sent once it can be stored', async (s) => {
  await s.camera.request('PATCH', '/channels/1/schemes', { follow: 'schedule' });
  await s.camera.request('PATCH', '/channels/1/schemes/0', { window: { start: '08:00', end: '10:00' } });
  const window = async () => (await s.camera.request('GET', '/channels/1/schemes')).schemes[0].window;
  const isWindow = async (start, end) => {
    const now = await window();
    return start === now.start && end === now.end;
  };
  const visit = await s.visit();
  await visit.goTo('settings', 'scheme');
  const type = async (key, number) => {
    await visit.get(`control-${key}`).fill(String(number));
    await visit.get(`control-${key}`).press('Enter');
  };
  const sent = [];
  visit.page.on('request', (request) => 'PATCH' === request.method() && sent.push(request.url()));
  await visit.untilShown(kStartHour, 8);

  await type(kStartHour, 22);
  await visit.untilText(`refusal-${kStartHour}`, /22:00.*10:00/);
  await type(kEndHour, 6);
  await visit.untilText(`refusal-${kEndHour}`, /22:00.*06:00.*midnight/);
  assert.equal(await visit.text(`refusal-${kStartHour}`), '', 'one explanation at a time');
  assert.equal(await visit.shown(kStartHour), 22, 'what was typed stays');
  assert.equal(await visit.get(`control-${kEndHour}`).getAttribute('aria-invalid'), 'true');
  assert.deepEqual(sent, []);
  assert.deepEqual(await window(), { start: '08:00', end: '10:00' });

  await visit.get(`control-${kEndHour}`).press('Escape');
  await visit.untilShown(kEndHour, 10);
  await visit.untilShown(kStartHour, 8);
  assert.equal(await visit.text(`refusal-${kEndHour}`), '');
  await type(kEndMinute, 30);
  await until(async () => '10:30' === (await window()).end, 'a number that fits is sent at once');

  // From one good window to another one over a pair that does not fit, whichever end comes first.
  await type(kStartHour, 20);
  await visit.untilText(`refusal-${kStartHour}`, /20:00.*10:30/);
  await type(kEndHour, 22);
  await until(() => isWindow('20:00', '22:30'), 'the later window is in force');
  await type(kEndHour, 9);
  await visit.untilText(`refusal-${kEndHour}`, /20:00.*09:30/);
  await type(kStartHour, 7);
  await until(() => isWindow('07:00', '09:30'), 'the earlier window is in force');
  await visit.untilShown(kEndHour, 9);
  await visit.untilGone(`take-back-${kEndHour}`);

  // The default of a number need not fit the other three either.
  await visit.get(`default-${kEndHour}`).click();
  await visit.untilText(`refusal-${kEndHour}`, /24:30/);
  await visit.get(`take-back-${kEndHour}`).click();
  await visit.untilShown(kEndHour, 9);
  assert.deepEqual(await window(), { start: '07:00', end: '09:30' });

  // What is kept back was meant for the scheme that was in force.
  await type(kStartHour, 22);
  await visit.untilSeen(`take-back-${kStartHour}`);
  await s.camera.request('PATCH', '/channels/1/schemes', { current: 1 });
  await visit.untilGone(`take-back-${kStartHour}`);
  await visit.untilShown(kStartHour, 0);
  assert.deepEqual((await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window, { start: '00:00', end: '24:00' });
});

story('Each scheme has values of its own', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.untilSeen('scheme-unsaved-0');
  await visit.get('scheme-1').click();
  await visit.untilScheme(1);
  await visit.untilShown(kBrightness, 50);
  await visit.get('scheme-0').click();
  await visit.untilScheme(0);
  await visit.untilShown(kBrightness, 63);
  assert.equal(await s.camera.value(kBrightness), 63);
});
