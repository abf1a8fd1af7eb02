// The windows of schemes over a day, and the rule by which the camera takes one: of all schemes the first whose window
// has begun and not ended; where there is none, scheme 0, or on some cameras scheme 0 by day and scheme 1 at night. A
// window does not go on past midnight.
import type { Gaps, TimeWindow } from '../types';

export const kDay = 1440; // minutes

// A window in minutes of the day. Its end is not part of it.
export interface Span {
  from: number;
  to: number;
}

// "HH:MM", in minutes. The camera compares hour * 100 + minute, so that 8:75 is before 9:00 and after 8:59: for every
// question it is 9:00.
export function minutesOf(time: string): number {
  const [hour = 0, minute = 0] = time.split(':').map(Number);
  return 60 * hour + Math.min(60, minute);
}

export function timeText(minutes: number): string {
  const two = (value: number) => String(value).padStart(2, '0');
  return `${two(Math.floor(minutes / 60))}:${two(minutes % 60)}`;
}

export function spanOf(window: TimeWindow): Span {
  return { from: minutesOf(window.start), to: minutesOf(window.end) };
}

// A window in the four numbers that a scheme holds: hour and minute of its start, hour and minute of its end.
export type WindowNumbers = [number, number, number, number];

export function spanOfNumbers([startHour, startMinute, endHour, endMinute]: WindowNumbers): Span {
  return spanOf({ start: `${startHour}:${startMinute}`, end: `${endHour}:${endMinute}` });
}

export function windowOf(span: Span): TimeWindow {
  return { start: timeText(span.from), end: timeText(span.to) };
}

// A time as a person types it: "6", "6:30", "06:30", "0630", "24:00". Undefined when it is none.
export function parseTime(text: string): number | undefined {
  const match = /^\s*(\d{1,2})(?:\s*[:.h]\s*(\d{2})?|(\d{2}))?\s*$/.exec(text);
  if (null === match) {
    return undefined;
  }
  const hour = Number(match[1]);
  const minute = Number(match[2] ?? match[3] ?? 0);
  return 59 < minute || 99 < hour ? undefined : 60 * hour + minute;
}

// Why a window could not be stored: the camera's number for it and a sentence. Undefined when it can.
export function objection(span: Span): { code: 505 | 506 | 507; text: string } | undefined {
  const from = timeText(span.from);
  const to = timeText(span.to);
  if (kDay < span.from) {
    return { code: 505, text: `It starts at ${from}, but a day ends at 24:00. The camera would not store it.` };
  }
  if (kDay < span.to) {
    return { code: 506, text: `It ends at ${to}, but a day ends at 24:00. The camera would not store it.` };
  }
  if (span.from >= span.to) {
    const night =
      span.from > span.to && 0 < span.to
        ? ' A window cannot go past midnight: let one scheme run until 24:00 and another one from 00:00.'
        : '';
    return { code: 507, text: `It starts at ${from} and ends at ${to}, so it would never be in force.${night}` };
  }
  return undefined;
}

// A piece of the day in which the same windows match.
export interface Piece extends Span {
  scheme: number | null; // in force; null: day and night decide
  matching: number[]; // every scheme whose window matches; none: a gap
}

// The day in pieces, by the rule.
export function dayOf(spans: Span[], gaps: Gaps): Piece[] {
  const edges = new Set([0, kDay]);
  for (const { from, to } of spans) {
    [from, to].forEach((edge) => 0 < edge && kDay > edge && edges.add(edge));
  }
  const sorted = [...edges].sort((a, b) => a - b);
  const pieces: Piece[] = [];
  for (let index = 0; index + 1 < sorted.length; ++index) {
    const from = sorted[index] as number;
    const to = sorted[index + 1] as number;
    const matching = spans.flatMap((span, scheme) => (span.from <= from && from < span.to ? [scheme] : []));
    const last = pieces.at(-1);
    if (undefined !== last && last.matching.join() === matching.join()) {
      last.to = to;
    } else {
      pieces.push({ from, to, scheme: matching[0] ?? inGap(gaps), matching });
    }
  }
  return pieces;
}

const inGap = (gaps: Gaps): number | null => ('day-night' === gaps ? null : 0);

export function schemeAt(spans: Span[], gaps: Gaps, minute: number): number | null {
  const found = spans.findIndex((span) => span.from <= minute && minute < span.to);
  return 0 > found ? inGap(gaps) : found;
}

// Who is in force in a piece of the day. Names: of all schemes, the factory's last.
export function inForceIn(piece: Piece, names: string[]): string {
  const called = (scheme: number) => names[scheme] ?? `Scheme ${scheme + 1}`;
  return null === piece.scheme ? `${called(0)} by day, ${called(1)} at night` : called(piece.scheme);
}

// What a person should know of the day: where no window matches, where several do, which windows never count.
export function remarks(spans: Span[], names: string[], rule: Gaps): string[] {
  const called = (scheme: number) => names[scheme] ?? `Scheme ${scheme + 1}`;
  const between = ({ from, to }: Span) => `${timeText(from)} to ${timeText(to)}`;
  const pieces = dayOf(spans, rule);
  const texts: string[] = [];
  const gaps = pieces.filter((piece) => 0 === piece.matching.length);
  if (0 < gaps.length) {
    const there =
      'day-night' === rule
        ? `day and night decide there, ${inForceIn(gaps[0] as Piece, names)}.`
        : `${called(0)}, the first scheme, is in force there.`;
    texts.push(`No window covers ${listed(gaps.map(between))}: ${there}`);
  }
  const overlaps = new Map<string, Piece[]>();
  for (const piece of pieces.filter((candidate) => 1 < candidate.matching.length)) {
    const key = piece.matching.join();
    overlaps.set(key, [...(overlaps.get(key) ?? []), piece]);
  }
  for (const same of overlaps.values()) {
    const schemes = (same[0] as Piece).matching;
    texts.push(
      `${listed(schemes.map(called))} overlap from ${listed(same.map(between))}: ` +
        `${called(schemes[0] as number)} stands first and is in force.`,
    );
  }
  const covered = spans.flatMap((span, scheme) =>
    undefined === objection(span) && !pieces.some((piece) => piece.matching[0] === scheme) ? [called(scheme)] : [],
  );
  if (1 === covered.length) {
    texts.push(`${covered[0] ?? ''} is never in force by its window: schemes before it cover all of it.`);
  } else if (1 < covered.length) {
    texts.push(`${listed(covered)} are never in force by their windows: schemes before them cover all of them.`);
  }
  return texts;
}

export function listed(texts: string[]): string {
  return texts.length < 2 ? (texts[0] ?? '') : `${texts.slice(0, -1).join(', ')} and ${texts.at(-1) ?? ''}`;
}

export type Part = 'from' | 'to' | 'whole';

// Moves an edge of a window, or the whole of it. What comes out can always be stored: an edge stops a minute before the
// other one, a window stays in the day.
export function moved(span: Span, part: Part, to: number): Span {
  const limit = (value: number, low: number, high: number) => Math.max(low, Math.min(high, Math.round(value)));
  if ('from' === part) {
    return { from: limit(to, 0, Math.min(kDay, span.to) - 1), to: span.to };
  }
  if ('to' === part) {
    return { from: span.from, to: limit(to, span.from + 1, kDay) };
  }
  const length = Math.max(1, Math.min(kDay, span.to - span.from));
  const from = limit(to, 0, kDay - length);
  return { from, to: from + length };
}

export function snapped(minutes: number, grid: number): number {
  return Math.round(minutes / grid) * grid;
}
