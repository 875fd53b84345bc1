import { klinePeriods } from '@varnel/web-client';
import { secondsOf, type Bar } from './candles';
import { lastOf } from './lastOf';
import type { Quote } from './quote';

/** Figures that a quote has for the day so far. */
interface Totals {
  seconds: number;
  volume: number;
  amount: number;
  high: number;
  low: number;
}

/** Candles of the terminal and those that quotes have added since. */
export interface Candles {
  period: string;
  /** As the terminal answered, in ascending order. */
  finished: readonly Bar[];
  /** Later than the finished ones. The last one changes with each quote. */
  running: readonly Bar[];
  /** The day's figures when the last running candle began; for minutes only. */
  before: Totals | undefined;
  latest: Totals | undefined;
}

const minute = 60;
const day = 86_400;
/** From midnight to the end of the day's first candle, which takes in the opening at 09:25. */
const firstMinute = (9 * 60 + 31) * minute;

export function candlesOf(period: string, finished: readonly Bar[]): Candles {
  return { period, finished, running: [], before: undefined, latest: undefined };
}

export function barsOf({ finished, running }: Candles): readonly Bar[] {
  return running.length === 0 ? finished : [...finished, ...running];
}

/** Takes in a later answer of the terminal, whose candles replace those made from quotes. */
export function withAnswer(candles: Candles, bars: readonly Bar[]): Candles {
  const [first, last] = [bars[0], lastOf(bars)];
  if (!first || !last) return candles;
  const finished = [...candles.finished.filter(({ seconds }) => seconds < first.seconds), ...bars];
  const running = candles.running.filter(({ seconds }) => seconds > last.seconds);
  const after = { ...candles, finished, running };
  const [only] = running;
  if (!only || running.length > 1 || !candles.before || !candles.latest) return after;
  // When no quote came for a while, the running candle has counted what belongs to the candles of the answer.
  const before = sums(after, candles.before);
  const { volume, amount } = candles.latest;
  return { ...after, before, running: [{ ...only, ...countedFrom(before, volume, amount) }] };
}

/**
 * Takes in a quote. A quote of a candle that the terminal has finished changes nothing, and neither does one of a day
 * without trades yet: its open is 0, and its last price is that of the day before.
 */
export function withQuote(candles: Candles, quote: Quote): Candles {
  const totals = totalsOf(quote);
  const { last } = quote.figures;
  if (![totals.seconds, last, totals.volume].every(Number.isFinite) || quote.figures.open === 0) return candles;
  if (candles.latest && totals.seconds < candles.latest.seconds) return candles;

  const after = { ...candles, latest: totals };
  const isMinute = candles.period === klinePeriods.minute;
  const today = dayOf(totals.seconds);
  const end = isMinute ? Math.max(Math.ceil(totals.seconds / minute) * minute, today + firstMinute) : today;
  const [running, finished] = [lastOf(candles.running), lastOf(candles.finished)];
  if (end <= (finished?.seconds ?? -Infinity) || end < (running?.seconds ?? -Infinity)) return after;

  if (!isMinute) return withLast(after, dayBar(end, quote), running?.seconds === end);
  if (running?.seconds === end) return withLast(after, grown(running, last, totals, candles.before!), true);
  const earliest = Math.max(today, finished?.seconds ?? 0); // an older quote is from before the view was hidden
  const before = candles.latest && candles.latest.seconds >= earliest ? candles.latest : sums(candles, totals);
  const open = end === today + firstMinute ? quote.figures.open : last;
  const bar = { time: digits(end), seconds: end, open, high: last, low: last, close: last, volume: 0, amount: 0 };
  return { ...withLast(after, grown(bar, last, totals, before), false), before };
}

function withLast(candles: Candles, bar: Bar, replaces: boolean): Candles {
  return { ...candles, running: [...(replaces ? candles.running.slice(0, -1) : candles.running), bar] };
}

function totalsOf({ time, figures: { volume, amount, high, low } }: Quote): Totals {
  return { seconds: secondsOf(time), volume, amount, high, low };
}

function dayBar(seconds: number, { figures: { open, high, low, last, volume, amount } }: Quote): Bar {
  return { time: digits(seconds).slice(0, 8), seconds, open, high, low, close: last, volume, amount };
}

/** A price between two quotes may have been the day's highest or lowest. */
function grown(bar: Bar, last: number, totals: Totals, before: Totals): Bar {
  return {
    ...bar,
    close: last,
    high: Math.max(bar.high, last, totals.high > before.high ? totals.high : last),
    low: Math.min(bar.low, last, totals.low < before.low ? totals.low : last),
    ...countedFrom(before, totals.volume, totals.amount),
  };
}

function countedFrom(before: Totals, volume: number, amount: number): Pick<Bar, 'volume' | 'amount'> {
  return { volume: volume - before.volume, amount: Math.round((amount - before.amount) * 100) / 100 };
}

/**
 * The day's figures before the first quote: the sums of the finished candles. When these do not reach back to the day
 * before, the day's beginning may be missing, and the candle counts from this quote on.
 */
function sums({ finished }: Pick<Candles, 'finished'>, totals: Totals): Totals {
  const today = dayOf(totals.seconds);
  const own = finished.filter(({ seconds }) => dayOf(seconds) === today);
  if (own.length === finished.length) return totals;
  return own.reduce(
    (sum, bar) => ({
      ...sum,
      volume: sum.volume + bar.volume,
      amount: sum.amount + bar.amount,
      high: Math.max(sum.high, bar.high),
      low: Math.min(sum.low, bar.low),
    }),
    { seconds: today, volume: 0, amount: 0, high: -Infinity, low: Infinity },
  );
}

const dayOf = (seconds: number) => Math.floor(seconds / day) * day;

const digits = (seconds: number) => new Date(seconds * 1000).toISOString().replace(/\D/g, '').slice(0, 14);

/** Where two lists of bars begin to differ: the length of the shorter one if they do not before. */
export function firstChange(before: readonly Bar[], after: readonly Bar[]): number {
  const length = Math.min(before.length, after.length);
  for (let at = 0; at < length; ++at) if (before[at] !== after[at]) return at;
  return length;
}
