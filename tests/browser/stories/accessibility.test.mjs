// Every state of the page against the rules of axe-core, in light and dark, wide and on a phone.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { kPhone } from '../support/visit.mjs';

const kAxe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');

async function violations(visit) {
  if (await visit.page.evaluate(() => undefined === window.axe)) {
    await visit.page.evaluate(kAxe);
  }
  const found = await visit.page.evaluate(() =>
    window.axe.run(document, { runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice'] }));
  assert.ok(found.passes.length > 0);
  return found.violations.map(({ id, help, nodes }) => ({ id, help, nodes: nodes.map(({ html }) => html.slice(0, 200)) }));
}

const kStates = [
  ['settings of the picture', (visit) => visit.goTo('settings', 'image')],
  ['settings of the exposure', (visit) => visit.goTo('settings', 'exposure')],
  ['settings of the light', (visit) => visit.goTo('settings', 'light')],
  ['a search', (visit) => visit.get('search').fill('bright')],
  ['schemes', (visit) => visit.goTo('schemes')],
  ['the question before a reset', (visit) => visit.get('reset').click(), (visit) => visit.press('Escape')],
  ['scene', (visit) => visit.goTo('scene')],
  ['log', (visit) => visit.goTo('log')],
  ['the histogram', (visit) => visit.get('picture-histogram-toggle').click()],
  ['a comparison', (visit) => visit.get('picture-compare').click()],
  ['unsaved changes', (visit) => visit.get('unsaved-count').click(), (visit) => visit.get('dialog-close').click()],
  ['the account menu', (visit) => visit.get('account-menu').click(), (visit) => visit.press('Escape')],
];

for (const colors of ['light', 'dark']) {
  for (const [where, size] of [['wide', undefined], ['on a phone', kPhone]]) {
    story(`Everybody can use the page, ${colors} and ${where}`, async (s) => {
      const visit = await s.open({ colors, ...(undefined === size ? {} : { size }) });
      await visit.untilSeen('login-form');
      assert.deepEqual(await violations(visit), [], 'the login');
      await visit.signIn('admin', s.camera.password);
      await visit.untilFrames(1);
      await s.camera.request('PUT', `/channels/1/parameters/${kBrightness}`, { value: 63 });
      await visit.untilUnsaved(1);
      for (const [state, enter, leave] of kStates) {
        await enter(visit);
        assert.deepEqual(await violations(visit), [], state);
        const beyond = await visit.page.evaluate(
          () => document.documentElement.scrollWidth - document.documentElement.clientWidth);
        assert.ok(beyond <= 0, `${state}: the page is ${beyond} pixels wider than the window`);
        await leave?.(visit);
      }
    });
  }
}
