import { listenTo, type Phase } from './connection';
import type { Snapshot, TrafficStore } from './TrafficStore';

/** Entries come in bursts; the page is drawn at most so often, and without entries as often as times go on. */
const drawMs = 250;
const idleMs = 1000;

export interface Live {
  phase: Phase;
  traffic: Snapshot;
}

/** What the page draws: the state of the connection and a snapshot of the traffic. */
export class LiveTraffic {
  private live: Live;
  private readonly watchers = new Set<() => void>();
  private timer: number | undefined;

  constructor(
    private readonly store: TrafficStore,
    address: string,
  ) {
    this.live = { phase: 'connecting', traffic: store.snapshot() };
    listenTo(address, {
      onPhase: (phase) => {
        if (phase === 'open') store.restart();
        this.live = { ...this.live, phase };
        this.drawIn(0);
      },
      onEntries: (entries) => {
        store.add(entries);
        this.drawIn(drawMs);
      },
    });
    setInterval(() => this.drawIn(0), idleMs);
  }

  readonly current = (): Live => this.live;

  readonly watch = (watcher: () => void): (() => void) => {
    this.watchers.add(watcher);
    return () => this.watchers.delete(watcher);
  };

  clear(): void {
    this.store.clear();
    this.drawIn(0);
  }

  private drawIn(delayMs: number): void {
    this.timer ??= window.setTimeout(() => {
      this.timer = undefined;
      this.live = { ...this.live, traffic: this.store.snapshot() };
      this.watchers.forEach((watcher) => watcher());
    }, delayMs);
  }
}
