// One page that is open, and what stories ask of it.
import assert from 'node:assert/strict';

import { until } from './until.mjs';

const kWide = { width: 1280, height: 900 };
export const kPhone = { width: 360, height: 740 };

export class Visit {
  static async open(
    browser,
    url,
    { colors = 'light', size = kWide, reducedMotion = 'reduce', isTouched = false } = {},
  ) {
    const context = await browser.newContext({
      viewport: size,
      colorScheme: colors,
      reducedMotion,
      hasTouch: isTouched,
      // A camera's certificate is its own; a person looks at its fingerprint and goes on.
      ignoreHTTPSErrors: url.startsWith('https:'),
    });
    const visit = new Visit(await context.newPage());
    await visit.page.goto(url);
    return visit;
  }

  constructor(page) {
    this.page = page;
    this.said = []; // on the browser's console
    this.mistakes = []; // exceptions nobody caught, and what the page's own policy forbade
    page.setDefaultTimeout(15_000);
    page.on('console', (message) => {
      this.said.push(`${message.type()}: ${message.text()}`);
      if (/content security policy/i.test(message.text())) {
        this.mistakes.push(message.text());
      }
    });
    page.on('pageerror', (error) => {
      this.said.push(`exception: ${error.stack ?? error}`);
      this.mistakes.push(String(error));
    });
  }

  get(id) {
    return this.page.getByTestId(id);
  }

  async isSeen(id) {
    return this.get(id).isVisible();
  }

  async text(id) {
    return ((await this.get(id).textContent()) ?? '').trim();
  }

  async untilSeen(id) {
    await this.get(id).waitFor({ state: 'visible' });
  }

  async untilGone(id) {
    await this.get(id).waitFor({ state: 'hidden' });
  }

  async untilText(id, pattern) {
    await until(
      async () => (await this.isSeen(id)) && pattern.test(await this.text(id)),
      () => `${id} says ${pattern}`,
    );
  }

  async signIn(name, password) {
    await this.get('login-name').fill(name);
    await this.get('login-password').fill(password);
    await this.get('login-submit').click();
    await this.untilLive();
  }

  async untilLive() {
    await this.untilText('connection', /^live$/);
  }

  // A view ("settings", "schemes", "scene", "log"), and a tab of the settings.
  async goTo(view, tab) {
    await this.get(`view-${view}`).click();
    if (undefined !== tab) {
      await this.get(`tab-${tab}`).click();
    }
  }

  // What a slider, a number field or a list stands at.
  async shown(key) {
    return Number(await this.get(`control-${key}`).inputValue());
  }

  async untilShown(key, value) {
    let seen;
    await until(async () => (seen = await this.shown(key)) === value, () => `control ${key} shows ${value}, not ${seen}`);
  }

  // Types into the number field beside a slider.
  async type(key, value) {
    await this.get(`control-${key}-number`).fill(String(value));
    await this.get(`control-${key}-number`).press('Enter');
  }

  // The chips of the schemes say so; they stand beside the settings and the schemes.
  async untilScheme(index) {
    await until(
      async () => 'true' === (await this.get(`scheme-${index}`).getAttribute('aria-pressed')),
      `scheme ${index} is in force`,
    );
  }

  async untilDayNight(state) {
    await until(
      async () => state === (await this.get('day-night-badge').getAttribute('data-state')),
      `the badge says ${state}`,
    );
  }

  async unsaved() {
    return Number(await this.get('unsaved-count').getAttribute('data-count'));
  }

  async untilUnsaved(count) {
    let seen;
    await until(async () => (seen = await this.unsaved()) === count, () => `${count} changes are unsaved, not ${seen}`);
  }

  async save() {
    await this.get('save').click();
    await this.untilUnsaved(0);
  }

  async frames() {
    return Number(await this.get('picture').getAttribute('data-frames'));
  }

  // Waits until so many more frames were drawn.
  async untilFrames(more) {
    const from = await this.frames();
    await until(async () => (await this.frames()) >= from + more, () => `${more} frames more than ${from} are drawn`);
  }

  // Mean of each colour over the picture as it is shown, 0 to 255, with the mean difference between neighbours.
  async look() {
    return this.get('picture').evaluate((canvas) => {
      const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
      const sums = [0, 0, 0];
      let edges = 0;
      for (let at = 0; at < data.length; at += 4) {
        for (let colour = 0; colour < 3; ++colour) {
          sums[colour] += data[at + colour];
        }
        if (at + 4 < data.length) {
          edges += Math.abs(data[at + 1] - data[at + 5]);
        }
      }
      const pixels = data.length / 4;
      const [red, green, blue] = sums.map((sum) => sum / pixels);
      return { red, green, blue, mean: (red + green + blue) / 3, detail: edges / pixels };
    });
  }

  // Waits until the picture looks as it should.
  async untilLooks(isGood, what) {
    let seen;
    return until(
      async () => {
        seen = await this.look();
        return isGood(seen) ? seen : undefined;
      },
      () => `${what}; it is ${JSON.stringify(seen)}`,
    );
  }

  // The lines of the log that are in sight hold such a text.
  async untilLogged(pattern) {
    await until(
      async () => pattern.test((await this.get('log-row').allTextContents()).join('\n')),
      () => `the log holds ${pattern}`,
    );
  }

  // A button that says why it cannot be pressed is pressed all the same, as a person may try.
  async tryToPress(id) {
    await this.get(id).click({ force: true });
  }

  async press(...keys) {
    for (const key of keys) {
      await this.page.keyboard.press(key);
    }
  }

  // The test id of what has the focus.
  async focused() {
    return this.page.evaluate(() => document.activeElement?.getAttribute('data-testid') ?? document.activeElement?.tagName);
  }

  // Presses Tab until the focus is on it.
  async tabTo(id, most = 80) {
    const passed = [];
    for (let count = 0; count < most; ++count) {
      await this.press('Tab');
      const now = await this.focused();
      if (now === id) {
        return;
      }
      passed.push(now);
    }
    assert.fail(`${most} times Tab do not lead to ${id}: ${passed.join(', ')}`);
  }

  async close() {
    await this.page.context().close();
  }
}
