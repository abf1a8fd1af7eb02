// A story: a person in front of the page, with a camera of the story's own and a browser that has never seen it.
//
//     story('A slider moves the picture', async ({ camera, visit }) => {
//       const page = await visit();
//       ...
//     });
//
// When it fails, a picture of every page, what the page said and what the camera wrote lie in build/browser.
import assert from 'node:assert/strict';
import { mkdirSync, rmSync, writeFileSync } from 'node:fs';
import { basename, dirname, join, resolve } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';

import { chromium } from 'playwright-core';

import { Camera } from './camera.mjs';
import { Visit } from './visit.mjs';

const kOutput = process.env.BROWSER_OUTPUT
  ?? resolve(dirname(fileURLToPath(import.meta.url)), '../../../build/browser');
const kBrowser = process.env.BROWSER_PROGRAM ?? '/usr/bin/chromium';
const kStoryTime = 180_000;
const kArguments = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-sync',
  '--disable-background-networking', '--disable-component-update'];

let stories = 0;
let browser; // of all stories in a file; each page has a profile of its own, which is empty at first

after(async () => {
  await (await browser)?.close();
});

// variant: of rootfs/variants. start: false for a story that starts the camera itself. address: where the camera listens.
export function story(name, tell, { variant, start = true, address } = {}) {
  stories += 1;
  const label = `${basename(process.argv[1], '.test.mjs')}-${stories}`;
  test(name, { timeout: kStoryTime }, async () => {
    const folder = join(kOutput, label);
    rmSync(folder, { recursive: true, force: true });
    mkdirSync(folder, { recursive: true });
    const camera = new Camera(folder, variant, address);
    const visits = [];
    let hasFailed = true;
    try {
      if (start) {
        await camera.start();
      }
      browser ??= chromium.launch({ executablePath: kBrowser, headless: true, args: kArguments });
      const open = async (options = {}) => {
        const made = await Visit.open(await browser, options.url ?? camera.url, options);
        visits.push(made);
        return made;
      };
      // A page on which somebody is signed in already: admin, unless the options name somebody else.
      const visit = async ({ name: who = 'admin', password = camera.password, ...options } = {}) => {
        const made = await open(options);
        await made.signIn(who, password);
        return made;
      };
      await tell({ camera, open, visit, folder });
      for (const made of visits) {
        assert.deepEqual(made.mistakes, [], 'the page makes no mistakes of its own');
      }
      hasFailed = false;
    } finally {
      if (hasFailed) {
        await keepEvidence(folder, camera, visits);
      }
      for (const made of visits) {
        await made.close();
      }
      await camera.kill();
      rmSync(hasFailed ? camera.root : folder, { recursive: true, force: true });
    }
  });
}

async function keepEvidence(folder, camera, visits) {
  writeFileSync(join(folder, 'camerad.txt'), camera.report());
  for (const [index, made] of visits.entries()) {
    writeFileSync(join(folder, `page-${index + 1}.txt`), [...made.said, ''].join('\n'));
    // A page that hangs must not take the evidence of the others with it.
    await made.page.screenshot({ path: join(folder, `page-${index + 1}.png`), timeout: 5000 }).catch(() => undefined);
  }
}
