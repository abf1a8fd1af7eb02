import assert from 'node:assert/strict';
import { X509Certificate } from 'node:crypto';
import { readFileSync } from 'node:fs';
import { get } from 'node:https';
import { join } from 'node:path';

import { kBrightness } from '../support/keys.mjs';
import { story } from '../support/story.mjs';

// Asks as a script does that trusts this certificate and no other.
function ask(s, path, ca) {
  const headers = { Authorization: `Basic ${Buffer.from(`admin:${s.camera.password}`).toString('base64')}` };
  return new Promise((done, failed) => {
    get(new URL(path, s.camera.url), { ca, headers, agent: false }, (answer) => {
      let text = '';
      answer.on('data', (data) => (text += data));
      answer.on('end', () => done(JSON.parse(text)));
    }).on('error', failed);
  });
}

story(
  'From another machine the page comes encrypted, and works as it does here',
  async (s) => {
    const certificate = readFileSync(join(s.camera.root, 'mnt/mtd/camerad/certificate.pem'));
    // What a person compares with the browser's warning.
    assert.ok(s.camera.output.includes(new X509Certificate(certificate).fingerprint256), s.camera.report());

    const visit = await s.visit();
    await visit.untilFrames(3);
    const cookies = await visit.page.context().cookies();
    assert.deepEqual(
      cookies.map(({ httpOnly, secure, sameSite }) => ({ httpOnly, secure, sameSite })),
      [{ httpOnly: true, secure: true, sameSite: 'Strict' }],
    );
    await visit.goTo('settings', 'image');
    await visit.type(kBrightness, 71);
    await visit.untilUnsaved(1);
    await visit.save();
    assert.equal((await ask(s, `/api/v1/channels/1/parameters/${kBrightness}`, certificate)).value, 71);

    await s.camera.stop();
    await s.camera.start();
    // The same certificate as before, so nobody is warned again.
    assert.deepEqual(readFileSync(join(s.camera.root, 'mnt/mtd/camerad/certificate.pem')), certificate);
    assert.equal((await ask(s, `/api/v1/channels/1/parameters/${kBrightness}`, certificate)).value, 71);
    await assert.rejects(ask(s, '/healthz', undefined), /self.signed/);
  },
  { address: '0.0.0.0' },
);
