/** Repeats a call after changes: one call at a time, and one more if something changed during the call. */
export class Refetch {
  private underWay = false;
  private again = false;

  constructor(private readonly ask: () => Promise<unknown>) {}

  readonly trigger = (): void => {
    if (this.underWay) {
      this.again = true;
      return;
    }
    this.underWay = true;
    const settle = () => {
      this.underWay = false;
      if (!this.again) return;
      this.again = false;
      this.trigger();
    };
    this.ask().then(settle, settle); // the caller has seen the error already
  };
}
