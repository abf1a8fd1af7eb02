// Takes the bytes of an event stream apart (text/event-stream).

export interface StreamEvent {
  id: string | undefined;
  type: string;
  data: string;
}

const kLongest = 4 * 1024 * 1024; // of one event; the camera's are far shorter

// Feed it text as it comes; it hands back the events that are complete. Comment lines are ignored, as they only keep the
// connection alive.
export class EventParser {
  private rest = '';
  private id: string | undefined;
  private type = '';
  private data: string[] = [];

  push(text: string): StreamEvent[] {
    this.rest += text;
    if (kLongest < this.rest.length) {
      throw new Error('The event stream has a line that is too long.');
    }
    const found: StreamEvent[] = [];
    for (;;) {
      const end = this.rest.search(/[\r\n]/);
      // A carriage return at the very end may be the first half of a line's end.
      if (0 > end || ('\r' === this.rest[end] && end + 1 === this.rest.length)) {
        return found;
      }
      const line = this.rest.slice(0, end);
      this.rest = this.rest.slice(end + ('\r' === this.rest[end] && '\n' === this.rest[end + 1] ? 2 : 1));
      this.take(line, found);
    }
  }

  private take(line: string, found: StreamEvent[]): void {
    if ('' === line) {
      if (0 < this.data.length) {
        found.push({ id: this.id, type: '' === this.type ? 'message' : this.type, data: this.data.join('\n') });
      }
      this.type = '';
      this.data = [];
      return;
    }
    const colon = line.indexOf(':');
    if (0 === colon) {
      return;
    }
    const field = 0 > colon ? line : line.slice(0, colon);
    const value = 0 > colon ? '' : line.slice(colon + 1).replace(/^ /, '');
    if ('event' === field) {
      this.type = value;
    } else if ('data' === field) {
      this.data.push(value);
    } else if ('id' === field && !value.includes('\0')) {
      this.id = value;
    }
  }
}
