/**
 * Repeats a task after changes: at once after the first, then at most once in each period, and never while it is under
 * way. The last change is always followed by a run.
 */
export class Throttled {
  private isPending = false;
  private isUnderWay = false;
  private isResting = false;
  private timer: ReturnType<typeof setTimeout> | undefined;

  constructor(
    private readonly task: () => Promise<unknown>,
    private readonly periodMs: number,
  ) {}

  readonly trigger = (): void => {
    this.isPending = true;
    this.runIfFree();
  };

  /** Forgets what is pending. A run under way is left alone. */
  readonly stop = (): void => {
    clearTimeout(this.timer);
    this.isPending = false;
    this.isResting = false;
  };

  private runIfFree(): void {
    if (!this.isPending || this.isUnderWay || this.isResting) return;
    this.isPending = false;
    this.isUnderWay = true;
    this.isResting = true;
    this.timer = setTimeout(() => {
      this.isResting = false;
      this.runIfFree();
    }, this.periodMs);
    const settle = () => {
      this.isUnderWay = false;
      this.runIfFree();
    };
    this.task().then(settle, settle); // whoever gave the task has seen its error
  }
}
