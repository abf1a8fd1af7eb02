import type { RefObject } from 'preact';
import { useEffect, useRef } from 'preact/hooks';

import { difference, type Histogram } from './histogram';

interface DividerProps {
  part: number; // 0 to 1: how much of the frame shows the picture from before
  frame: RefObject<HTMLElement>;
  onMove: (part: number) => void;
}

// The border between the picture from before, on its left, and the one of now.
export function Divider({ part, frame, onMove }: DividerProps) {
  const line = useRef<HTMLDivElement>(null);
  useEffect(() => {
    line.current?.style.setProperty('left', `${100 * part}%`);
  }, [part]);
  const moveTo = (clientX: number): void => {
    const box = frame.current?.getBoundingClientRect();
    if (undefined !== box && box.width > 0) {
      onMove(within((clientX - box.left) / box.width));
    }
  };
  return (
    <div
      ref={line}
      class="divider"
      role="slider"
      tabIndex={0}
      aria-label="Border between before and now"
      aria-orientation="horizontal"
      aria-valuemin={0}
      aria-valuemax={100}
      aria-valuenow={Math.round(100 * part)}
      aria-valuetext={`${Math.round(100 * part)} % before`}
      data-testid="picture-divider"
      onPointerDown={(event) => {
        event.stopPropagation();
        event.currentTarget.setPointerCapture(event.pointerId);
      }}
      onPointerMove={(event) => {
        if (event.currentTarget.hasPointerCapture(event.pointerId)) {
          event.stopPropagation();
          moveTo(event.clientX);
        }
      }}
      onDblClick={(event) => event.stopPropagation()}
      onKeyDown={(event) => {
        const to = keyPart(part, event.key, event.shiftKey);
        if (undefined !== to) {
          event.preventDefault();
          event.stopPropagation();
          onMove(to);
        }
      }}
    >
      <span class="divider-grip" aria-hidden="true" />
    </div>
  );
}

function within(part: number): number {
  return Math.min(1, Math.max(0, part));
}

function keyPart(part: number, key: string, isLarge: boolean): number | undefined {
  const step = isLarge ? 0.1 : 0.02;
  switch (key) {
    case 'ArrowLeft':
    case 'ArrowDown':
      return within(part - step);
    case 'ArrowRight':
    case 'ArrowUp':
      return within(part + step);
    case 'Home':
      return 0;
    case 'End':
      return 1;
    default:
      return undefined;
  }
}

// How much the levels differ, in words.
export function CompareText({ before, now }: { before: Histogram; now: Histogram }) {
  const change = (a: number, b: number): string => {
    const by = Math.round(b) - Math.round(a);
    return by > 0 ? `+${by}` : String(by).replace('-', '\u2212');
  };
  return (
    <p class="compare-text" data-testid="picture-compare-text">
      Mean level: before {Math.round(before.mean.luminance)}, now {Math.round(now.mean.luminance)},{' '}
      {difference(before.mean.luminance, now.mean.luminance)}{' '}
      <span class="muted">
        (red {change(before.mean.red, now.mean.red)}, green {change(before.mean.green, now.mean.green)}, blue{' '}
        {change(before.mean.blue, now.mean.blue)})
      </span>
    </p>
  );
}
