// The part of the picture that is looked at: a magnification and the place of the picture below the frame.
//
// x and y are where the left upper corner of the magnified picture lies, in units of the frame's width and height: 0 is
// the frame's own corner, -1 a whole frame further left or up. A picture always covers its frame.

export interface View {
  scale: number;
  x: number;
  y: number;
}

export const kWhole: View = { scale: 1, x: 0, y: 0 };
export const kMostScale = 16;
export const kScaleStep = 1.5;

function within(value: number, least: number, most: number): number {
  return Math.min(most, Math.max(least, value));
}

function covering(scale: number, x: number, y: number): View {
  // Adding 0 turns -0 into 0.
  return { scale, x: within(x, 1 - scale, 0) + 0, y: within(y, 1 - scale, 0) + 0 };
}

// Magnifies so that the place of the picture below (atX, atY) of the frame, each 0 to 1, stays there.
export function zoomAt(view: View, factor: number, atX: number, atY: number): View {
  if (!(factor > 0) || !Number.isFinite(factor)) {
    return view;
  }
  const scale = within(view.scale * factor, 1, kMostScale);
  const grown = scale / view.scale;
  return covering(scale, atX - (atX - view.x) * grown, atY - (atY - view.y) * grown);
}

// Moves the picture by parts of the frame.
export function panBy(view: View, byX: number, byY: number): View {
  return covering(view.scale, view.x + byX, view.y + byY);
}

// What two fingers do that were at `from` and are at `to`, in parts of the frame.
export interface Fingers {
  x: number;
  y: number;
  apart: number;
}

export function fingersOf(ax: number, ay: number, bx: number, by: number): Fingers {
  return { x: (ax + bx) / 2, y: (ay + by) / 2, apart: Math.hypot(ax - bx, ay - by) };
}

export function pinch(view: View, from: Fingers, to: Fingers): View {
  const moved = panBy(view, to.x - from.x, to.y - from.y);
  return from.apart > 0 ? zoomAt(moved, to.apart / from.apart, to.x, to.y) : moved;
}

// The factor of a wheel's turn; a notch is about 100, a touch pad sends many small ones.
export function wheelFactor(delta: number): number {
  return Math.pow(2, -within(delta, -200, 200) / 200);
}

// What a key does to the view; undefined for a key that means nothing here.
export function keyView(view: View, key: string): View | undefined {
  const step = 0.1;
  switch (key) {
    case '+':
    case '=':
      return zoomAt(view, kScaleStep, 0.5, 0.5);
    case '-':
    case '_':
      return zoomAt(view, 1 / kScaleStep, 0.5, 0.5);
    case '0':
      return kWhole;
    default:
      break;
  }
  if (view.scale <= 1) {
    return undefined;
  }
  switch (key) {
    case 'ArrowLeft':
      return panBy(view, step, 0);
    case 'ArrowRight':
      return panBy(view, -step, 0);
    case 'ArrowUp':
      return panBy(view, 0, step);
    case 'ArrowDown':
      return panBy(view, 0, -step);
    default:
      return undefined;
  }
}

export function scaleText(scale: number): string {
  return `${scale >= 10 ? Math.round(scale) : Math.round(10 * scale) / 10}×`;
}
