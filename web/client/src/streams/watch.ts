/** What a listener of a watch is told, and what each round of a `for await` loop gets. */
export interface Update<Item> {
  /** `snapshot`: records were (re)loaded. `change`: the terminal pushed them. */
  readonly kind: 'snapshot' | 'change';
  /**
   * What came or changed. In the snapshot of a list these are all records; each symbol of `watchQuotes` has a snapshot of
   * its own.
   */
  readonly changed: readonly Item[];
  /** Identifiers of records that left. */
  readonly removed: readonly string[];
  /** All records by identifier, the oldest first. It is the same map each time, and it changes with the next update. */
  readonly items: ReadonlyMap<string, Item>;
}

/**
 * Records that follow the terminal. A `for await` loop over a watch gets everything that came since its last round as one
 * update. Leaving the last loop of a watch without listener stops the watch.
 */
export interface Watch<Item> extends AsyncIterable<Update<Item>> {
  /** All records by identifier, the oldest first: always the same map, always up to date. */
  readonly items: ReadonlyMap<string, Item>;
  /** Resolved with the first snapshot. Rejected when it could not be had, or when the watch was stopped before. */
  readonly ready: Promise<void>;
  /** Ends everything. `items` keeps its last state. */
  stop(): void;
}

export interface WatchOptions {
  /** Stops the watch. */
  readonly signal?: AbortSignal;
}

export type WatchListener<Item> = (update: Update<Item>) => void;
