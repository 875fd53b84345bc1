import { Changes } from './changes.js';
import type { Update } from './watch.js';

interface Waiter<Item> {
  resolve(result: IteratorResult<Update<Item>, undefined>): void;
  reject(reason: unknown): void;
}

/** A `for await` loop over a watch. */
export class Loop<Item> implements AsyncIterator<Update<Item>, undefined> {
  readonly changes = new Changes<Item>();
  private readonly waiters: Waiter<Item>[] = [];
  private ended = false;
  private error: unknown;

  constructor(
    private readonly items: ReadonlyMap<string, Item>,
    private readonly onLeave: (loop: Loop<Item>) => void,
  ) {}

  next(): Promise<IteratorResult<Update<Item>, undefined>> {
    return new Promise((resolve, reject) => {
      this.waiters.push({ resolve, reject });
      this.wake();
    });
  }

  /** The loop was left. */
  async return(): Promise<IteratorResult<Update<Item>, undefined>> {
    this.end();
    this.onLeave(this);
    return { done: true, value: undefined };
  }

  wake(): void {
    while (this.waiters.length > 0 && (this.ended || !this.changes.isEmpty)) {
      const { resolve, reject } = this.waiters.shift()!;
      if (!this.ended) resolve({ done: false, value: this.changes.take(this.items) });
      else if (this.error === undefined) resolve({ done: true, value: undefined });
      else reject(this.error);
      if (this.ended) this.error = undefined; // told once
    }
  }

  end(error?: unknown): void {
    if (this.ended) return;
    this.ended = true;
    this.error = error;
    this.wake();
  }
}
