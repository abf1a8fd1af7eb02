// What the page offers is what the style document and the driver say, at any time.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

import { kLongestExposure, kWideRange } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

// What the camera says of a parameter now.
async function itemOf(s, key) {
  const { tabs } = await s.camera.request('GET', '/channels/1/metadata');
  return tabs.flatMap((tab) => tab.groups).flatMap((group) => group.parameters).find((item) => key === item.key);
}

story('When the driver changes its ranges, the choices change under the eyes of the person', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'exposure');
  const list = visit.get(`control-${kLongestExposure}`);
  const offered = () => list.locator('option:not(:disabled)').allTextContents();
  const before = (await itemOf(s, kLongestExposure)).choices.map(({ label }) => label);
  await until(async () => before.length === (await offered()).length, `${before.length} choices are offered`);
  assert.deepEqual(await offered(), before);
  await list.evaluate((element) => (element.isTheSame = true));

  await s.camera.request('PUT', `/channels/1/parameters/${kWideRange}`, { value: 1 });
  const now = await itemOf(s, kLongestExposure);
  assert.ok(now.choices.length < before.length, `${now.choices.length} choices are fewer than ${before.length}`);
  await until(async () => now.choices.length === (await offered()).length, `${now.choices.length} choices are offered`);
  assert.deepEqual(await offered(), now.choices.map(({ label }) => label));
  const standard = now.choices.find(({ value }) => now.default === value).label;
  const title = await visit.get(`param-${kLongestExposure}`).locator('label').getAttribute('title');
  assert.ok(title.endsWith(`default ${standard}`), `${title} names the default ${standard}`);
  assert.ok(await list.evaluate((element) => element.isTheSame), 'the control is the one that was there');
});

// Parameters that the driver knows and no document of this camera has. Nothing on the page has ever heard of them.
const kSlider = 190;
const kDial = 191;
const kSwitch = 2512;
const kTab = `
  <tab key="workshop" label="Workshop">
    <group label="Bench">
      <param id="${kSlider}" name="KEY_LANTERN" label="Lantern" type="slider" value="12" min="0" max="60" step="2" unit="cd"/>
      <param id="${kSwitch}" name="KEY_CURTAIN" label="Curtain" type="switch" value="0"/>
      <param id="${kDial}" name="KEY_CRANK" label="Crank" type="dial" value="7" min="5" max="9" step="1" unit="turns"/>
    </group>
  </tab>
</style>`;

function addTab(camera) {
  const path = join(camera.root, 'hd1/moduleConfig/sensorConfig/style/Style.xml');
  const text = readFileSync(path, 'utf8');
  assert.ok(text.includes('</style>'));
  writeFileSync(path, text.replace('</style>', kTab));
}

story('What is added to the style document is there, and works', async (s) => {
  addTab(s.camera);
  await s.camera.start();
  const visit = await s.visit();
  await visit.goTo('settings', 'workshop');
  await visit.page.getByRole('group', { name: 'Bench' }).waitFor();
  const slider = visit.page.getByRole('slider', { name: 'Lantern' });
  assert.deepEqual(
    [await slider.inputValue(), ...await Promise.all(['min', 'max', 'step'].map((name) => slider.getAttribute(name)))],
    ['12', '0', '60', '2'],
  );
  assert.match(await visit.text(`param-${kSlider}`), /cd$/);
  await slider.focus();
  await visit.press('ArrowRight', 'ArrowRight');
  await until(async () => 16 === (await s.camera.value(kSlider)), 'the camera has two steps more');
  await visit.page.getByRole('switch', { name: 'Curtain' }).click();
  await until(async () => 1 === (await s.camera.value(kSwitch)), 'the camera has it switched on');

  // Of a type that the page does not know, there is a number with its limits.
  const crank = visit.page.getByRole('textbox', { name: 'Crank' });
  assert.equal(await crank.inputValue(), '7');
  await crank.fill('10');
  await crank.press('Enter');
  await until(async () => /9/.test(await visit.text(`param-${kDial}`)), 'the limit is named');
  await crank.fill('9');
  await crank.press('Enter');
  await until(async () => 9 === (await s.camera.value(kDial)), 'the camera has what was typed');
  await visit.untilUnsaved(3);

  await visit.goTo('settings', 'image');
  for (const [words, key] of [['lantern', kSlider], ['bench curtain', kSwitch], [String(kDial), kDial]]) {
    await visit.get('search').fill(words);
    await visit.untilSeen(`hit-${key}`);
  }
  await visit.get('search').press('Enter');
  await until(async () => 'true' === (await visit.get('tab-workshop').getAttribute('aria-selected')), 'the tab is open');
  await visit.goTo('log');
  // Two of them are the video module's.
  for (const line of [`video ch1 ${kSlider} 16`, `set ${kSwitch} 1`, `video ch1 ${kDial} 9`]) {
    await visit.untilLogged(new RegExp(`${line}\\b`));
  }
}, { start: false });
