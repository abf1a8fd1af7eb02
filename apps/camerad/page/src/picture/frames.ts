// What is done with the pictures as they come: decoded, drawn, measured, and kept where somebody asked for it.
import { type Histogram, histogramOf } from './histogram';
import { FrameRate } from './pace';

const kMeasureWidth = 160; // the levels of a smaller picture are the same, at a sixteenth of the work
const kMeasurePause = 250; // milliseconds between two measurements

export interface Kept {
  jpeg: Uint8Array;
  histogram: Histogram;
}

export class FramePainter {
  private readonly small = document.createElement('canvas');
  private readonly rate = new FrameRate();
  private newest: Uint8Array | null = null; // the file of what is drawn
  private waiting: Uint8Array | null = null;
  private isDecoding = false;
  private measuredAt = -Infinity;
  private painted = 0;
  private measured = 0; // the one of those painted that was measured last
  private forgotten = 0; // times
  private isClosed = false;

  // `onHistogram` is called a few times a second, `onSize` when pictures come in another size than before.
  constructor(
    private readonly canvas: HTMLCanvasElement,
    private readonly onHistogram: (histogram: Histogram) => void,
    private readonly onSize: (width: number, height: number) => void,
  ) {}

  // While one is being decoded only the newest of those that come waits.
  take(jpeg: Uint8Array): void {
    this.waiting = jpeg;
    if (!this.isDecoding) {
      this.isDecoding = true;
      void this.work();
    }
  }

  framesPerSecond(): number {
    return this.rate.at(performance.now());
  }

  shownFile(): Uint8Array | null {
    return this.newest;
  }

  // Draws what is shown now on another canvas, and says how bright it is.
  copyTo(canvas: HTMLCanvasElement): Kept | null {
    if (null === this.newest) {
      return null;
    }
    canvas.width = this.canvas.width;
    canvas.height = this.canvas.height;
    canvas.getContext('2d')?.drawImage(this.canvas, 0, 0);
    return { jpeg: this.newest, histogram: this.measure() };
  }

  // What has come and is not drawn yet stays undrawn. What is drawn stays, so that its levels are told whenever they were last.
  forget(): void {
    this.forgotten += 1;
    this.waiting = null;
    if (!this.isClosed && this.painted > this.measured) {
      this.tellHistogram();
    }
  }

  close(): void {
    this.isClosed = true;
    this.waiting = null;
  }

  private async work(): Promise<void> {
    while (null !== this.waiting) {
      const jpeg = this.waiting;
      const forgotten = this.forgotten;
      this.waiting = null;
      try {
        const bitmap = await createImageBitmap(new Blob([jpeg], { type: 'image/jpeg' }));
        if (!this.isClosed && forgotten === this.forgotten) {
          this.paint(jpeg, bitmap);
        }
        bitmap.close();
      } catch {
        // A file that is no picture is left out; the rate shows it.
      }
    }
    this.isDecoding = false;
  }

  private paint(jpeg: Uint8Array, bitmap: ImageBitmap): void {
    if (this.canvas.width !== bitmap.width || this.canvas.height !== bitmap.height || 0 === this.painted) {
      this.canvas.width = bitmap.width;
      this.canvas.height = bitmap.height;
      this.onSize(bitmap.width, bitmap.height);
    }
    this.canvas.getContext('2d')?.drawImage(bitmap, 0, 0);
    this.newest = jpeg;
    this.painted += 1;
    this.canvas.dataset['frames'] = String(this.painted);
    const now = performance.now();
    this.rate.add(now);
    if (now - this.measuredAt >= kMeasurePause) {
      this.measuredAt = now;
      this.tellHistogram();
    }
  }

  private tellHistogram(): void {
    this.measured = this.painted;
    this.onHistogram(this.measure());
  }

  private measure(): Histogram {
    const height = Math.max(1, Math.round((kMeasureWidth * this.canvas.height) / Math.max(1, this.canvas.width)));
    if (this.small.width !== kMeasureWidth || this.small.height !== height) {
      this.small.width = kMeasureWidth;
      this.small.height = height;
    }
    const context = this.small.getContext('2d', { willReadFrequently: true });
    if (null === context) {
      return histogramOf([]);
    }
    context.drawImage(this.canvas, 0, 0, kMeasureWidth, height);
    return histogramOf(context.getImageData(0, 0, kMeasureWidth, height).data);
  }
}
