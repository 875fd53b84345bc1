import type { Connection } from '@varnel/web-client';
import { nextDrawing, Watchers, type Schedule } from './frame';

/** The time of the newest quote of all securities. A quote that is much older is that of a halted security. */
export class MarketClock {
  private newest = '';
  private shown = '';
  private readonly watchers: Watchers;

  constructor(sdk: Pick<Connection, 'on'>, schedule: Schedule = nextDrawing) {
    this.watchers = new Watchers(schedule);
    sdk.on('on_tickUpdate', ({ time }) => {
      if (typeof time !== 'string' || time <= this.newest) return;
      this.newest = time;
      this.watchers.announce(() => (this.shown = this.newest));
    });
  }

  readonly current = (): string => this.shown;

  readonly watch = (watcher: () => void): (() => void) => this.watchers.add(watcher);
}
