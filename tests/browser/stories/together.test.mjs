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

story('An account that is removed is shown the door', async (s) => {
  await s.camera.request('PUT', '/accounts/guest', { password: 'only looking', role: 'viewer' });
  const visit = await s.visit({ name: 'guest', password: 'only looking' });
  await s.camera.request('DELETE', '/accounts/guest');
  await visit.page.reload();
  await visit.untilSeen('login-form');
  await until(async () => !(await visit.isSeen('picture-panel')), 'no picture is left');
});
