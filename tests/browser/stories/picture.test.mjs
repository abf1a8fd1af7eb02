// What the settings, the light and the weather do to the picture, by its pixels.
import assert from 'node:assert/strict';

import { kBrightness, kMirror, kSaturation } from '../support/keys.mjs';
import { story } from '../support/story.mjs';
import { until } from '../support/until.mjs';

const colourOf = ({ red, green, blue }) => Math.max(red, green, blue) - Math.min(red, green, blue);

async function set(s, key, value) {
  await s.camera.request('PUT', `/channels/1/parameters/${key}`, { value });
}

story('Brightness and saturation change what is seen', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(2);
  const first = await visit.look();
  await set(s, kBrightness, 90);
  await visit.untilLooks((now) => now.mean > first.mean + 10, `brighter than ${first.mean}`);
  await set(s, kBrightness, 10);
  await visit.untilLooks((now) => now.mean < first.mean - 10, `darker than ${first.mean}`);
  await set(s, kBrightness, 50);
  await set(s, kSaturation, 0);
  await visit.untilLooks((now) => colourOf(now) < 3, 'without colour');
});

story('A mirror exchanges left and right', async (s) => {
  // Without wind and the car every frame shows the same.
  await s.camera.request('PATCH', '/scene', { wind: 0, car: false });
  const visit = await s.visit();
  await visit.untilFrames(2);
  const strips = () =>
    visit.get('picture').evaluate((canvas) => {
      const { data, width, height } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
      const sums = new Array(16).fill(0);
      for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x) {
          sums[Math.floor((x * sums.length) / width)] += data[4 * (y * width + x)];
        }
      }
      return sums.map((sum) => (sum * sums.length) / (width * height));
    });
  const apart = (one, other) => one.reduce((sum, level, at) => sum + Math.abs(level - other[at]), 0);
  const before = await strips();
  const wanted = [...before].reverse();
  const sides = apart(before, wanted);
  assert.ok(sides > 32, `the scene is not the same on both sides: ${before}`);
  await set(s, kMirror, 1);
  let seen;
  await until(async () => {
    seen = await strips();
    return apart(seen, wanted) < sides / 4;
  }, () => `the strips ${before} are exchanged, not ${seen}`);
});

story('Fog takes the detail away', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(2);
  const first = await visit.look();
  await visit.goTo('scene');
  await visit.get('scene-fog').focus();
  await visit.press('End');
  await until(async () => (await s.camera.request('GET', '/scene')).fog > 90, 'there is fog');
  await visit.untilLooks((now) => now.detail < first.detail * 0.8, `less detail than ${first.detail}`);
});

story('By night the picture has no colours, and the badge says so', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(2);
  assert.equal(await visit.get('day-night-badge').getAttribute('data-state'), 'day');
  await visit.get('day-night-badge').click();
  await visit.untilDayNight('night');
  assert.deepEqual(await s.camera.request('GET', '/channels/1/day-night'), { state: 'night' });
  await visit.untilLooks((now) => colourOf(now) < 3, 'without colour');
  assert.match(await visit.get('picture').getAttribute('aria-label'), /night/);
});

story('A frozen picture stays, and goes on when it is let go', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(2);
  await visit.get('picture-freeze').click();
  await visit.untilSeen('picture-frozen');
  const frozen = await visit.look();
  await set(s, kBrightness, 95);
  await until(
    async () => 0 === Number(/^camerad_picture_viewers(?:{[^}]*})? (\d+)/m.exec(await metrics(s))?.[1]),
    'nobody looks any more',
  );
  assert.deepEqual(await visit.look(), frozen);
  await visit.get('picture-freeze').click();
  await visit.untilLooks((now) => now.mean > frozen.mean + 10, 'the live picture is brighter');
});

async function metrics(s) {
  const answer = await fetch(`${s.camera.url}metrics`, {
    headers: { Authorization: `Basic ${Buffer.from(`admin:${s.camera.password}`).toString('base64')}` },
  });
  assert.equal(answer.status, 200);
  return answer.text();
}

story('The histogram and the comparison say in words what they show', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(2);
  await visit.get('picture-histogram-toggle').click();
  await visit.untilText('picture-histogram-text', /Mean level \d+ of 255/);
  const level = Number(/Mean level (\d+)/.exec(await visit.text('picture-histogram-text'))[1]);
  await visit.get('picture-compare').click();
  await set(s, kBrightness, 90);
  await until(
    async () => Number(/Mean level (\d+)/.exec(await visit.text('picture-histogram-text'))[1]) > level + 10,
    'the mean level rises',
  );
  await visit.untilText('picture-compare-text', /\d/);
});

// Mean levels of the left and the right part of the picture as a person sees it, without what lies over its edges.
async function halvesSeen(visit) {
  const png = await visit.get('picture-frame').screenshot();
  const aside = await visit.page.context().newPage(); // the page itself may not read such an address
  const halves = await aside.evaluate(async (text) => {
    const image = await createImageBitmap(await (await fetch(`data:image/png;base64,${text}`)).blob());
    const canvas = new OffscreenCanvas(image.width, image.height).getContext('2d');
    canvas.drawImage(image, 0, 0);
    return [0.1, 0.6].map((from) => {
      const [x, y, width, height] = [from * image.width, 0.4 * image.height, 0.3 * image.width, 0.4 * image.height];
      const { data } = canvas.getImageData(Math.round(x), Math.round(y), Math.round(width), Math.round(height));
      return data.reduce((sum, level, at) => sum + (3 === at % 4 ? 0 : level), 0) / (data.length * 0.75);
    });
  }, png.toString('base64'));
  await aside.close();
  return halves;
}

// The mean luminance of a canvas.
async function levelOf(canvas) {
  return canvas.evaluate((element) => {
    const { data } = element.getContext('2d').getImageData(0, 0, element.width, element.height);
    let sum = 0;
    for (let at = 0; at < data.length; at += 4) {
      sum += 0.299 * data[at] + 0.587 * data[at + 1] + 0.114 * data[at + 2];
    }
    return sum / (data.length / 4);
  });
}

story('A comparison shows before on the left, now on the right, and how far they are apart', async (s) => {
  await s.camera.request('PATCH', '/scene', { car: false, wind: 0 });
  const visit = await s.visit();
  await visit.untilFrames(3);
  const first = await visit.look();
  const [left, right] = await halvesSeen(visit);
  await visit.get('picture-compare').click();
  await set(s, kBrightness, 80);
  await visit.untilLooks((now) => now.mean > first.mean + 10, `brighter than ${first.mean}`);
  await visit.get('picture-freeze').click();
  await visit.untilSeen('picture-frozen');
  const [before, now] = await halvesSeen(visit);
  assert.ok(Math.abs(before - left) < 3, `on the left it is as it was, ${left}, not ${before}`);
  assert.ok(now > right + 10, `on the right it is brighter than ${right}: ${now}`);

  const kept = await levelOf(visit.page.locator('.picture-before canvas'));
  const difference = (await levelOf(visit.get('picture'))) - kept;
  assert.ok(difference > 10, `${difference}`);
  let said;
  await until(async () => {
    said = /before (\d+), now (\d+), brighter by (\d+)/.exec(await visit.text('picture-compare-text'))?.slice(1).map(Number);
    return undefined !== said && Math.abs(said[0] - kept) <= 2 && Math.abs(said[2] - difference) <= 2;
  }, () => `it says that ${kept} became brighter by ${difference}, not ${said}`);

  await visit.get('picture-divider').focus();
  await visit.press('End');
  const whole = await until(async () => {
    const seen = await halvesSeen(visit);
    return Math.abs(seen[1] - right) < 3 && seen;
  }, 'the picture from before is everywhere');
  assert.ok(Math.abs(whole[0] - left) < 3);
});

story('A picture can be downloaded', async (s) => {
  const visit = await s.visit();
  await visit.untilFrames(1);
  const [download] = await Promise.all([visit.page.waitForEvent('download'), visit.get('picture-download').click()]);
  assert.match(download.suggestedFilename(), /^channel-1-.*\.jpg$/);
  const stream = await download.createReadStream();
  const chunks = [];
  for await (const chunk of stream) {
    chunks.push(chunk);
  }
  const bytes = Buffer.concat(chunks);
  assert.equal(bytes.subarray(0, 3).toString('hex'), 'ffd8ff');
  assert.ok(bytes.length > 5000, `${bytes.length} bytes`);
});
