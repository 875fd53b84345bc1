/** Runs a task with the next frame that the page draws. */
export type Schedule = (task: () => void) => void;

export const nextFrame: Schedule = (task) => void requestAnimationFrame(task);

/** Watchers that are told once for each frame, however much has changed. */
export class Watchers {
  private readonly watchers = new Set<() => void>();
  private announced = false;

  constructor(private readonly schedule: Schedule) {}

  add(watcher: () => void): () => void {
    this.watchers.add(watcher);
    return () => void this.watchers.delete(watcher);
  }

  /** Tells them later; just before, whoever announced it may bring its picture up to date. */
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
