import assert from 'node:assert/strict';
import { mkdirSync, rmSync } from 'node:fs';
import { join } from 'node:path';

import { kBrightness, kContrast, kEndHour, kStartHour } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const kNames = ['Working day', 'Evening'];

const storedFile = (s, scheme) => join(s.camera.root, `mnt/mtd/code/config_file/sensor${scheme}.cfg`);

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
  // The revision begins anew with the process.
  const kept = async () => ({ ...(await s.camera.request('GET', '/channels/1/schemes')), revision: undefined });
  const before = await kept();

  assert.deepEqual(await s.camera.stop(), { code: 0, signal: null });
  await s.camera.start();

  assert.deepEqual(await kept(), before);
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

story('A window that keeps a scheme from being saved is named, and the way to it is short', async (s) => {
  await s.camera.request('PUT', `/channels/1/parameters/${kStartHour}`, { value: 22 });
  await s.camera.request('PUT', `/channels/1/parameters/${kEndHour}`, { value: 6 });
  await s.camera.request('PATCH', '/channels/1/schemes/1', { window: { start: '06:00', end: '22:00' } });
  const visit = await s.visit();
  await visit.untilUnsaved(4);
  await visit.get('save').click();
  await visit.untilText('save-failed-list', /^Scheme 1: .*must start before it ends/);
  await visit.untilText('save-failed', /Not everything could be saved.*Mend the window/s);
  await visit.untilUnsaved(2); // the other scheme was saved
  await visit.get('save-failed-go').click();
  await visit.untilText('window-problem-0', /22:00.*06:00/);
});

story('A file that cannot be written is told as that, not as a matter of windows', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.untilUnsaved(1);
  rmSync(storedFile(s, 0));
  mkdirSync(storedFile(s, 0)); // nobody can replace a folder by a file, not even root
  await visit.get('save').click();
  await visit.untilText('save-failed-list', /^Scheme 1: the file could not be written/);
  assert.doesNotMatch(await visit.text('save-failed'), /window/);
  assert.equal(await visit.isSeen('save-failed-go'), false);
  await visit.get('save-failed-close').click();
  rmSync(storedFile(s, 0), { recursive: true });
  await visit.save();
  assert.equal(await s.camera.value(kBrightness), 63);
});

story('What cannot be discarded is named, and nobody is told that nothing had changed', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 63);
  await visit.untilUnsaved(1);
  rmSync(storedFile(s, 0));
  await visit.get('discard').click();
  await visit.get('discard-confirm').click();
  await visit.untilText('save-failed', /Not everything could be discarded/);
  await visit.untilText('save-failed-list', /^Scheme 1: its file does not hold all of its values/);
  assert.doesNotMatch(await visit.page.locator('body').textContent(), /As it was saved|nothing to discard/);
  await visit.get('save-failed-close').click();
  await visit.untilShown(kBrightness, 63);
  assert.equal(await s.camera.value(kBrightness), 63);
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
