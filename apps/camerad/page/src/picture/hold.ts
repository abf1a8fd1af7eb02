// A button that goes on for as long as it is held: a step at once, and the next one when the last has been answered and a
// little time has passed. A short press is exactly one step.

export class Hold {
  private held = false;
  private isRunning = false;

  // `step` resolves to whether there is to be another. It must not reject.
  constructor(
    private readonly step: () => Promise<boolean>,
    private readonly pause = 120, // milliseconds from the beginning of a step to that of the next
    private readonly firstPause = 350, // the same for the first: who only taps does not get two
  ) {}

  begin(): void {
    this.held = true;
    if (!this.isRunning) {
      this.isRunning = true;
      void this.run();
    }
  }

  end(): void {
    this.held = false;
  }

  private async run(): Promise<void> {
    let pause = this.firstPause;
    do {
      const began = Date.now();
      if (!(await this.step())) {
        this.held = false;
        break;
      }
      const rest = pause - (Date.now() - began);
      pause = this.pause;
      if (this.held && rest > 0) {
        await new Promise((resolve) => setTimeout(resolve, rest));
      }
    } while (this.held);
    this.isRunning = false;
  }
}
