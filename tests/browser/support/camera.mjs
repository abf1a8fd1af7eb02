// A camera of a story's own: camerad with a fresh device root, on a port that is free.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { cpSync, existsSync, mkdirSync, readFileSync, rmSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

import { until } from './until.mjs';

const kRoot = resolve(dirname(fileURLToPath(import.meta.url)), '../../..');
const kProgram = process.env.CAMERAD_PROGRAM ?? join(kRoot, 'build/release/apps/camerad/camerad');
const kStartTime = 20_000; // milliseconds, on a machine that is busy with other things
const kStopTime = 10_000;

export class Camera {
  // Lays out a device root in the folder: rootfs/, and over it the variant when there is one. address: where it listens; at
  // any but 127.0.0.1 it speaks TLS.
  constructor(folder, variant, address = '127.0.0.1') {
    this.folder = folder;
    this.address = address;
    this.root = join(folder, 'root');
    this.portFile = join(folder, 'port');
    this.output = ''; // of all starts
    this.errors = '';
    this.port = 0;
    this.password = undefined; // of admin, from the first start
    rmSync(this.root, { recursive: true, force: true });
    mkdirSync(this.root, { recursive: true });
    for (const part of ['hd1', 'mnt', 'tmp']) {
      cpSync(join(kRoot, 'rootfs', part), join(this.root, part), { recursive: true });
    }
    if (undefined !== variant) {
      cpSync(join(kRoot, 'rootfs/variants', variant), this.root, { recursive: true });
    }
  }

  get url() {
    return `${'127.0.0.1' === this.address ? 'http' : 'https'}://127.0.0.1:${this.port}/`;
  }

  // A second start takes the port of the first, so that a page that is open finds the camera again.
  async start() {
    rmSync(this.portFile, { force: true });
    const child = spawn(
      kProgram,
      ['--root', this.root, '--listen', `${this.address}:${this.port}`, '--port-file', this.portFile],
      { stdio: ['ignore', 'pipe', 'pipe'] },
    );
    this.child = child;
    child.stdout.on('data', (data) => (this.output += data));
    child.stderr.on('data', (data) => (this.errors += data));
    child.on('error', (error) => (this.errors += `${error}\n`));
    this.exited = new Promise((done) => {
      child.on('exit', (code, signal) => done({ code, signal }));
      child.on('error', () => done({ code: -1, signal: null }));
    });
    await until(
      () => {
        assert.ok(null === child.exitCode && null === child.signalCode && undefined !== child.pid, this.report());
        return existsSync(this.portFile);
      },
      () => `camerad serves\n${this.report()}`,
      kStartTime,
    );
    this.port = Number(readFileSync(this.portFile, 'utf8'));
    if (undefined === this.password) {
      await until(() => /password/i.test(this.output), () => `the first start says the password\n${this.report()}`);
      this.password = passwordIn(this.output);
    }
  }

  // As a person or the system ends it. Says how it ended.
  async stop() {
    return this.#end('SIGTERM');
  }

  // As a power cut ends it.
  async kill() {
    return this.#end('SIGKILL');
  }

  async #end(signal) {
    // A program that could not be started has no number; Node.js would send its signal to everything that runs here.
    if (undefined === this.child?.pid) {
      this.child = undefined;
      return undefined;
    }
    this.child.kill(signal);
    let timer;
    const late = new Promise((done) => (timer = setTimeout(() => done(undefined), kStopTime)));
    const ended = await Promise.race([this.exited, late]);
    clearTimeout(timer);
    if (undefined === ended) {
      this.child.kill('SIGKILL');
      await this.exited;
      assert.fail(`camerad does not end within ${kStopTime / 1000} s of ${signal}\n${this.report()}`);
    }
    this.child.stdout.destroy();
    this.child.stderr.destroy();
    this.child = undefined;
    return ended;
  }

  // A request of admin beside the page. Gives what the answer holds; anything but success fails the story.
  async request(method, path, body, name = 'admin', password = this.password) {
    const answer = await fetch(`${this.url}api/v1${path}`, {
      method,
      headers: {
        Authorization: `Basic ${Buffer.from(`${name}:${password}`).toString('base64')}`,
        ...(undefined === body ? {} : { 'Content-Type': 'application/json' }),
      },
      body: undefined === body ? undefined : JSON.stringify(body),
    });
    const text = await answer.text();
    assert.ok(answer.ok, `${method} ${path} is answered ${answer.status}: ${text}`);
    return '' === text ? undefined : JSON.parse(text);
  }

  async value(key, channel = 1) {
    return (await this.request('GET', `/channels/${channel}/parameters/${key}`)).value;
  }

  report() {
    return `camerad wrote:\n${this.output}${this.errors}`.slice(-4000);
  }
}

// The last word of the line that speaks of a password.
function passwordIn(output) {
  const line = output.split('\n').find((each) => /password/i.test(each)) ?? '';
  return line.trim().split(/\s+/).pop().replace(/^["']|["'.]+$/g, '');
}
