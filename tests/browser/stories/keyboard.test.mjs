import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

story('Somebody without a mouse signs in, moves a slider, saves and signs out', async (s) => {
  const visit = await s.open();
  await visit.untilSeen('login-form');
  await until(async () => 'login-name' === (await visit.focused()), 'the name has the focus');
  await visit.page.keyboard.type('admin');
  await visit.press('Tab');
  await visit.page.keyboard.type(s.camera.password);
  await visit.press('Enter');
  await visit.untilLive();
  await visit.tabTo('view-settings');
  await visit.press('ArrowRight', 'ArrowLeft');
  assert.equal(await visit.focused(), 'view-settings');
  await visit.tabTo('tab-scheme');
  await visit.press('ArrowRight', 'Enter');
  await visit.tabTo(`control-${kBrightness}`);
  await visit.press('ArrowRight', 'ArrowRight', 'ArrowRight');
  await visit.untilShown(kBrightness, 53);
  await until(async () => 53 === (await s.camera.value(kBrightness)), 'the camera has 53');
  await visit.untilUnsaved(1);
  await visit.tabTo('save', 200);
  await visit.press('Enter');
  await visit.untilUnsaved(0);
  await visit.tabTo('account-menu', 200);
  await visit.press('Enter');
  await visit.tabTo('logout');
  await visit.press('Enter');
  await visit.untilSeen('login-form');
});

story('A dialog keeps the focus, and Escape gives it back', async (s) => {
  const visit = await s.visit();
  await visit.goTo('schemes');
  await visit.get('reset').focus();
  await visit.press('Enter');
  await visit.untilSeen('reset-dialog');
  for (let count = 0; count < 12; ++count) {
    await visit.press('Tab');
    const isInside = await visit.page.evaluate(() => {
      const dialog = document.querySelector('[data-testid="reset-dialog"]');
      return document.activeElement === document.body || dialog.contains(document.activeElement);
    });
    assert.ok(isInside, `after ${count + 1} times Tab the focus is on ${await visit.focused()}`);
  }
  await visit.press('Escape');
  await visit.untilGone('reset-dialog');
  await until(async () => 'reset' === (await visit.focused()), 'the focus is back on the button');
});

story('A window is moved by the arrow keys', async (s) => {
  const visit = await s.visit();
  await visit.goTo('schemes');
  await visit.get('window-1-from').focus();
  await visit.press('Home', 'ArrowRight', 'ArrowRight', 'Shift+ArrowRight');
  await until(
    async () => '00:31' === (await s.camera.request('GET', '/channels/1/schemes')).schemes[1].window.start,
    'the window begins at 00:31',
  );
});

story('The picture is magnified and moved by the keyboard', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(1);
  await visit.get('picture-frame').focus();
  await visit.press('+', '+');
  await visit.untilText('picture-scale', /×/);
  await visit.press('ArrowRight', '0');
  await visit.untilGone('picture-scale');
});

story('What has the focus can be seen', async (s) => {
  const visit = await s.visit();
  await visit.goTo('settings', 'image');
  const unseen = [];
  for (let count = 0; count < 40; ++count) {
    await visit.press('Tab');
    const lacks = await visit.page.evaluate(() => {
      const element = document.activeElement;
      if (null === element || element === document.body) {
        return '';
      }
      // The mark may be on a label that stands for the element.
      const marked = [element, element.parentElement, element.nextElementSibling].some((each) => {
        const style = each instanceof Element ? getComputedStyle(each) : undefined;
        return undefined !== style && (('none' !== style.outlineStyle && '0px' !== style.outlineWidth) || 'none' !== style.boxShadow);
      });
      return marked ? '' : (element.getAttribute('data-testid') ?? element.outerHTML.slice(0, 100));
    });
    if ('' !== lacks) {
      unseen.push(lacks);
    }
  }
  assert.deepEqual(unseen, []);
});
