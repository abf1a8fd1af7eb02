// The connection over which the live picture comes: one JPEG file after the other, for as long as somebody wants them.
//
// Frames are taken out of the stream here, and not by an <img>: so that they can be counted and measured, a lost
// connection is noticed, and the reason is known when the camera gives none.
import { MultipartReader } from './multipart';
import { waitBeforeTry } from './pace';

export type StreamState =
  | { kind: 'stopped' }
  | { kind: 'connecting' }
  | { kind: 'live' }
  | { kind: 'lost'; why: string; seconds: number };

export interface StreamOptions {
  open: (signal: AbortSignal) => Promise<Response>;
  onFrame: (jpeg: Uint8Array) => void; // each JPEG file
  onState: (state: StreamState) => void; // each change
  onUnauthorised: () => void; // the camera no longer knows who asks
  silence?: number; // milliseconds without a picture until the connection counts as lost
  wait?: (failures: number, askedSeconds?: number) => number; // milliseconds before the next try
}

const kSilence = 5_000;
const kSilent = 'No picture came for some seconds.';

class Refused extends Error {
  constructor(
    text: string,
    readonly status: number,
    readonly retryAfter: number | undefined,
  ) {
    super(text);
  }
}

// After stop() nothing is called any more but onState with "stopped", at once. It can be started again.
export class PictureStream {
  private abort: AbortController | null = null;
  private wake: () => void = () => undefined;

  constructor(private readonly options: StreamOptions) {}

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
      this.options.onState({ kind: 'stopped' });
    }
  }

  // Ends a wait for the next try.
  tryNow(): void {
    this.wake();
  }

  private async run(signal: AbortSignal): Promise<void> {
    const { onState, onUnauthorised, wait = waitBeforeTry } = this.options;
    let failures = 0;
    onState({ kind: 'connecting' });
    while (!signal.aborted) {
      let why = 'The camera ended the picture.';
      let after: number | undefined;
      try {
        await this.read(signal, () => {
          failures = 0;
          onState({ kind: 'live' });
        });
      } catch (error) {
        // Every browser has words of its own for a connection that cannot be made or breaks.
        why = error instanceof TypeError || !(error instanceof Error) ? 'The camera cannot be reached.' : error.message;
        if (error instanceof Refused && !signal.aborted) {
          after = error.retryAfter;
          if (401 === error.status) {
            onUnauthorised();
          }
        }
      }
      if (signal.aborted) {
        return;
      }
      failures += 1;
      const pause = wait(failures, after);
      onState({ kind: 'lost', why, seconds: Math.ceil(pause / 1000) });
      await this.rest(pause);
    }
  }

  // One connection, until it ends in whatever way.
  private async read(outer: AbortSignal, onFirst: () => void): Promise<void> {
    const abort = new AbortController();
    const stop = (): void => abort.abort();
    outer.addEventListener('abort', stop);
    let isSilent = false;
    const watch = (): ReturnType<typeof setTimeout> =>
      setTimeout(() => {
        isSilent = true;
        stop();
      }, this.options.silence ?? kSilence);
    let silence = watch();
    try {
      const response = await this.options.open(abort.signal);
      if (!response.ok || null === response.body) {
        throw await refusalOf(response);
      }
      const stream = response.body.getReader();
      abort.signal.addEventListener('abort', () => void stream.cancel().catch(() => undefined));
      const reader = new MultipartReader();
      let isFirst = true;
      for (;;) {
        const { done, value } = await stream.read();
        if (isSilent) {
          throw new Error(kSilent);
        }
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
          this.options.onFrame(newest);
        }
      }
    } catch (error) {
      throw isSilent ? new Error(kSilent) : error;
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

async function refusalOf(response: Response): Promise<Refused> {
  let text = `The camera answered with status ${response.status}.`;
  try {
    const problem = JSON.parse((await response.text()).slice(0, 10_000)) as {
      title?: unknown;
      detail?: unknown;
    } | null;
    const said = problem?.detail ?? problem?.title;
    text = 'string' === typeof said && '' !== said ? said : text;
  } catch {
    // The status alone has to do.
  }
  const seconds = Number.parseInt(response.headers.get('Retry-After') ?? '', 10);
  return new Refused(text, response.status, Number.isFinite(seconds) && 0 <= seconds ? seconds : undefined);
}
