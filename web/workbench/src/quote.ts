import { quoteFields, type Json, type Tick } from '@varnel/web-client';

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
