/** Runs a task with the next frame that the page draws. */
export type Schedule = (task: () => void) => void;

export const nextFrame: Schedule = (task) => void requestAnimationFrame(task);

/**
 * Runs tasks with a frame, and then none for a while. All tasks that came meanwhile share the next frame: painting a page
 * costs more than its records, and nobody reads sixty prices a second.
 */
export class Paced {
  private waiting: (() => void)[] = [];
  private isResting = false;

  constructor(
    private readonly pauseMs: number,
    private readonly frame: Schedule = nextFrame,
  ) {}

  readonly run: Schedule = (task) => {
    this.waiting.push(task);
    if (this.waiting.length === 1 && !this.isResting) this.frame(this.runAll);
  };

  private readonly runAll = (): void => {
    this.isResting = true;
    setTimeout(() => {
      this.isResting = false;
      if (this.waiting.length > 0) this.frame(this.runAll);
    }, this.pauseMs);
    for (const task of this.waiting.splice(0)) task();
  };
}

/** When records are drawn: at once after a pause, and at most some twelve times a second, all of them together. */
export const nextDrawing: Schedule = new Paced(70).run;

/** Watchers that are notified once for each frame, however many changes there are. */
export class Watchers {
  private readonly watchers = new Set<() => void>();
  private announced = false;

  constructor(private readonly schedule: Schedule) {}

  add(watcher: () => void): () => void {
    this.watchers.add(watcher);
    return () => void this.watchers.delete(watcher);
  }

  /** Notifies the watchers with the next frame, after calling `prepare`. */
  announce(prepare: () => void): void {
    if (this.announced) return;
    this.announced = true;
    this.schedule(() => {
      this.announced = false;
      prepare();
      this.watchers.forEach((watcher) => watcher());
    });
  }
}
