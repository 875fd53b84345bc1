/** Runs a task with the next frame that the page draws. */
export type Schedule = (task: () => void) => void;

export const nextFrame: Schedule = (task) => void requestAnimationFrame(task);

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
