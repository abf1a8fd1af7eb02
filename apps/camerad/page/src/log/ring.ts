// The newest lines of the camera's log, in order of their numbers, each once.
//
// Lines come from two places that overlap: the list that is asked for at the start, and events, of which messages arrive
// before the driver calls that were made just before them. So a line is put where its number belongs.

export interface LogLine {
  number: number;
  time: string;
  kind: string; // "driver", "video", "message"; "gap" for lines that are not here
  channel: number;
  command: number;
  option: string;
  result: number;
  text: string;
}

export const kMostLines = 2000;

export class LogRing {
  private lines: LogLine[] = [];
  private newest = 0;
  private newestOne: LogLine | undefined;
  // Numbers below have been thrown away or cleared; they do not come back.
  private floor = 0;
  // Below, nothing that is missing is asked for any more.
  private givenUp = 0;
  // Grows with every change.
  version = 0;
  // Lines that were new, since the page started.
  received = 0;

  constructor(private readonly most = kMostLines) {}

  get all(): readonly LogLine[] {
    return this.lines;
  }

  get last(): number {
    return this.newest;
  }

  // The line with the highest number that ever came, even when it was cleared away; undefined while there was none.
  get newestLine(): LogLine | undefined {
    return this.newestOne;
  }

  // Returns how many lines were new.
  add(batch: readonly LogLine[]): number {
    let added = 0;
    for (const line of batch) {
      added += this.insert(line) ? 1 : 0;
    }
    // Half as much again before the oldest go: a shift of everything for each batch would cost more than it keeps.
    if (this.lines.length > this.most + this.most / 2) {
      this.cut();
    }
    if (added > 0) {
      this.version += 1;
      this.received += added;
    }
    return added;
  }

  // Tells that so many lines after the newest one did not reach this page.
  addGap(count: number): void {
    if (count <= 0) {
      return;
    }
    const before = this.lines[this.lines.length - 1];
    this.lines.push({
      number: this.newest + 0.5,
      time: before?.time ?? '',
      kind: 'gap',
      channel: 0,
      command: 0,
      option: '',
      result: 0,
      text: `${count} ${1 === count ? 'line was' : 'lines were'} left out: more came than could be sent`,
    });
    this.version += 1;
  }

  // The lines that are shown, at most as many as were asked for.
  shown(): readonly LogLine[] {
    if (this.lines.length > this.most) {
      this.cut();
    }
    return this.lines;
  }

  // The number after which the first line is missing that is worth asking for; undefined when none is.
  missingAfter(): number | undefined {
    let before: number | undefined;
    for (const line of this.shown()) {
      if ('gap' !== line.kind) {
        if (undefined !== before && line.number > before + 1 && before >= this.givenUp) {
          return before;
        }
        before = line.number;
      }
    }
    // Lines may be missing behind the newest one, too.
    const last = this.lines[this.lines.length - 1];
    return undefined !== before && 'gap' === last?.kind && before >= this.givenUp ? before : undefined;
  }

  // Puts lines in that follow without a break on the one with that number; what was said to be left out between them is
  // here now. What the camera does not have either is not asked for again.
  fill(after: number, batch: readonly LogLine[]): void {
    const first = batch[0]?.number ?? Infinity;
    const last = batch[batch.length - 1]?.number ?? after;
    this.givenUp = Math.max(this.givenUp, first > after + 1 ? after + 1 : 0);
    this.lines = this.lines.filter(
      (line) => 'gap' !== line.kind || line.number < Math.max(first - 1, after) || line.number > last,
    );
    this.add(batch);
    this.version += 1;
  }

  clear(): void {
    this.floor = this.newest;
    this.lines = [];
    this.version += 1;
  }

  // The camera's process began anew and counts from 1 again.
  restart(): void {
    this.lines = [];
    this.newest = 0;
    this.newestOne = undefined;
    this.floor = 0;
    this.givenUp = 0;
    this.version += 1;
  }

  private cut(): void {
    const gone = this.lines.splice(0, this.lines.length - this.most);
    this.floor = Math.max(this.floor, Math.floor(gone[gone.length - 1]?.number ?? 0));
  }

  private insert(line: LogLine): boolean {
    if (!(line.number > this.floor)) {
      return false;
    }
    if (line.number > this.newest) {
      this.newest = line.number;
      this.newestOne = line;
      this.lines.push(line);
      return true;
    }
    // Late lines belong near the end.
    let at = this.lines.length;
    while (at > 0 && (this.lines[at - 1] as LogLine).number > line.number) {
      at -= 1;
    }
    if (at > 0 && (this.lines[at - 1] as LogLine).number === line.number) {
      return false;
    }
    this.lines.splice(at, 0, line);
    return true;
  }
}
