// Every state of the page against the rules of axe-core, in light and dark, wide and on a phone.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';

import { kBrightness, kContrast } from '../support/keys.mjs';
import { Line } from '../support/line.mjs';
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


async function dialogOf(visit, entry) {
  await visit.get('account-menu').click();
  await visit.get(`menu-${entry}`).click();
  await visit.untilSeen(`${entry}-dialog`);
}

const escape = (visit) => visit.press('Escape');

const kEndHour = 8003;

// Where something is asked, or has gone wrong.
const kTroubles = [
  ['the question before a discard', async (visit) => {
    await visit.get('discard').click();
    await visit.untilSeen('discard-dialog');
  }, escape],
  ['the question before the power is cut', async (visit) => {
    await visit.goTo('scene');
    await visit.get('power-cycle').click();
    await visit.untilSeen('power-dialog');
  }, escape],
  ['the accounts', (visit) => dialogOf(visit, 'accounts'), escape],
  ['the tokens, one of them new', async (visit) => {
    await dialogOf(visit, 'tokens');
    await visit.get('token-name').fill('nightly');
    await visit.get('token-submit').click();
    await visit.untilSeen('token-made');
  }, escape],
  ['a password that is not typed twice the same way', async (visit) => {
    await dialogOf(visit, 'password');
    await visit.get('password-new').fill('one word');
    await visit.get('password-submit').click();
    await visit.untilText('password-problem', /./);
  }, escape],
  ['a window that cannot be', async (visit) => {
    await visit.goTo('schemes');
    await visit.get('time-1-to').fill('00:00');
    await visit.get('time-1-to').press('Enter');
    await visit.untilSeen('window-problem-1');
  }, (visit) => visit.get('window-undo-1').click()],
  ['the faults', async (visit, s) => {
    await s.camera.request('POST', '/faults', { text: `cmd=${kContrast} opt=set result=-5` });
    await visit.goTo('scene');
    await visit.untilSeen('fault-list');
  }],
  ['a refusal at its control', async (visit) => {
    await visit.goTo('settings', 'image');
    await visit.type(kContrast, 80);
    await visit.untilText(`refusal-${kContrast}`, /./);
  }],
  ['a line of the log', async (visit) => {
    await visit.goTo('log');
    await visit.untilSeen('log-lines');
    await visit.get('log-lines').press('Enter'); // the topmost line in sight
    await visit.untilSeen('log-detail');
  }],
  ['a scheme that could not be saved', async (visit, s) => {
    await s.camera.request('PUT', `/channels/1/parameters/${kEndHour}`, { value: 0 });
    await visit.untilUnsaved(2);
    await visit.get('save').click();
    await visit.untilSeen('save-failed');
  }, escape],
];

async function judge(visit, state) {
  assert.deepEqual(await violations(visit), [], state);
  const beyond = await visit.page.evaluate(
    () => document.documentElement.scrollWidth - document.documentElement.clientWidth);
  assert.ok(beyond <= 0, `${state}: the page is ${beyond} pixels wider than the window`);
}

async function judgeAll(s, visit, states) {
  await visit.untilFrames(1);
  await s.camera.request('PUT', `/channels/1/parameters/${kBrightness}`, { value: 63 });
  await visit.untilUnsaved(1);
  for (const [state, enter, leave] of states) {
    await enter(visit, s);
    await judge(visit, state);
    await leave?.(visit, s);
  }
}

async function judgeTabs(visit, tabs) {
  for (const { key } of tabs) {
    await visit.goTo('settings', key);
    await judge(visit, `the tab ${key}`);
  }
}

const tabsOf = async (s, channel) => (await s.camera.request('GET', `/channels/${channel}/metadata`)).tabs;

for (const colors of ['light', 'dark']) {
  for (const [where, look] of [['wide', {}], ['on a phone', { size: kPhone }]]) {
    const options = { colors, ...look };
    story(`Everybody can use the page, ${colors} and ${where}`, async (s) => {
      const visit = await s.open(options);
      await visit.untilSeen('login-form');
      await judge(visit, 'the login');
      await visit.signIn('admin', s.camera.password);
      await judgeAll(s, visit, kStates);
    });
    story(`Everybody understands what is asked and what went wrong, ${colors} and ${where}`, async (s) => {
      await judgeAll(s, await s.visit(options), kTroubles);
    });
  }
}

// The tabs are all made of the same controls: each look of the page once is enough.
for (const [name, options] of [['light and wide', {}], ['dark and on a phone', { colors: 'dark', size: kPhone }]]) {
  story(`Everybody can use every tab, ${name}`, async (s) => {
    await judgeTabs(await s.visit(options), await tabsOf(s, 1));
  });

  story(`Everybody can use the thermal channel, ${name}`, async (s) => {
    const visit = await s.visit(options);
    await visit.get('channel-select').selectOption('2');
    await visit.untilFrames(1);
    await judgeTabs(visit, await tabsOf(s, 2));
  }, { variant: 'thermal' });

  story(`A viewer, and who waits for the camera, can read the page, ${name}`, async (s) => {
    await s.camera.request('PUT', '/accounts/guest', { password: 'only looking', role: 'viewer' });
    const line = await Line.to(s.camera);
    const visit = await s.visit({ ...options, url: line.url, name: 'guest', password: 'only looking' });
    await visit.untilFrames(1);
    for (const state of ['of a viewer', 'without a connection']) {
      for (const view of ['settings', 'schemes', 'scene', 'log']) {
        await visit.goTo(view);
        await judge(visit, `${view} ${state}`);
      }
      if ('of a viewer' === state) {
        await line.cut();
        await visit.untilText('connection', /^reconnecting$/);
      }
    }
  });
}
