import assert from 'node:assert/strict';

import { kBrightness, kContrast } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const kNames = ['Working day', 'Evening'];

story('What is saved is there after a restart: values, windows, names and switching', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.untilShown(kBrightness, 63);
  await visit.goTo('schemes');
  for (const [index, name] of kNames.entries()) {
    await visit.get(`scheme-name-${index}`).fill(name);
    await visit.get(`scheme-name-${index}`).press('Enter');
    await visit.untilText(`scheme-${index}`, new RegExp(`^${name}`));
  }
  await visit.get('time-1-from').fill('18:30');
  await visit.get('time-1-from').press('Enter');
  await until(
    async () => '18:30' === (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.start,
    'the window begins at 18:30',
  );
  await visit.get('automatic').click();
  await until(async () => (await s.camera.request('GET', '/channels/1/schemes')).automatic, 'the camera switches itself');
  await visit.save();
  const before = await s.camera.request('GET', '/channels/1/schemes');

  assert.deepEqual(await s.camera.stop(), { code: 0, signal: null });
  await s.camera.start();

  assert.deepEqual(await s.camera.request('GET', '/channels/1/schemes'), before);
  const again = await s.visit();
  await again.goTo('schemes');
  await again.untilText('scheme-0', new RegExp(`^${kNames[0]}`));
  assert.equal(await again.get('time-1-from').inputValue(), '18:30');
  assert.equal(await again.get('automatic').isChecked(), true);
  assert.equal(await again.unsaved(), 0);
  await again.goTo('settings', 'image');
  await again.untilShown(kBrightness, 63);
});

story('What is not saved is gone after a power cut', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.save();
  await visit.type(kBrightness, 77);
  await visit.untilUnsaved(1);
  await s.camera.kill();
  await s.camera.start();
  assert.equal(await s.camera.value(kBrightness), 63);
});

story('Unsaved changes are named, and discarding brings back what was saved', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 61);
  await visit.save();
  await visit.type(kBrightness, 90);
  await visit.type(kContrast, 20);
  await visit.untilUnsaved(2);
  await visit.get('unsaved-count').click();
  await visit.untilText('unsaved-list', /Brightness.*Contrast/s);
  await visit.get('dialog-close').click();
  await visit.get('discard').click();
  await visit.get('discard-confirm').click();
  await visit.untilUnsaved(0);
  await visit.untilShown(kBrightness, 61);
  await visit.untilShown(kContrast, 50);
  assert.equal(await s.camera.value(kBrightness), 61);
});

story('Changes that are kept are not discarded', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kContrast, 20);
  await visit.untilUnsaved(1);
  await visit.get('discard').click();
  await visit.get('dialog-close').click();
  await visit.untilGone('discard-dialog');
  assert.equal(await visit.unsaved(), 1);
  assert.equal(await s.camera.value(kContrast), 20);
});

story('A factory reset asks for a word, and brings back what the camera came with', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.save();
  await visit.goTo('schemes');
  await visit.get('reset').click();
  await visit.tryToPress('reset-confirm');
  assert.equal(await s.camera.value(kBrightness), 63, 'nothing happens without the word');
  await visit.get('reset-word').fill('factory');
  await visit.get('reset-confirm').click();
  await visit.untilGone('reset-dialog');
  await until(async () => 50 === (await s.camera.value(kBrightness)), 'the camera has the factory value');
  await visit.goTo('settings', 'image');
  await visit.untilShown(kBrightness, 50);
});
