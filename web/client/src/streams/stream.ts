import { callSafely } from '../safely.js';
import { onAbort, reasonOf } from '../signals.js';
import { Changes } from './changes.js';
import { Loop } from './loop.js';
import type { Update, Watch, WatchListener, WatchOptions } from './watch.js';

/** The records of a watch, and everybody who is told of their changes. */
export class Stream<Item> implements Watch<Item> {
  readonly ready: Promise<void>;
  private readonly records = new Map<string, Item>();
  private readonly untold = new Changes<Item>(); // to the listener
  private readonly loops = new Set<Loop<Item>>();
  private readonly stopTasks: (() => void)[] = [];
  private settleReady!: { resolve(): void; reject(reason: unknown): void };
  private loaded = false;
  private ended = false;
  private error: unknown;

  constructor(
    private readonly listener: WatchListener<Item> | undefined,
    { signal }: WatchOptions = {},
  ) {
    this.ready = new Promise((resolve, reject) => (this.settleReady = { resolve, reject }));
    this.ready.catch(() => {}); // a page that does not wait for it need not handle its error
    if (signal?.aborted) this.end(reasonOf(signal));
    else this.onStop(onAbort(signal, () => this.end(reasonOf(signal!))));
  }

  get items(): ReadonlyMap<string, Item> {
    return this.records;
  }

  get isStopped(): boolean {
    return this.ended;
  }

  readonly stop = (): void => this.end(new Error('the watch was stopped before its first snapshot'));

  [Symbol.asyncIterator](): Loop<Item> {
    const loop = new Loop(this.items, (left) => this.leave(left));
    if (this.ended) loop.end(this.error);
    else {
      this.loops.add(loop);
      for (const [id, item] of this.records) loop.changes.put(id, item, true);
      if (this.loaded || this.records.size > 0) loop.changes.reloaded();
    }
    return loop;
  }

  /** Runs the task when the watch stops, or at once if it has. */
  onStop(task: () => void): void {
    if (this.ended) task();
    else this.stopTasks.push(task);
  }

  put(id: string, item: Item): void {
    const isNew = !this.records.has(id);
    this.records.set(id, item);
    for (const changes of this.receivers()) changes.put(id, item, isNew);
  }

  drop(id: string): void {
    if (!this.records.delete(id)) return;
    for (const changes of this.receivers()) changes.drop(id);
  }

  /** Drops the oldest records beyond the limit. */
  limitTo(limit: number): void {
    while (this.records.size > limit) {
      const [oldest] = this.records.keys();
      this.drop(oldest!);
    }
  }

  /** Replaces all records. */
  replace(all: ReadonlyMap<string, Item>): void {
    for (const id of [...this.records.keys()]) if (!all.has(id)) this.drop(id);
    const known = new Set(this.records.keys());
    this.records.clear(); // their order may have changed
    for (const [id, item] of all) {
      this.records.set(id, item);
      for (const changes of this.receivers()) changes.put(id, item, !known.has(id));
    }
    this.tellSnapshot();
    this.isReady();
  }

  tellSnapshot(): void {
    this.loaded = true;
    for (const changes of this.receivers()) changes.reloaded();
    this.tell();
  }

  /** Tells what has changed since the last time. */
  tell(): void {
    const { listener, untold } = this;
    if (listener && !untold.isEmpty) {
      const update: Update<Item> = untold.take(this.items);
      callSafely(() => listener(update));
    }
    for (const loop of [...this.loops]) loop.wake();
  }

  isReady(): void {
    this.settleReady.resolve();
  }

  /** The first snapshot could not be had. Later ones may still come. */
  isNotReady(reason: unknown): void {
    this.settleReady.reject(reason);
  }

  /** The connection has ended for good: loops throw the error. */
  breakOff(error: unknown): void {
    this.error = error;
    this.end(error);
  }

  private end(notReady: unknown): void {
    if (this.ended) return;
    this.ended = true;
    this.settleReady.reject(notReady);
    for (const task of this.stopTasks.splice(0)) task();
    for (const loop of this.loops) loop.end(this.error);
    this.loops.clear();
  }

  private leave(loop: Loop<Item>): void {
    if (this.loops.delete(loop) && this.loops.size === 0 && !this.listener) this.stop();
  }

  private *receivers(): Iterable<Changes<Item>> {
    if (this.listener) yield this.untold;
    for (const loop of this.loops) yield loop.changes;
  }
}
