import assert from 'node:assert/strict';
import { test } from 'node:test';
import { PictureStream, type StreamOptions, type StreamState } from '../src/picture/stream';

const bytes = (text: string): Uint8Array => Uint8Array.from(text, (character) => character.charCodeAt(0));
const part = (body: string): Uint8Array => bytes(`--frame\r\nContent-Length: ${body.length}\r\n\r\n${body}\r\n`);

// A camera whose answers are given by hand, and a stream that tells what it hears.
function setUp(options: Partial<StreamOptions> = {}) {
  const told: string[] = [];
  let news: () => void = () => undefined;
  const tell = (text: string): void => {
    told.push(text);
    news();
  };
  const opened: { signal: AbortSignal; answer: (response: Response) => void; fail: (error: Error) => void }[] = [];
  const open = (signal: AbortSignal): Promise<Response> =>
    new Promise((answer, fail) => {
      opened.push({ signal, answer, fail });
      signal.addEventListener('abort', () => fail(new DOMException('aborted', 'AbortError')));
      news();
    });
  const words = (state: StreamState): string =>
    'lost' === state.kind ? `lost: ${state.why} ${state.seconds}` : state.kind;
  const stream = new PictureStream({
    open,
    onFrame: (jpeg) => tell(`frame ${String.fromCharCode(...jpeg)}`),
    onState: (state) => tell(words(state)),
    onUnauthorised: () => tell('unauthorised'),
    wait: () => 0,
    ...options,
  });
  // Resolves once it is so; the test runner's own time limit ends a test in which it never is.
  const until = async (isSo: () => boolean): Promise<void> => {
    const deadline = setTimeout(() => {
      throw new Error(`It did not come. Told: ${told.join(', ')}`);
    }, 30_000);
    while (!isSo()) {
      await new Promise<void>((resolve) => (news = resolve));
    }
    clearTimeout(deadline);
  };
  return { stream, told, opened, until };
}

// A body that is written by hand.
function body() {
  let control: ReadableStreamDefaultController<Uint8Array> | undefined;
  const stream = new ReadableStream<Uint8Array>({ start: (controller) => (control = controller) });
  return {
    response: new Response(stream),
    write: (piece: Uint8Array): void => control?.enqueue(piece),
    end: (): void => control?.close(),
  };
}

test('pictures are handed on as they come', async () => {
  const { stream, told, opened, until } = setUp();
  stream.start();
  const one = body();
  opened[0]?.answer(one.response);
  one.write(part('one'));
  await until(() => told.includes('frame one'));
  one.write(part('two'));
  await until(() => told.includes('frame two'));
  assert.deepEqual(told, ['connecting', 'live', 'frame one', 'frame two']);
  stream.stop();
  assert.equal(opened[0]?.signal.aborted, true);
  assert.equal(told[4], 'stopped');
});

test('when several come at once only the newest is worth drawing', async () => {
  const { stream, told, opened, until } = setUp();
  stream.start();
  const one = body();
  opened[0]?.answer(one.response);
  one.write(bytes(String.fromCharCode(...part('old')) + String.fromCharCode(...part('new'))));
  await until(() => told.includes('frame new'));
  assert.ok(!told.includes('frame old'));
  stream.stop();
});

test('a connection that ends is made anew, with the reason said', async () => {
  const { stream, told, opened, until } = setUp();
  stream.start();
  const one = body();
  opened[0]?.answer(one.response);
  one.write(part('one'));
  one.end();
  await until(() => 2 === opened.length);
  opened[1]?.fail(new TypeError('Failed to fetch'));
  await until(() => 3 === opened.length);
  const three = body();
  opened[2]?.answer(three.response);
  three.write(part('again'));
  await until(() => told.includes('frame again'));
  assert.deepEqual(told, [
    'connecting',
    'live',
    'frame one',
    'lost: The camera ended the picture. 0',
    'lost: The camera cannot be reached. 0',
    'live',
    'frame again',
  ]);
  stream.stop();
});

test('a refusal is said in the words of the camera, and its wish to wait is passed on', async () => {
  const waits: (number | undefined)[] = [];
  const { stream, told, opened, until } = setUp({
    wait: (failures, asked) => {
      waits.push(failures, asked);
      return 0;
    },
  });
  stream.start();
  const problem = JSON.stringify({ type: '/problems/busy', title: 'Busy', status: 503, detail: 'Too many viewers.' });
  opened[0]?.answer(new Response(problem, { status: 503, headers: { 'Retry-After': '7' } }));
  await until(() => 2 === opened.length);
  opened[1]?.answer(new Response('<html>', { status: 502 }));
  await until(() => 3 === opened.length);
  assert.deepEqual(told, ['connecting', 'lost: Too many viewers. 0', 'lost: The camera answered with status 502. 0']);
  assert.deepEqual(waits, [1, 7, 2, undefined]);
  stream.stop();
});

test('a session that has ended is told', async () => {
  const { stream, told, opened, until } = setUp();
  stream.start();
  opened[0]?.answer(new Response('{"title":"Unauthorised"}', { status: 401 }));
  await until(() => 2 === opened.length);
  assert.deepEqual(told, ['connecting', 'unauthorised', 'lost: Unauthorised 0']);
  stream.stop();
});

test('a stream that says nothing counts as lost', async () => {
  const { stream, told, opened, until } = setUp({ silence: 20 });
  stream.start();
  await until(() => 2 === opened.length);
  assert.equal(opened[0]?.signal.aborted, true);
  assert.equal(told[1], 'lost: No picture came for some seconds. 0');
  stream.stop();
});

test('a stream that falls silent after some pictures counts as lost', async () => {
  const { stream, told, opened, until } = setUp({ silence: 50 });
  stream.start();
  const one = body();
  opened[0]?.answer(one.response);
  one.write(part('one'));
  await until(() => 2 === opened.length);
  assert.deepEqual(told, ['connecting', 'live', 'frame one', 'lost: No picture came for some seconds. 0']);
  stream.stop();
});

test('nonsense is no picture', async () => {
  const { stream, told, opened, until } = setUp();
  stream.start();
  const one = body();
  opened[0]?.answer(one.response);
  one.write(bytes('x'.repeat(10_000)));
  await until(() => 2 === opened.length);
  assert.match(told[1] ?? '', /^lost: The picture stream has no part header/);
  stream.stop();
});

test('stopped while it waits, it makes no further connection; started again, it does', async () => {
  const { stream, told, opened, until } = setUp({ wait: () => 3_600_000 });
  stream.start();
  opened[0]?.fail(new TypeError('Failed to fetch'));
  await until(() => 2 === told.length);
  stream.stop();
  assert.equal(opened.length, 1);
  stream.start();
  assert.equal(opened.length, 2);
  opened[1]?.fail(new TypeError('Failed to fetch'));
  await until(() => 5 === told.length);
  // Who does not want to wait.
  stream.tryNow();
  await until(() => 3 === opened.length);
  stream.stop();
  assert.deepEqual(told, [
    'connecting',
    'lost: The camera cannot be reached. 3600',
    'stopped',
    'connecting',
    'lost: The camera cannot be reached. 3600',
    'stopped',
  ]);
});
