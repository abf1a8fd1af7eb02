import assert from 'node:assert/strict';

import { kBacklight, kBrightness, kContrast, kDefog, kFocusOnce, kHighlights } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

story('A slider that is dragged moves the picture, and the log shows what the driver was told', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.untilShown(kBrightness, 50);
  await visit.untilFrames(2);
  const before = await visit.look();
  const box = await visit.get(`control-${kBrightness}`).boundingBox();
  await visit.page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
  await visit.page.mouse.down();
  await visit.page.mouse.move(box.x + box.width * 0.9, box.y + box.height / 2, { steps: 10 });
  await visit.page.mouse.up();
  const shown = await visit.shown(kBrightness);
  assert.ok(shown > 75, `the slider stands at ${shown}`);
  await until(async () => (await s.camera.value(kBrightness)) === shown, 'the camera has what the slider shows');
  await visit.untilLooks((now) => now.mean > before.mean + 10, `the picture is brighter than ${before.mean}`);
  await visit.untilSeen(`unsaved-${kBrightness}`);
  await visit.goTo('log');
  await visit.untilLogged(new RegExp(`set ${kBrightness} ${shown}\\b`));
});

story('A number that is typed is taken, and the default comes back by one button', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kContrast, 71);
  await until(async () => 71 === (await s.camera.value(kContrast)), 'the camera has 71');
  await visit.untilShown(kContrast, 71);
  await visit.get(`default-${kContrast}`).click();
  await visit.untilShown(kContrast, 50);
  assert.equal(await s.camera.value(kContrast), 50);
  await visit.untilUnsaved(0);
});

story('A number outside its limits is explained and not sent', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kContrast, 101);
  await until(async () => /100/.test(await visit.text(`param-${kContrast}`)), 'the limit is named');
  assert.equal(await visit.get(`control-${kContrast}-number`).getAttribute('aria-invalid'), 'true');
  assert.equal(await s.camera.value(kContrast), 50);
  await visit.get(`control-${kContrast}-number`).press('Escape');
  assert.equal(await visit.get(`control-${kContrast}-number`).inputValue(), '50');
});

story('What the camera refuses is explained, and the control shows what is in force', async (s) => {
  await s.camera.request('POST', '/faults', { text: `cmd=${kBrightness} opt=set result=-5` });
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 80);
  await visit.untilText(`refusal-${kBrightness}`, /\w+ \w+/);
  await visit.untilShown(kBrightness, 50);
  await visit.untilUnsaved(0);
  await s.camera.request('DELETE', '/faults');
  await visit.type(kBrightness, 80);
  await visit.untilShown(kBrightness, 80);
  await until(async () => "" === (await visit.text(`refusal-${kBrightness}`)), "the explanation is gone");
});

story('A control that another one switches off says why', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'backlight');
  assert.equal(await visit.get(`control-${kBacklight}`).isDisabled(), false);
  await visit.get(`control-${kHighlights}`).click();
  await visit.untilText(`reason-${kBacklight}`, /Highlight compensation/);
  assert.equal(await visit.get(`control-${kBacklight}`).isDisabled(), true);
  await visit.get(`control-${kHighlights}`).click();
  await visit.untilGone(`reason-${kBacklight}`);
  assert.equal(await visit.get(`control-${kBacklight}`).isDisabled(), false);
});

story('A switch and a button do what they say, and the driver hears of it', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'backlight');
  const defog = visit.page.getByRole('switch', { name: 'Defog' });
  assert.equal(await defog.isChecked(), false);
  await defog.click();
  await until(() => defog.isChecked(), 'the switch is on');
  await until(async () => 1 === (await s.camera.value(kDefog)), 'the camera has it on');
  await defog.press('Space');
  await until(async () => 0 === (await s.camera.value(kDefog)), 'the camera has it off');
  await visit.goTo('settings', 'focus');
  await visit.get(`control-${kFocusOnce}`).click();
  await visit.get(`param-${kFocusOnce}`).getByText('Sent').waitFor();
  await visit.untilUnsaved(0);
  await visit.goTo('log');
  await visit.get('log-filter').fill('"ch0 set "');
  await visit.untilLogged(new RegExp(`set ${kDefog} 1\\b[^]*set ${kDefog} 0\\b[^]*set ${kFocusOnce} \\d`));
});
