import { nextFrame, Watchers, type Schedule } from './frame';

/**
 * The latest records of a kind, kept up to date by pushes. What arrives later is the newer state of a record, be it in a
 * reply or in a push. A burst is drawn once.
 */
export class LiveRecords<Item> {
  private readonly records = new Map<string, Item>(); // oldest first; a change keeps its place
  private shown: readonly Item[] = [];
  private readonly watchers: Watchers;

  constructor(
    private readonly idOf: (record: Item) => string,
    private readonly limit: number,
    schedule: Schedule = nextFrame,
  ) {
    this.watchers = new Watchers(schedule);
  }

  /** Takes the place of everything there was. Newest first, as the terminal lists them. */
  load(list: readonly Item[]): void {
    this.records.clear();
    for (const record of [...list].reverse()) this.records.set(this.idOf(record), record);
    this.changed();
  }

  take(batch: readonly Item[]): void {
    for (const record of batch) this.records.set(this.idOf(record), record);
    this.changed();
  }

  /** Newest first; the same array until something changes. */
  readonly current = (): readonly Item[] => this.shown;

  readonly watch = (watcher: () => void): (() => void) => this.watchers.add(watcher);

  private changed(): void {
    for (const id of this.records.keys()) {
      if (this.records.size <= this.limit) break;
      this.records.delete(id);
    }
    this.watchers.announce(() => (this.shown = [...this.records.values()].reverse()));
  }
}
