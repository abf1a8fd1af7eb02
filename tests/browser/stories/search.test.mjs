import assert from 'node:assert/strict';

import { kBrightness, kContrast, kMeteringArea } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

story('A search finds by label, name and number, and leads to the control', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'exposure');
  await visit.get('search').fill('bright');
  await visit.get(`hit-${kBrightness}`).click();
  await visit.untilSeen(`control-${kBrightness}`);
  assert.equal(await visit.get('tab-image').getAttribute('aria-selected'), 'true');
  let focused;
  await until(
    async () => (focused = await visit.focused())?.startsWith(`control-${kBrightness}`),
    () => `control ${kBrightness} has the focus, not ${focused}`,
  );
  for (const words of ['KEY_CONTRAST', String(kContrast), 'contrast']) {
    await visit.goTo('settings', 'exposure');
    await visit.get('search').fill(words);
    await visit.untilSeen(`hit-${kContrast}`);
    await visit.get('search').press('Enter');
    await visit.untilSeen(`control-${kContrast}`);
  }
});

story('A search for nothing says so', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings');
  await visit.get('search').fill('no such thing anywhere');
  await visit.page.getByText('Nothing is called like that.').waitFor();
  await visit.get('search').press('Escape');
  assert.equal(await visit.get('search').inputValue(), '');
});

story('A search finds a parameter by what can be chosen', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  await visit.get('search').fill('upper half');
  await visit.untilText(`hit-${kMeteringArea}`, /Metering area.*choice Upper half/);
  await visit.get('search').press('Enter');
  await visit.untilSeen(`control-${kMeteringArea}`);
  assert.equal(await visit.get('tab-exposure').getAttribute('aria-selected'), 'true');
});
