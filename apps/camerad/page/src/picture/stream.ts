// The connection over which the live picture comes: one JPEG file after the other, for as long as somebody wants them.
//
// Frames are taken out of the stream here, and not by an <img>: so that they can be counted and measured, a lost
// connection is noticed, and the reason is known when the camera gives none.
import { ApiError, api, explain } from '../api';
import type { Problem } from '../types';
import { MultipartReader } from './multipart';
import { waitBeforeTry } from './pace';

export type StreamState =
  | { kind: 'stopped' }
  | { kind: 'connecting' }
  | { kind: 'live' }
  | { kind: 'lost'; why: string; seconds: number };

const kSilence = 5_000; // milliseconds without a picture until the connection counts as lost

export class PictureStream {
  private abort: AbortController | null = null;
  private wake: () => void = () => undefined;

  // `onFrame` gets each JPEG file, `onState` each change of state. Neither is called after stop().
  constructor(
    private readonly url: string,
    private readonly onFrame: (jpeg: Uint8Array) => void,
    private readonly onState: (state: StreamState) => void,
  ) {}

  start(): void {
    if (null === this.abort) {
      this.abort = new AbortController();
      void this.run(this.abort.signal);
    }
  }

  stop(): void {
    if (null !== this.abort) {
      this.abort.abort();
      this.abort = null;
      this.wake();
      this.onState({ kind: 'stopped' });
    }
  }

  // Ends a wait for the next try.
  tryNow(): void {
    this.wake();
  }

  private async run(signal: AbortSignal): Promise<void> {
    let failures = 0;
    while (!signal.aborted) {
      if (0 === failures) {
        this.onState({ kind: 'connecting' });
      }
      let why = 'The camera ended the picture.';
      let after: number | undefined;
      try {
        await this.read(signal, () => {
          failures = 0;
          this.onState({ kind: 'live' });
        });
      } catch (error) {
        why = error instanceof TypeError ? 'The camera cannot be reached.' : explain(error);
        if (error instanceof ApiError) {
          after = error.retryAfter;
          if (401 === error.status) {
            // Lets the page find out by its own way that the session has ended.
            api.version().catch(() => undefined);
          }
        }
      }
      if (signal.aborted) {
        return;
      }
      failures += 1;
      const pause = waitBeforeTry(failures, after);
      this.onState({ kind: 'lost', why, seconds: Math.ceil(pause / 1000) });
      await this.rest(pause);
    }
  }

  // One connection, until it ends in whatever way.
  private async read(outer: AbortSignal, onFirst: () => void): Promise<void> {
    const abort = new AbortController();
    const stop = (): void => abort.abort();
    outer.addEventListener('abort', stop);
    let isSilent = false;
    const watch = (): ReturnType<typeof setTimeout> => setTimeout(() => {
      isSilent = true;
      stop();
    }, kSilence);
    let silence = watch();
    try {
      const response = await fetch(this.url, { credentials: 'same-origin', cache: 'no-store', signal: abort.signal });
      if (!response.ok || null === response.body) {
        throw await refusalOf(response);
      }
      const stream = response.body.getReader();
      const reader = new MultipartReader();
      let isFirst = true;
      for (;;) {
        const { done, value } = await stream.read();
        if (done || outer.aborted) {
          return;
        }
        const frames = reader.push(value);
        const newest = frames[frames.length - 1];
        if (undefined !== newest) {
          clearTimeout(silence);
          silence = watch();
          if (isFirst) {
            isFirst = false;
            onFirst();
          }
          this.onFrame(newest);
        }
      }
    } catch (error) {
      throw isSilent ? new Error('No picture came for five seconds.') : error;
    } finally {
      clearTimeout(silence);
      outer.removeEventListener('abort', stop);
      stop();
    }
  }

  private rest(milliseconds: number): Promise<void> {
    return new Promise((resolve) => {
      const timer = setTimeout(() => this.wake(), milliseconds);
      this.wake = () => {
        clearTimeout(timer);
        this.wake = () => undefined;
        resolve();
      };
    });
  }
}

async function refusalOf(response: Response): Promise<ApiError> {
  let problem: Problem = { type: '/problems/unknown', title: `The camera answered with status ${response.status}.`,
    status: response.status };
  try {
    const parsed = JSON.parse((await response.text()).slice(0, 10_000)) as Partial<Problem> | null;
    problem = { ...problem, ...(null !== parsed && 'string' === typeof parsed.title ? parsed : {}) };
  } catch {
    // The status alone has to do.
  }
  const seconds = Number.parseInt(response.headers.get('Retry-After') ?? '', 10);
  return new ApiError(problem, Number.isFinite(seconds) && 0 <= seconds ? seconds : undefined);
}
