// How fast pictures come, and when to try again after the connection was lost. Times are milliseconds of any clock.

export class FrameRate {
  private times: number[] = [];

  constructor(private readonly window = 2000) {}

  add(now: number): void {
    this.times.push(now);
    this.forget(now);
  }

  // Frames a second over the window; 0 once nothing came for the whole window.
  at(now: number): number {
    this.forget(now);
    const first = this.times[0];
    const last = this.times[this.times.length - 1];
    if (undefined === first || undefined === last) {
      return 0;
    }
    if (1 === this.times.length || last <= first) {
      return (this.times.length * 1000) / this.window;
    }
    // A stream that stalls slows down at once: the time since its last frame counts once it is longer than usual.
    const usual = (last - first) / (this.times.length - 1);
    const span = Math.max(last - first, now - first - usual);
    return ((this.times.length - 1) * 1000) / span;
  }

  clear(): void {
    this.times = [];
  }

  private forget(now: number): void {
    const keep = this.times.findIndex((time) => now - time <= this.window);
    this.times = keep < 0 ? [] : this.times.slice(keep);
  }
}

const kFirstWait = 500;
const kLongestWait = 8000;

// 0.5, 1, 2, 4, 8, 8, ... seconds; longer when the server asked for it.
export function waitBeforeTry(failures: number, askedSeconds?: number): number {
  const own = Math.min(kLongestWait, kFirstWait * Math.pow(2, Math.max(0, Math.min(failures, 10) - 1)));
  return undefined === askedSeconds ? own : Math.max(own, Math.min(60, askedSeconds) * 1000);
}
