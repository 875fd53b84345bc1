import { quoteFields, type Json, type Tick } from '@varnel/web-client';
import { secondsOf } from './candles';
import { lastOf } from './lastOf';

/** The time of day of "20250303100000". An unreadable time stays unchanged. */
export function clockOf(time: string): string {
  return time.replace(/^\d{8}(\d\d)(\d\d)(\d\d)$/, '$1:$2:$3');
}

export interface Level {
  price: number;
  qty: number;
}

/** A quote for display. Missing fields are NaN. */
export interface Quote {
  time: string;
  previousClose: number;
  figures: Record<'open' | 'high' | 'low' | 'last' | 'upperLimit' | 'lowerLimit' | 'volume' | 'amount', number>;
  /** Best first, without empty levels. */
  bids: Level[];
  asks: Level[];
}

/** What the market does with a security, as far as its quote tells. */
export type MarketPhase = 'standsStill' | 'noTrades' | 'openingCall' | 'opened' | 'trading' | 'noonBreak' | 'closed';

/** What the time of the latest quote means, once there were trades: the last row that is not later. */
const phasesByTime: readonly (readonly [from: string, phase: MarketPhase])[] = [
  ['092500', 'opened'],
  ['093000', 'trading'],
  ['113000', 'noonBreak'], // the last quote of the morning stays until 13:00
  ['130000', 'trading'],
  ['150000', 'closed'],
];

/** A security that trades has a quote at least so often. */
const standsStillSeconds = 60;

/** Of the quotes of other securities the newest time is needed: a halted security keeps its quote. */
export function phaseOf({ time, figures, bids, asks }: Quote, newest: string): MarketPhase {
  const isOfToday = newest.slice(0, 8) === time.slice(0, 8);
  if (isOfToday && secondsOf(newest) - secondsOf(time) >= standsStillSeconds) return 'standsStill';
  if (figures.open === 0) return bids.length + asks.length > 0 ? 'openingCall' : 'noTrades';
  const clock = time.slice(8);
  return lastOf(phasesByTime.filter(([from]) => from <= clock))?.[1] ?? 'trading';
}

function number(value: Json | undefined): number {
  return typeof value === 'number' ? value : Number.NaN;
}

function levels(prices: Json | undefined, qtys: Json | undefined): Level[] {
  if (!Array.isArray(prices) || !Array.isArray(qtys)) return [];
  return prices.map((price, at) => ({ price: number(price), qty: number(qtys[at]) })).filter(({ qty }) => qty > 0);
}

export function quoteOf(tick: Partial<Tick>): Quote {
  const field = (name: keyof typeof quoteFields) => tick[quoteFields[name]];
  const figure = (name: keyof typeof quoteFields) => number(field(name));
  return {
    time: String(field('time') ?? ''),
    previousClose: figure('previousClose'),
    figures: {
      last: figure('last'),
      open: figure('open'),
      high: figure('high'),
      low: figure('low'),
      upperLimit: figure('upperLimit'),
      lowerLimit: figure('lowerLimit'),
      volume: figure('volume'),
      amount: figure('amount'),
    },
    bids: levels(field('bidPrices'), field('bidQtys')),
    asks: levels(field('askPrices'), field('askQtys')),
  };
}
