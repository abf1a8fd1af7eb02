// The state of the page against a camera that the test plays.
import assert from 'node:assert/strict';
import { afterEach, beforeEach, test } from 'node:test';

import { api } from '../src/api';
import { changeScene } from '../src/scene/edit';
import { setWindow } from '../src/schemes/drafts';
import * as store from '../src/store';
import type { EventType } from '../src/types';

type Answer = { status?: number; body?: unknown; headers?: Record<string, string> };

// Answers requests from a table that a test changes, and keeps the event streams that were opened.
class Camera {
  readonly table = new Map<string, (body: unknown) => Answer | Promise<Answer>>();
  readonly asked: string[] = [];
  streams: ReadableStreamDefaultController<Uint8Array>[] = [];
  revision = 17;
  value = 50;

  constructor() {
    const answer = (body: unknown) => () => ({ body });
    this.table.set('GET /session', answer({ name: 'admin', role: 'admin', csrf: 'proof' }));
    this.table.set('DELETE /session', () => ({ status: 204 }));
    this.table.set('GET /channels', answer({
      channels: [{ channel: 1, kind: 'visible', ready: true, sensorType: 1, module: 'M', night: false, busyWith: null }],
    }));
    this.table.set('GET /scene', answer({ light: { kind: 'fixed', lux: 1 }, lux: 1, fog: 0, revision: 4 }));
    this.table.set('GET /clock', answer({ time: '2026-11-21T12:00:00', simulated: false, speed: 1, revision: 4 }));
    this.table.set('GET /messages/level', answer({ level: 1, revision: 4 }));
    this.table.set('GET /faults', answer({ faults: [] }));
    this.table.set('GET /channels/1/metadata', () => ({ body: { channel: 1, revision: this.revision, tabs: [] } }));
    this.table.set('GET /channels/1/parameters', () => ({
      body: {
        channel: 1,
        scheme: 0,
        revision: this.revision,
        parameters: [{ key: 34, name: 'KEY_BRIGHTNESS', value: this.value, default: 50, stored: 50, unsaved: 50 !== this.value }],
      },
    }));
    this.table.set('GET /channels/1/schemes', answer({
      channel: 1, revision: 17, current: 0, automatic: false, follow: 'nothing', gaps: 'scheme-0', factory: 4, schemes: [],
    }));
    this.table.set('GET /channels/1/day-night', answer({ state: 'day' }));
  }

  fetch = async (input: string, init: RequestInit): Promise<Response> => {
    const name = `${init.method ?? 'GET'} ${input.replace('api/v1', '')}`;
    this.asked.push(name);
    if ('GET /events' === name) {
      const stream = new ReadableStream<Uint8Array>({
        start: (controller) => {
          this.streams.push(controller);
          init.signal?.addEventListener('abort', () => {
            this.streams = this.streams.filter((other) => other !== controller);
            controller.error(new Error('aborted'));
          });
        },
      });
      this.tell('hello' as EventType, { last: 0, version: '1' });
      return new Response(stream, { status: 200 });
    }
    const body = 'string' === typeof init.body ? (JSON.parse(init.body) as unknown) : undefined;
    const answer = (await this.table.get(name)?.(body)) ?? {
      status: 404,
      body: { type: '/problems/not-found', title: 'Not found', status: 404, detail: `Nothing at ${name}.` },
    };
    return new Response(undefined === answer.body ? null : JSON.stringify(answer.body), {
      status: answer.status ?? 200,
      headers: answer.headers ?? {},
    });
  };

  tell(type: EventType, data: unknown): void {
    const text = new TextEncoder().encode(`event: ${type}\ndata: ${JSON.stringify(data)}\n\n`);
    this.streams.at(-1)?.enqueue(text);
  }

  change(value: number): void {
    this.revision += 1;
    this.value = value;
    const changes = [{ key: 34, value, stored: 50, unsaved: true }];
    this.tell('parameter', { channel: 1, scheme: 0, revision: this.revision, changes, by: 'admin', origin: '' });
  }
}

const kPatience = 30_000; // milliseconds, on a machine that is busy with other things

// Waits for what the page does by itself.
async function until(what: () => boolean): Promise<void> {
  for (const end = Date.now() + kPatience; !what(); ) {
    assert.ok(Date.now() < end, `it never came to this: ${String(what)}`);
    await new Promise((resolve) => setImmediate(resolve));
  }
}

// Until what an answer brings has been done.
async function settled(): Promise<void> {
  for (let count = 0; count < 10; ++count) {
    await new Promise((resolve) => setImmediate(resolve));
  }
}

const shown = () => store.shownValue(34);
let camera: Camera;

beforeEach(async () => {
  camera = new Camera();
  globalThis.fetch = camera.fetch as typeof fetch;
  await store.start();
  await until(() => 'live' === store.connection.value);
});

afterEach(async () => {
  await store.logout();
  await until(() => 0 === camera.streams.length);
});

test('after the first event everything is asked for, and what a channel lacks is left out', () => {
  assert.equal(shown(), 50);
  assert.equal(store.channel.value, 1);
  assert.equal(store.dayNight.value, 'day');
  assert.equal(store.lens.value, null);
  assert.equal(store.readOnlyReason.value, '');
});

test('an event changes what is shown', async () => {
  camera.change(60);
  await until(() => 60 === shown());
  assert.equal(store.values.value.byKey.get(34)?.unsaved, true);
});

test('when the ranges change, what can be set and what is set are asked for anew', async () => {
  const before = camera.asked.length;
  camera.tell('ranges', { channel: 2, ranges: [] }); // of a channel that is not shown
  camera.change(60);
  await until(() => 60 === shown());
  assert.deepEqual(camera.asked.slice(before), []);
  camera.revision += 1;
  camera.value = 40;
  const tabs = [{ key: 'image', label: 'Picture', groups: [] }];
  camera.table.set('GET /channels/1/metadata', () => ({ body: { channel: 1, revision: camera.revision, tabs } }));
  camera.tell('ranges', { channel: 1, ranges: [] });
  await until(() => 40 === shown());
  assert.deepEqual(store.metadata.value?.tabs, tabs);
  assert.deepEqual(camera.asked.slice(before), ['GET /channels/1/metadata', 'GET /channels/1/parameters']);
});

test('what happens while everything is asked for is not lost', async () => {
  let answer: () => void = () => undefined;
  const ordinary = camera.table.get('GET /channels/1/parameters');
  camera.table.set('GET /channels/1/parameters', async (body) => {
    const old = await ordinary?.(body);
    await new Promise<void>((resolve) => (answer = resolve));
    return old as Answer;
  });
  const before = camera.asked.length;
  camera.tell('resync', {});
  await until(() => camera.asked.slice(before).includes('GET /channels/1/parameters'));
  camera.change(70);
  await new Promise((resolve) => setImmediate(resolve));
  assert.equal(shown(), 50);
  answer();
  await until(() => 70 === shown());
});

test('a change is shown at once, and falls back with an explanation when it is refused', async () => {
  camera.table.set('PATCH /channels/1/parameters', () => ({
    body: {
      scheme: 0,
      revision: 17,
      results: [{ key: 34, ok: false, value: 50, problem: { type: '/problems/camera-refused', title: 'R', status: 422, detail: 'No.' } }],
    },
  }));
  store.setParameter(34, 95);
  assert.equal(shown(), 95);
  await until(() => 50 === shown());
  assert.equal(store.refusals.value.get(34), 'No.');
});

test('a change that does not arrive falls back too', async () => {
  camera.table.set('PATCH /channels/1/parameters', () => {
    throw new Error('no line');
  });
  store.setParameter(34, 95);
  await until(() => 50 === shown());
  assert.equal(store.refusals.value.get(34), 'The camera cannot be reached.');
});

test('a control that is held is not moved by others, and follows once it is let go', async () => {
  store.holdParameter(34);
  camera.change(20);
  await until(() => 20 === store.values.value.byKey.get(34)?.value);
  assert.equal(shown(), 50);
  store.releaseParameter(34);
  assert.equal(shown(), 20);
});

test('a change carries the proof of the session', async () => {
  let headers: Headers | undefined;
  const ordinary = globalThis.fetch;
  globalThis.fetch = ((input: string, init: RequestInit) => {
    if ('PATCH' === init.method) {
      headers = new Headers(init.headers);
    }
    return ordinary(input, init);
  }) as typeof fetch;
  camera.table.set('PATCH /channels/1/parameters', () => ({
    body: { scheme: 0, revision: 18, results: [{ key: 34, ok: true, value: 51 }] },
  }));
  store.setParameter(34, 51);
  await until(() => 0 === store.edits.value.size);
  assert.equal(headers?.get('X-CSRF-Token'), 'proof');
  assert.match(headers?.get('X-Client-Id') ?? '', /^[A-Za-z0-9_-]{1,40}$/);
  assert.equal(shown(), 51);
  assert.equal(store.values.value.byKey.get(34)?.unsaved, true);
});

test('an answer that is older than an event changes nothing', async () => {
  camera.table.set('PATCH /channels/1/parameters', async () => {
    camera.change(51);
    camera.change(70); // by somebody else, and heard before the answer
    await until(() => 70 === store.values.value.byKey.get(34)?.value);
    return { body: { scheme: 0, revision: 18, results: [{ key: 34, ok: true, value: 51 }] } };
  });
  store.setParameter(34, 51);
  await until(() => 0 === store.edits.value.size);
  assert.equal(shown(), 70);
});

// Of what comes as an answer and as an event: how it is changed, and a word of it that is shown.
const kTwice = [
  {
    what: 'the schemes',
    request: 'PATCH /channels/1/schemes',
    event: 'schemes',
    state: (revision: number, value: number) => ({
      channel: 1, revision, current: value, automatic: false, follow: 'nothing', gaps: 'scheme-0', factory: 4, schemes: [],
    }),
    change: () => store.changeSchemes({ current: 1 }),
    shown: () => store.schemes.value?.current,
  },
  {
    what: 'a scheme',
    request: 'PATCH /channels/1/schemes/0',
    event: 'schemes',
    state: (revision: number, value: number) => ({
      channel: 1, revision, current: value, automatic: false, follow: 'nothing', gaps: 'scheme-0', factory: 4, schemes: [],
    }),
    change: () => setWindow(0, { from: 60, to: 120 }),
    shown: () => store.schemes.value?.current,
  },
  {
    what: 'the scene',
    request: 'PATCH /scene',
    event: 'scene',
    state: (revision: number, value: number) => ({ light: { kind: 'fixed', lux: 1 }, lux: 1, fog: value, revision }),
    change: () => changeScene('fog', 1),
    shown: () => store.scene.value?.fog,
  },
  {
    what: 'the clock',
    request: 'PUT /clock',
    event: 'clock',
    state: (revision: number, value: number) => ({ time: '2026-11-21T12:00:00', simulated: true, speed: value, revision }),
    change: async () => store.takeClock(await api.setClock({ simulated: true, speed: 1 })),
    shown: () => store.clock.value?.speed,
  },
  {
    what: 'the level of messages',
    request: 'PUT /messages/level',
    event: 'level',
    state: (revision: number, value: number) => ({ level: value, revision }),
    change: async () => store.takeLevel(await api.setMessageLevel(1)),
    shown: () => store.level.value?.level,
  },
] as const;

for (const { what, request, event, state, change, shown: shownNow } of kTwice) {
  test(`an answer of ${what} that is older than an event changes nothing`, async () => {
    let isAnswered = false;
    camera.table.set(request, async () => {
      camera.tell(event, state(18, 2));
      camera.tell(event, state(19, 3)); // by somebody else, and heard before the answer
      await until(() => 3 === shownNow());
      isAnswered = true;
      return { body: state(18, 2) };
    });
    await change();
    await until(() => isAnswered);
    await settled();
    assert.equal(shownNow(), 3);
  });

  test(`an event of ${what} that is older than an answer changes nothing`, async () => {
    camera.table.set(request, () => ({ body: state(19, 3) }));
    await change();
    await until(() => 3 === shownNow());
    camera.tell(event, state(18, 2));
    camera.change(60); // heard behind it
    await until(() => 60 === shown());
    assert.equal(shownNow(), 3);
  });
}

test('a camera that has begun anew begins with its revisions, too', async () => {
  camera.table.set('GET /scene', () => ({ body: { light: { kind: 'fixed', lux: 1 }, lux: 1, fog: 9, revision: 0 } }));
  camera.tell('resync', {});
  await until(() => 9 === store.scene.value?.fog);
});

test('a default that somebody else has changed since is not shown', async () => {
  camera.table.set('POST /channels/1/parameters/34/default', async () => {
    camera.change(50);
    camera.change(70);
    await until(() => 70 === store.values.value.byKey.get(34)?.value);
    return { body: { key: 34, name: 'KEY_BRIGHTNESS', value: 50, default: 50, stored: 50, unsaved: false } };
  });
  await store.resetParameter(34);
  assert.equal(shown(), 70);
});

test('a connection that ends is made anew, and everything asked for again', async () => {
  camera.value = 33;
  camera.streams.at(-1)?.close();
  await until(() => 'reconnecting' === store.connection.value);
  assert.notEqual(store.readOnlyReason.value, '');
  await until(() => 'live' === store.connection.value);
  assert.equal(shown(), 33);
});

test('a channel that is not ready can be left for another one', async () => {
  camera.table.set('GET /channels', () => ({
    body: {
      channels: [1, 2].map((channel) => ({
        channel, kind: 'visible', ready: true, sensorType: 1, module: 'M', night: false, busyWith: null,
      })),
    },
  }));
  camera.table.set('GET /channels/1/metadata', () => ({
    status: 500,
    body: { type: '/problems/not-ready', title: 'Failed', status: 500, detail: 'Channel 1 is not ready.' },
  }));
  camera.tell('resync', {});
  await until(() => 2 === store.channels.value.length && 'Channel 1 is not ready.' === store.loadProblem.value);
  for (const what of ['metadata', 'parameters', 'schemes']) {
    const ordinary = camera.table.get(`GET /channels/1/${what}`);
    camera.table.set(`GET /channels/2/${what}`, async (body) => {
      const answer = 'metadata' === what ? { body: { revision: 1, tabs: [] } } : await ordinary?.(body);
      return { body: { ...(answer?.body as object), channel: 2 } };
    });
  }
  store.selectChannel(2);
  await until(() => '' === store.loadProblem.value);
  assert.equal(store.values.value.channel, 2);
});

test('when nobody is known any more, the login is shown and says why', async () => {
  camera.table.set('PATCH /channels/1/parameters', () => ({
    status: 401,
    body: { type: '/problems/unauthorised', title: 'Unauthorised', status: 401 },
  }));
  store.setParameter(34, 51);
  await until(() => null === store.session.value);
  assert.match(store.sessionNote.value, /has ended/);
  assert.equal(store.connection.value, 'off');
});
