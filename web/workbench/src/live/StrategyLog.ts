import type { Connection } from '@varnel/web-client';
import { withLine, type LogLine } from '../log';
import { nextFrame, Watchers, type Schedule } from './frame';

export interface StrategyNews {
  /** The latest status of each strategy by its number. */
  statuses: ReadonlyMap<string, string>;
  statusLines: readonly LogLine[];
  messageLines: readonly LogLine[];
}

/**
 * What the platform tells about strategies. It is pushed once and cannot be asked for, so this listens as long as the
 * page lives, whichever view is shown.
 */
export class StrategyLog {
  private news: StrategyNews = { statuses: new Map(), statusLines: [], messageLines: [] };
  private shown = this.news;
  private readonly watchers: Watchers;

  constructor(sdk: Pick<Connection, 'on'>, schedule: Schedule = nextFrame) {
    this.watchers = new Watchers(schedule);
    sdk.on('on_vlxStrategyStatusUpdate', (strategyID, status) => {
      this.note(strategyID, status);
      this.news = { ...this.news, statusLines: withLine(this.news.statusLines, `${strategyID} ${status}`) };
    });
    sdk.on('on_vlxRcvCustomInfo', (id, text) => {
      this.news = { ...this.news, messageLines: withLine(this.news.messageLines, `${id}: ${text}`) };
      this.changed();
    });
  }

  /** Takes a status that came with an answer. */
  note(strategyID: string, status: string): void {
    this.news = { ...this.news, statuses: new Map([...this.news.statuses, [strategyID, status]]) };
    this.changed();
  }

  readonly current = (): StrategyNews => this.shown;

  readonly watch = (watcher: () => void): (() => void) => this.watchers.add(watcher);

  private changed(): void {
    this.watchers.announce(() => (this.shown = this.news));
  }
}
