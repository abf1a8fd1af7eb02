// Who gets in, as an admin arranges it on the page.
import assert from 'node:assert/strict';

import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const kName = 'guest';
const kPassword = 'only looking';

async function menu(visit, entry) {
  await visit.get('account-menu').click();
  await visit.get(`menu-${entry}`).click();
  await visit.untilSeen(`${entry}-dialog`);
}

story('An admin makes a viewer, and the page of one who is removed asks who is there by itself', async (s) => {
  const admin = await s.visit();
  await menu(admin, 'accounts');
  await admin.get('new-account-name').fill(kName);
  await admin.get('account-password').fill('short');
  await admin.get('new-account-submit').click();
  await admin.untilText('accounts-problem', /\w+ \w+/);
  await admin.get('account-password').fill(kPassword);
  await admin.get('new-account-submit').click();
  await admin.untilSeen(`account-role-${kName}`);
  assert.equal(await admin.get(`account-role-${kName}`).inputValue(), 'viewer');

  const viewer = await s.visit({ name: kName, password: kPassword });
  await viewer.untilFrames(1);
  await viewer.untilSeen('read-only-note');
  await admin.tryToPress('account-delete-admin');
  await admin.get(`account-delete-${kName}`).click();
  assert.match(await admin.text(`account-delete-${kName}`), /really/i);
  await admin.get(`account-delete-${kName}`).click();
  await admin.untilGone(`account-role-${kName}`);
  assert.deepEqual((await s.camera.request('GET', '/accounts')).accounts.map(({ name }) => name), ['admin']);
  await viewer.untilSeen('login-form');
  assert.match(await viewer.text('login-note'), /session has ended/);
  await until(async () => !(await viewer.isSeen('picture-panel')), 'no picture is left');
});

story('A token is shown once, and a program works with it until it is removed', async (s) => {
  const visit = await s.visit();
  await menu(visit, 'tokens');
  await visit.get('token-name').fill('nightly');
  await visit.get('token-submit').click();
  await visit.untilSeen('token-made');
  const token = await visit.get('token-made').inputValue();
  const ask = (method, path, body) => fetch(`${s.camera.url}api/v1${path}`, {
    method,
    headers: { Authorization: `Bearer ${token}`, 'Content-Type': 'application/json' },
    body,
  });
  assert.equal((await ask('GET', '/channels')).status, 200);
  assert.equal((await ask('PATCH', '/scene', '{"fog":1}')).status, 403, 'it is one of a viewer');
  await visit.press('Escape');
  await visit.untilGone('tokens-dialog');
  await menu(visit, 'tokens');
  await visit.untilText('tokens', /nightly.*viewer/);
  assert.equal(await visit.isSeen('token-made'), false);
  await visit.page.getByRole('button', { name: 'Remove the token nightly' }).click();
  await until(async () => '' === (await visit.text('tokens')), 'the token is gone');
  assert.equal((await ask('GET', '/channels')).status, 401);
});

story('Who changes the own password signs in with the new one', async (s) => {
  await s.camera.request('PUT', `/accounts/${kName}`, { password: kPassword, role: 'viewer' });
  const visit = await s.visit({ name: kName, password: kPassword });
  const change = async (old, fresh, again) => {
    await visit.get('password-old').fill(old);
    await visit.get('password-new').fill(fresh);
    await visit.get('password-again').fill(again);
    await visit.get('password-submit').click();
  };
  await menu(visit, 'password');
  await change(kPassword, 'looks around', 'looks abound');
  await visit.untilText('password-problem', /not typed the same way twice/);
  await change('mistaken', 'looks around', 'looks around');
  await visit.untilText('password-problem', /^(?!.*twice)\w+ \w+/);
  await change(kPassword, 'looks around', 'looks around');
  await visit.untilGone('password-dialog');
  await visit.untilLive();
  await visit.get('account-menu').click();
  await visit.get('logout').click();
  await visit.untilSeen('login-form');
  await visit.get('login-name').fill(kName);
  await visit.get('login-password').fill(kPassword);
  await visit.get('login-submit').click();
  await visit.untilText('login-problem', /\w+ \w+/);
  await until(async () => 'Sign in' === (await visit.text('login-submit')), 'no pause is left');
  await visit.signIn(kName, 'looks around');
});
