// How bright a picture is: counts of the levels 0 to 255 for luminance and for each colour.

export interface Levels {
  luminance: number;
  red: number;
  green: number;
  blue: number;
}

export interface Histogram {
  pixels: number;
  luminance: Uint32Array;
  red: Uint32Array;
  green: Uint32Array;
  blue: Uint32Array;
  mean: Levels;
  black: number; // share of pixels, 0 to 1, at level 0 to 3
  white: number; // share of pixels, 0 to 1, at level 252 to 255
}

// rgba: four bytes a pixel, as a canvas hands them out.
export function histogramOf(rgba: ArrayLike<number>): Histogram {
  const luminance = new Uint32Array(256);
  const red = new Uint32Array(256);
  const green = new Uint32Array(256);
  const blue = new Uint32Array(256);
  const pixels = Math.floor(rgba.length / 4);
  for (let i = 0; i < 4 * pixels; i += 4) {
    const r = rgba[i] as number;
    const g = rgba[i + 1] as number;
    const b = rgba[i + 2] as number;
    red[r] = (red[r] as number) + 1;
    green[g] = (green[g] as number) + 1;
    blue[b] = (blue[b] as number) + 1;
    // The weights of television, in 65536ths; their sum is 65536, so white stays 255.
    const y = (19595 * r + 38470 * g + 7471 * b + 32768) >> 16;
    luminance[y] = (luminance[y] as number) + 1;
  }
  return {
    pixels,
    luminance,
    red,
    green,
    blue,
    mean: { luminance: meanOf(luminance), red: meanOf(red), green: meanOf(green), blue: meanOf(blue) },
    black: shareOf(luminance, 0, 3),
    white: shareOf(luminance, 252, 255),
  };
}

function meanOf(counts: Uint32Array): number {
  let sum = 0;
  let pixels = 0;
  counts.forEach((count, level) => {
    sum += count * level;
    pixels += count;
  });
  return 0 === pixels ? 0 : sum / pixels;
}

function shareOf(counts: Uint32Array, from: number, to: number): number {
  let within = 0;
  let pixels = 0;
  counts.forEach((count, level) => {
    pixels += count;
    within += level >= from && level <= to ? count : 0;
  });
  return 0 === pixels ? 0 : within / pixels;
}

// Heights of a curve, 0 to 1 for each level. The root keeps rare levels visible beside one that is everywhere.
export function heights(counts: Uint32Array): number[] {
  const most = counts.reduce((a, b) => Math.max(a, b), 0);
  return Array.from(counts, (count) => (0 === most ? 0 : Math.sqrt(count / most)));
}

export function describe(histogram: Histogram): string {
  const percent = (share: number): string => `${Math.round(100 * share)} %`;
  return (
    `Mean level ${Math.round(histogram.mean.luminance)} of 255; ` +
    `${percent(histogram.black)} black, ${percent(histogram.white)} white`
  );
}

// "brighter by 16", of two mean levels.
export function difference(before: number, after: number): string {
  const by = Math.round(after) - Math.round(before);
  if (0 === by) {
    return 'no difference';
  }
  return by > 0 ? `brighter by ${by}` : `darker by ${-by}`;
}
