import { useEffect, useRef } from 'preact/hooks';

import { describe, heights, type Histogram } from './histogram';

const kHeight = 96;

// The levels as curves: luminance as a filled shape, the colours as lines over it. The words say the same in short.
export function HistogramView({ histogram }: { histogram: Histogram | null }) {
  const canvas = useRef<HTMLCanvasElement>(null);
  useEffect(() => {
    const target = canvas.current;
    if (null !== target && null !== histogram) {
      draw(target, histogram);
    }
  }, [histogram]);
  const words = null === histogram ? 'No picture was measured yet' : describe(histogram);
  return (
    <div class="histogram" data-testid="picture-histogram">
      <canvas ref={canvas} width={512} height={2 * kHeight} role="img" aria-label={`Histogram. ${words}`} />
      <p class="muted histogram-words" data-testid="picture-histogram-text">
        <span>{words}</span>
        {null === histogram ? null : (
          <span class="histogram-colours">
            <b class="red">R</b> {Math.round(histogram.mean.red)} <b class="green">G</b>{' '}
            {Math.round(histogram.mean.green)} <b class="blue">B</b> {Math.round(histogram.mean.blue)}
          </span>
        )}
      </p>
    </div>
  );
}

function draw(canvas: HTMLCanvasElement, histogram: Histogram): void {
  const context = canvas.getContext('2d');
  if (null === context) {
    return;
  }
  const { width, height } = canvas;
  const style = getComputedStyle(canvas);
  const colour = (name: string): string => style.getPropertyValue(name).trim();
  const place = (level: number, part: number): [number, number] => [
    (level / 255) * width,
    height - part * (height - 4),
  ];
  context.clearRect(0, 0, width, height);
  context.strokeStyle = colour('--line');
  context.lineWidth = 1;
  for (const level of [64, 128, 192]) {
    context.beginPath();
    context.moveTo(...place(level, 0));
    context.lineTo(...place(level, 1));
    context.stroke();
  }
  const path = (counts: Uint32Array): void => {
    context.beginPath();
    heights(counts).forEach((part, level) => {
      if (0 === level) {
        context.moveTo(...place(level, part));
      } else {
        context.lineTo(...place(level, part));
      }
    });
  };
  path(histogram.luminance);
  context.lineTo(width, height);
  context.lineTo(0, height);
  context.fillStyle = colour('--histogram-fill');
  context.fill();
  context.lineWidth = 2;
  for (const [counts, name] of [
    [histogram.red, '--histogram-red'],
    [histogram.green, '--histogram-green'],
    [histogram.blue, '--histogram-blue'],
  ] as const) {
    path(counts);
    context.strokeStyle = colour(name);
    context.stroke();
  }
}
