import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { Line } from '../support/line.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

story('What one page changes moves on the other', async (s) => {
  const first = await s.visit();
  const second = await s.visit();
  for (const visit of [first, second]) {
    await visit.goTo('settings', 'image');
  }
  await first.type(kBrightness, 63);
  await second.untilShown(kBrightness, 63);
  await second.untilUnsaved(1);
  await second.type(kBrightness, 41);
  await first.untilShown(kBrightness, 41);
  await second.get('scheme-1').click();
  await first.untilShown(kBrightness, 50);
  await first.save();
  await second.untilUnsaved(0);
});

// What both pages show of it in the end is what the camera has.
async function untilTheyAgree(visits, id, ask) {
  let seen;
  await until(
    async () => {
      const wanted = String(await ask());
      seen = await Promise.all(visits.map((visit) => visit.get(id).inputValue()));
      seen.push(wanted);
      return seen.every((text) => text === wanted);
    },
    () => `both pages show of ${id} what the camera has, not ${seen.join(', ')}`,
  );
}

story('Two pages that change the same at the same time show the same in the end', async (s) => {
  const visits = [await s.visit(), await s.visit()];
  const clock = (minutes) => [Math.floor(minutes / 60), minutes % 60].map((part) => String(part).padStart(2, '0')).join(':');
  const times = 12;
  for (const visit of visits) {
    await visit.goTo('settings', 'image');
  }
  await Promise.all(
    visits.map(async (visit, which) => {
      for (let time = 0; time < times; ++time) {
        await visit.type(kBrightness, 2 * time + which + 1);
      }
    }),
  );
  await untilTheyAgree(visits, `control-${kBrightness}`, () => s.camera.value(kBrightness));

  for (const visit of visits) {
    await visit.goTo('schemes');
  }
  await Promise.all(
    visits.map(async (visit, which) => {
      for (let time = 0; time < times; ++time) {
        await visit.get('time-1-from').fill(clock(15 * (2 * time + which + 1)));
        await visit.get('time-1-from').press('Enter');
      }
    }),
  );
  await untilTheyAgree(visits, 'time-1-from', async () => (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.start);

  // They go on agreeing: nothing that is late comes after all.
  const before = await Promise.all(visits.map((visit) => visit.get('time-1-from').inputValue()));
  await visits[0].get('scheme-name-3').fill('Last');
  await visits[0].get('scheme-name-3').press('Enter');
  await untilTheyAgree(visits, 'scheme-name-3', () => 'Last');
  assert.deepEqual(await Promise.all(visits.map((visit) => visit.get('time-1-from').inputValue())), before);
});

story('An answer that comes late does not take the place of what has been heard since', async (s) => {
  const [first, second] = [await s.visit(), await s.visit()];
  let release;
  const released = new Promise((done) => (release = done));
  await first.page.route('**/api/v1/channels/1/**', async (route) => {
    const response = await route.fetch();
    if ('PATCH' === route.request().method()) {
      await released;
    }
    await route.fulfill({ response });
  });
  const untilCamera = (what, ask) => until(ask, `the camera has ${what}`);
  const startsAt = async () => (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.start;

  // The first page changes both, and is not answered; the second page changes both again, and the first page hears of it.
  await first.goTo('settings', 'image');
  await first.type(kBrightness, 10);
  await untilCamera('brightness 10', async () => 10 === (await s.camera.value(kBrightness)));
  await first.goTo('schemes');
  await first.get('time-1-from').fill('02:00');
  await first.get('time-1-from').press('Enter');
  await untilCamera('02:00', async () => '02:00' === (await startsAt()));
  await second.goTo('settings', 'image');
  await second.type(kBrightness, 20);
  await second.goTo('schemes');
  await second.get('time-1-from').fill('03:00');
  await second.get('time-1-from').press('Enter');
  await untilCamera('03:00', async () => '03:00' === (await startsAt()));
  await second.get('scheme-name-1').fill('Heard');
  await second.get('scheme-name-1').press('Enter');
  await first.untilText('scheme-1', /Heard/);
  assert.equal(await first.get('time-1-from').inputValue(), '02:00');

  release();
  await until(async () => '02:00' !== (await first.get('time-1-from').inputValue()), 'the answer is in');
  await untilTheyAgree([first, second], 'time-1-from', startsAt);
  await untilTheyAgree([first, second], 'scheme-name-1', () => 'Heard');
  for (const visit of [first, second]) {
    await visit.goTo('settings', 'image');
  }
  await untilTheyAgree([first, second], `control-${kBrightness}`, () => 20);
});

story('How much the library says is the same on both pages', async (s) => {
  const visits = [await s.visit(), await s.visit()];
  for (const visit of visits) {
    await visit.goTo('log');
    await visit.untilSeen('log-panel');
  }
  await visits[0].get('log-level').selectOption('3');
  await untilTheyAgree(visits, 'log-level', () => 3);
  await visits[1].get('log-level').selectOption('6');
  await untilTheyAgree(visits, 'log-level', async () => (await s.camera.request('GET', '/messages/level')).level);
  assert.equal(await visits[0].get('log-level').inputValue(), '6');
});

story('A line that is cut is noticed, and the page goes on when it is mended', async (s) => {
  const line = await Line.to(s.camera);
  const visit = await s.visit({ url: line.url });
  await visit.goTo('settings', 'image');
  await visit.untilFrames(2);
  await line.cut();
  await visit.untilText('connection', /^reconnecting$/);
  await s.camera.request('PUT', `/channels/1/parameters/${kBrightness}`, { value: 27 });
  await line.mend();
  await visit.untilLive();
  await visit.untilShown(kBrightness, 27);
  await visit.untilFrames(2);
  await line.cut();
});

story('A camera that starts anew asks who is there, and leads back to the place', async (s) => {
  const visit = await s.visit();
  await visit.goTo('log');
  await visit.untilSeen('log-panel');
  await s.camera.kill();
  await visit.untilText('connection', /^reconnecting$/);
  await s.camera.start();
  await visit.untilSeen('login-form');
  await visit.untilSeen('login-note');
  await visit.signIn('admin', s.camera.password);
  await visit.untilSeen('log-panel');
  await visit.untilFrames(2);
});

story('A viewer sees everything and changes nothing', async (s) => {
  await s.camera.request('PUT', '/accounts/guest', { password: 'only looking', role: 'viewer' });
  const visit = await s.visit({ name: 'guest', password: 'only looking' });
  await visit.untilFrames(2);
  await visit.goTo('settings', 'image');
  await visit.untilText('read-only-note', /viewer/i);
  assert.equal(await visit.get(`control-${kBrightness}`).isDisabled(), true);
  assert.equal(await visit.get(`control-${kBrightness}-number`).isDisabled(), true);
  await visit.tryToPress('scheme-1');
  await visit.goTo('schemes');
  assert.equal(await visit.get('automatic').isDisabled(), true);
  await visit.tryToPress('reset');
  assert.equal(await visit.isSeen('reset-dialog'), false);

  // The page is not what holds a viewer back.
  const answer = await visit.page.evaluate(async (key) => {
    const { csrf } = await (await fetch('/api/v1/session')).json();
    const { status } = await fetch(`/api/v1/channels/1/parameters/${key}`, {
      method: 'PUT',
      headers: { 'Content-Type': 'application/json', 'X-CSRF-Token': csrf },
      body: '{"value":99}',
    });
    return status;
  }, kBrightness);
  assert.equal(answer, 403);
  const { current, schemes } = await s.camera.request('GET', '/channels/1/schemes');
  assert.equal(current, 0);
  assert.deepEqual(schemes[0].unsaved, []);
  await s.camera.request('PUT', `/channels/1/parameters/${kBrightness}`, { value: 63 });
  await visit.goTo('settings', 'image');
  await visit.untilShown(kBrightness, 63);
});
