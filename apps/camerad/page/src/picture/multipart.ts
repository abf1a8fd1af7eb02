// Takes single JPEG files out of a multipart/x-mixed-replace stream, in whatever pieces the network delivers it.
//
// The server says the length of every part, so nothing is ever searched for inside a picture. What does not look like
// such a stream, or promises more than kMostBytes, is an error: the reader is then finished.

const kMostBytes = 8 * 1024 * 1024;
const kMostHeader = 4096;

export class MultipartReader {
  private waiting: Uint8Array = new Uint8Array(0);
  private used = 0;
  private bodyLength = -1;

  // Returns the pictures that became complete with this piece, oldest first.
  push(piece: Uint8Array): Uint8Array[] {
    this.append(piece);
    const pictures: Uint8Array[] = [];
    for (;;) {
      if (this.bodyLength < 0 && !this.readHeader()) {
        return pictures;
      }
      if (this.used < this.bodyLength) {
        return pictures;
      }
      pictures.push(this.waiting.slice(0, this.bodyLength));
      this.drop(this.bodyLength);
      this.bodyLength = -1;
    }
  }

  private append(piece: Uint8Array): void {
    const needed = this.used + piece.length;
    if (needed > this.waiting.length) {
      const room = Math.max(needed, this.bodyLength, 2 * this.waiting.length);
      const grown = new Uint8Array(Math.min(room, needed + kMostBytes));
      grown.set(this.waiting.subarray(0, this.used));
      this.waiting = grown;
    }
    this.waiting.set(piece, this.used);
    this.used = needed;
  }

  private drop(count: number): void {
    this.waiting.copyWithin(0, count, this.used);
    this.used -= count;
  }

  // True when a part's header was complete; the body begins with the next byte.
  private readHeader(): boolean {
    const end = this.endOfHeader();
    if (end < 0) {
      if (this.used > kMostHeader) {
        throw new Error('The picture stream has no part header where one should be.');
      }
      return false;
    }
    const text = new TextDecoder('latin1').decode(this.waiting.subarray(0, end));
    this.drop(end + 4);
    const length = /(?:^|\r\n)content-length:[ \t]*(\d{1,9})[ \t]*(?:\r\n|$)/i.exec(text);
    if (!/^(?:\r\n)*--/.test(text) || null === length) {
      throw new Error('The picture stream does not say how long a picture is.');
    }
    this.bodyLength = Number(length[1]);
    if (this.bodyLength > kMostBytes) {
      throw new Error('A picture of the stream is too large.');
    }
    return true;
  }

  private endOfHeader(): number {
    const last = Math.min(this.used, kMostHeader) - 4;
    // The line break that ends the part before is not the end of this header.
    let at = 0;
    while (at + 1 < this.used && 13 === this.waiting[at] && 10 === this.waiting[at + 1]) {
      at += 2;
    }
    for (; at <= last; at += 1) {
      if (
        13 === this.waiting[at] &&
        10 === this.waiting[at + 1] &&
        13 === this.waiting[at + 2] &&
        10 === this.waiting[at + 3]
      ) {
        return at;
      }
    }
    return -1;
  }
}
