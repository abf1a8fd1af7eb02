// What the page offers is what the style document and the driver say, at any time.
import assert from 'node:assert/strict';

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
