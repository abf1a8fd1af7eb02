import assert from 'node:assert/strict';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const set = (s, value) => s.camera.request('PUT', `/channels/1/parameters/${kBrightness}`, { value });

story('The log shows what comes, finds words, and holds still when it is asked to', async (s) => {
  const visit = await s.visit();
  await visit.goTo('log');
  await set(s, 61);
  await visit.untilLogged(new RegExp(`set ${kBrightness} 61\\b`));
  await visit.get('log-filter').fill(`"set ${kBrightness} 6"`); // the words alone may stand in a line's time, too
  await until(async () => {
    const rows = await visit.get('log-row').allTextContents();
    return 1 === rows.length && new RegExp(`set ${kBrightness} 61\\b`).test(rows[0]);
  }, 'one line is left');
  await visit.get('log-pause').click();
  await set(s, 62);
  await until(async () => /1/.test(await visit.text('log-pause')) || /1 /.test(await visit.text('log-count')), 'it counts what came');
  assert.equal(await visit.get('log-row').count(), 1);
  await visit.get('log-pause').click();
  await visit.untilLogged(new RegExp(`set ${kBrightness} 62\\b`));
  await visit.get('log-clear').click();
  await until(async () => 0 === (await visit.get('log-row').count()), 'the log is empty');
});

story('Only what failed is shown when that is asked', async (s) => {
  await s.camera.request('POST', '/faults', { text: `cmd=${kBrightness} opt=set result=-5 times=1` });
  const visit = await s.visit();
  await visit.goTo('log');
  await visit.get('log-failed').click();
  await s.camera
    .request('PUT', `/channels/1/parameters/${kBrightness}`, { value: 71 })
    .then(() => assert.fail('the camera should refuse'), (error) => assert.match(error.message, /422/));
  await visit.untilLogged(new RegExp(`set ${kBrightness} 71\\b`));
  const rows = await visit.get('log-row').allTextContents();
  assert.ok(rows.every((row) => /-\d+/.test(row)), rows.join('\n'));
});

story('A thousand lines a second do not stop the page', async (s) => {
  const visit = await s.visit();
  await visit.goTo('log');
  await s.camera.request('PUT', '/clock', { simulated: true, speed: 1440 });
  await visit.untilFrames(5);
  await visit.goTo('settings', 'image');
  await visit.type(kBrightness, 72);
  await until(async () => 72 === (await s.camera.value(kBrightness)), 'the camera has 72');
  await visit.goTo('log');
  await visit.untilSeen('log-lines');
  assert.ok((await visit.get('log-row').count()) < 200, 'only what can be seen is drawn');
});

story('The log has what was before the page came, also when more comes meanwhile', async (s) => {
  const visit = await s.visit();
  await visit.goTo('log');
  let goOn;
  const mayGoOn = new Promise((done) => (goOn = done));
  let isAsked = false;
  await visit.page.route('**/channels/1/metadata', async (route) => {
    isAsked = true;
    await mayGoOn;
    await route.continue();
  });
  await visit.page.reload();
  await until(() => isAsked, 'the page begins');
  await set(s, 61);
  await visit.untilLogged(new RegExp(`set ${kBrightness} 61\\b`));
  goOn();
  await visit.untilLive();
  await visit.get('log-filter').fill(`"set ${kBrightness} "`);
  await visit.untilLogged(new RegExp(`set ${kBrightness} 50\\b[^]*set ${kBrightness} 61\\b`));
});

// The lines that are shown, as a person reads them: without the names that the page adds.
const shownLines = (visit) =>
  visit.get('log-row').evaluateAll((rows) =>
    rows.map((row) => [
      row.querySelector('.log-time').textContent,
      row.querySelector('.log-kind').textContent,
      row.querySelector('.log-text').firstChild.textContent,
    ]));

async function filterBrightness(s, visit) {
  await visit.goTo('log');
  await visit.get('log-filter').fill(`"set ${kBrightness} "`);
  for (const value of [41, 42, 43]) {
    await set(s, value);
    await visit.untilLogged(new RegExp(`set ${kBrightness} ${value}\\b`));
  }
}

story('What is copied is what the filter lets through, line for line', async (s) => {
  const visit = await s.visit();
  await visit.page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await filterBrightness(s, visit);
  await visit.get('log-copy').click();
  await visit.page.getByText('4 lines are in the clipboard.').first().waitFor();
  const copied = await visit.page.evaluate(() => navigator.clipboard.readText());
  const lines = copied.split('\n');
  assert.equal(lines.pop(), '', 'the last line is ended');
  const shown = await shownLines(visit);
  assert.equal(shown.length, 4, 'one from the start, and three');
  assert.deepEqual(
    lines.map((line) => line.split('  ')).map(([time, kind, , text]) => [time, kind, text]),
    shown,
  );
});

story('Where the clipboard is not to be had the page copies in another way, and says so when that fails too', async (s) => {
  const visit = await s.visit();
  await filterBrightness(s, visit);
  await visit.page.evaluate(() => {
    navigator.clipboard.writeText = () => Promise.reject(new DOMException('not allowed', 'NotAllowedError'));
    document.addEventListener('copy', () => (window.copied = document.activeElement.value));
  });
  await visit.get('log-copy').click();
  await visit.page.getByText('4 lines are in the clipboard.').first().waitFor();
  const copied = await visit.page.evaluate(() => window.copied);
  assert.deepEqual(copied.match(/set \d+ \d+/g), [50, 41, 42, 43].map((value) => `set ${kBrightness} ${value}`));
  assert.equal(await visit.focused(), 'log-copy', 'the focus is where it was');

  await visit.page.evaluate(() => (document.execCommand = () => false));
  await visit.get('log-copy').click();
  await visit.page.getByText('does not let this page write to the clipboard').first().waitFor();
});
