// Sends values to the camera, at most one at a time for each key. What is set meanwhile waits, and only the newest of it
// is sent: a slider that is dragged makes one request after the other, and the last position always arrives.

export class NewestWins<V> {
  private readonly running = new Set<number>();
  private readonly waiting = new Map<number, V>();

  // `deliver` must not reject. `rested` is called when nothing of a key is on its way any more.
  constructor(
    private readonly deliver: (key: number, value: V) => Promise<void>,
    private readonly rested: (key: number) => void = () => undefined,
  ) {}

  set(key: number, value: V): void {
    if (this.running.has(key)) {
      this.waiting.set(key, value);
      return;
    }
    this.running.add(key);
    void this.run(key, value);
  }

  // Forgets what waits for a key; what is on its way arrives all the same.
  drop(key: number): void {
    this.waiting.delete(key);
  }

  isBusy(key: number): boolean {
    return this.running.has(key);
  }

  private async run(key: number, first: V): Promise<void> {
    let value = first;
    for (;;) {
      await this.deliver(key, value);
      const next = this.waiting.get(key);
      if (!this.waiting.has(key)) {
        break;
      }
      this.waiting.delete(key);
      value = next as V;
    }
    this.running.delete(key);
    this.rested(key);
  }
}
