import type { Update } from './watch.js';

/**
 * What somebody has not been told yet. However much happens, it grows no larger than the records themselves: a record that
 * came and left meanwhile is not mentioned at all.
 */
export class Changes<Item> {
  private kind: Update<Item>['kind'] = 'change';
  private readonly added = new Set<string>();
  private readonly changed = new Map<string, Item>();
  private readonly removed = new Set<string>();

  get isEmpty(): boolean {
    return this.kind === 'change' && this.changed.size === 0 && this.removed.size === 0;
  }

  put(id: string, item: Item, isNew: boolean): void {
    const wasKnown = this.removed.delete(id);
    if (isNew && !wasKnown) this.added.add(id);
    this.changed.set(id, item);
  }

  drop(id: string): void {
    this.changed.delete(id);
    if (!this.added.delete(id)) this.removed.add(id);
  }

  /** From here on this is a snapshot. */
  reloaded(): void {
    this.kind = 'snapshot';
  }

  /** Gives all changes as one update, and begins anew. */
  take(items: ReadonlyMap<string, Item>): Update<Item> {
    const update = { kind: this.kind, changed: [...this.changed.values()], removed: [...this.removed], items };
    this.kind = 'change';
    this.added.clear();
    this.changed.clear();
    this.removed.clear();
    return update;
  }
}
