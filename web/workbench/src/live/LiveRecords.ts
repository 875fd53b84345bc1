import { nextFrame, Watchers, type Schedule } from './frame';

/**
 * The latest records of a kind, updated by pushes. The later arrival is the newer state of a record, in a reply as in a
 * push. A burst is rendered once.
 */
export class LiveRecords<Item> {
  private readonly records = new Map<string, Item>(); // oldest first; a changed record keeps its place
  private shown: readonly Item[] = [];
  private readonly watchers: Watchers;

  constructor(
    private readonly idOf: (record: Item) => string,
    private readonly limit: number,
    schedule: Schedule = nextFrame,
  ) {
    this.watchers = new Watchers(schedule);
  }

  /** Replaces all records. The list is newest first, as the terminal's lists are. */
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
