// Which lines of the log are shown, and how a line looks as text.

import type { LogLine } from './ring';

export interface LogFilter {
  text: string;
  driver: boolean;
  video: boolean;
  message: boolean;
  failedOnly: boolean;
  channel: number; // 0: any
}

export const kEverything: LogFilter = {
  text: '',
  driver: true,
  video: true,
  message: true,
  failedOnly: false,
  channel: 0,
};

export function isFailure(line: LogLine): boolean {
  return ('driver' === line.kind || 'video' === line.kind) && 0 !== line.result;
}

// What a person reads and searches: everything in one line.
export function lineText(line: LogLine): string {
  return [timeOf(line), kindWord(line.kind), line.channel > 0 ? `ch${line.channel}` : '', line.text]
    .filter((part) => '' !== part)
    .join('  ');
}

export function timeOf(line: LogLine): string {
  const at = line.time.indexOf('T');
  return at < 0 ? line.time : line.time.slice(at + 1);
}

export function kindWord(kind: string): string {
  switch (kind) {
    case 'driver':
      return 'driver';
    case 'video':
      return 'video';
    case 'message':
      return 'message';
    default:
      return '';
  }
}

// What the command or key of a line is called; empty where it has no name.
export function nameOf(line: LogLine, names: ReadonlyMap<number, string>): string {
  return 'driver' === line.kind || 'video' === line.kind ? (names.get(line.command) ?? '') : '';
}

function kindShown(filter: LogFilter, kind: string): boolean {
  switch (kind) {
    case 'driver':
      return filter.driver;
    case 'video':
      return filter.video;
    case 'message':
      return filter.message;
    default:
      return true;
  }
}

// The words of a filter: what lies between blanks, or between quotation marks, blanks and all. The last mark may be missing.
function wordsOf(text: string): { wanted: string[]; unwanted: string[] } {
  const wanted: string[] = [];
  const unwanted: string[] = [];
  for (const [, minus = '', phrase, word = ''] of text.toLowerCase().matchAll(/(-?)(?:"([^"]*)"?|([^\s"]+))/g)) {
    // -5 is a result, and a minus by itself a word that is not there yet.
    const isNumber = undefined === phrase && /^\d/.test(word);
    const what = (isNumber ? minus : '') + (phrase ?? word);
    if ('' !== what && '-' !== what) {
      ('-' === minus && !isNumber ? unwanted : wanted).push(what);
    }
  }
  return { wanted, unwanted };
}

// Every word of the filter must be somewhere in the line or in what its number is called; "-word" must not.
export function matcher(filter: LogFilter, names: ReadonlyMap<number, string> = new Map()): (line: LogLine) => boolean {
  const { wanted, unwanted } = wordsOf(filter.text);
  return (line) => {
    if (!kindShown(filter, line.kind) || (filter.failedOnly && !isFailure(line))) {
      return false;
    }
    if (0 !== filter.channel && 0 !== line.channel && filter.channel !== line.channel) {
      return false;
    }
    if (0 === wanted.length + unwanted.length) {
      return true;
    }
    const text =
      `${lineText(line)} ${line.command || ''} ${line.option} ${line.result} ${nameOf(line, names)}`.toLowerCase();
    return wanted.every((word) => text.includes(word)) && !unwanted.some((word) => text.includes(word));
  };
}

export function isEverything(filter: LogFilter): boolean {
  return (
    '' === filter.text.trim() &&
    filter.driver &&
    filter.video &&
    filter.message &&
    !filter.failedOnly &&
    0 === filter.channel
  );
}

// The rows that have to be drawn, of rows that are all equally high: those that can be seen, and a few more.
export function visibleRows(
  rows: number,
  rowHeight: number,
  scrolled: number,
  height: number,
  more = 8,
): { from: number; to: number } {
  if (rows <= 0 || rowHeight <= 0) {
    return { from: 0, to: 0 };
  }
  const first = Math.floor(Math.max(0, scrolled) / rowHeight) - more;
  const count = Math.ceil(Math.max(0, height) / rowHeight) + 2 * more + 1;
  const from = Math.max(0, Math.min(first, rows - count));
  return { from, to: Math.min(rows, from + count) };
}
