import assert from 'node:assert/strict';

import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

story('Who knows the password sees the live picture', async ({ camera, open }) => {
  const visit = await open();
  await visit.untilSeen('login-form');
  assert.equal(await visit.isSeen('picture-panel'), false);
  await visit.signIn('admin', camera.password);
  await visit.untilFrames(3);
  assert.match(await visit.get('picture').getAttribute('aria-label'), /^Live picture of channel 1/);
  const looks = await visit.look();
  assert.ok(looks.mean > 5 && looks.mean < 250, `a picture is neither black nor white: ${JSON.stringify(looks)}`);
  assert.ok(looks.detail > 0.5, `a picture shows something: ${JSON.stringify(looks)}`);
});

story('A wrong password is refused with a reason, and the right one still works', async ({ camera, open }) => {
  const visit = await open();
  await visit.get('login-name').fill('admin');
  await visit.get('login-password').fill('surely wrong');
  await visit.get('login-submit').click();
  await visit.untilText('login-problem', /\w+ \w+/);
  assert.equal(await visit.isSeen('picture-panel'), false);
  await visit.signIn('admin', camera.password);
  await visit.untilSeen('picture-panel');
});

story('Many wrong passwords make a pause, which the page counts down', async ({ open }) => {
  const visit = await open();
  await visit.get('login-name').fill('admin');
  let label = '';
  for (let attempt = 0; attempt < 6 && !/again in \d+ s/.test(label); ++attempt) {
    await visit.get('login-password').fill(`wrong ${attempt} wrong`);
    const answered = visit.page.waitForResponse((response) => 'POST' === response.request().method());
    await visit.get('login-submit').click();
    await answered;
    label = await until(async () => {
      const text = await visit.text('login-submit');
      return !/^Signing in/.test(text) && text;
    }, 'the attempt is answered');
  }
  assert.match(label, /again in \d+ s/);
  assert.match(await visit.text('login-problem'), /wait \d+ second/);
  await until(async () => 'Sign in' === (await visit.text('login-submit')), 'the pause is over');
});

story('Who signs out is asked for the password again, also after a reload', async ({ visit }) => {
  const made = await visit();
  await made.get('account-menu').click();
  assert.match(await made.text('account-name'), /admin/);
  await made.get('logout').click();
  await made.untilSeen('login-form');
  await made.page.reload();
  await made.untilSeen('login-form');
});

story('A reload keeps who is signed in, and the place', async ({ visit }) => {
  const made = await visit();
  await made.goTo('log');
  await made.untilSeen('log-panel');
  await made.page.reload();
  await made.untilLive();
  await made.untilSeen('log-panel');
});
