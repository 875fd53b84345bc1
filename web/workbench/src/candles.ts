import { candleFields, type Candle, type Json } from '@varnel/web-client';

/** A candle, as shown by chart and table. */
export interface Bar {
  time: string;
  /** Seconds; exchange time written as UTC, so that the chart's axis shows exchange time. */
  seconds: number;
  open: number;
  high: number;
  low: number;
  close: number;
  volume: number;
  amount: number;
}

/** Reads "20250303" and "20250303093100", with or without separators. */
export function secondsOf(time: string): number {
  const parts = /^(\d{4})(\d{2})(\d{2})(?:(\d{2})(\d{2})(\d{2}))?$/.exec(time.replace(/[-/:.T\s]/g, ''));
  if (!parts) return Number.NaN;
  const [year, month, day, hour, minute, second] = parts.slice(1).map((part) => Number(part ?? 0)) as [
    number,
    number,
    number,
    number,
    number,
    number,
  ];
  return Date.UTC(year, month - 1, day, hour, minute, second) / 1000;
}

/** The time for display: "2025-03-03" or "2025-03-03 09:31". An unreadable time stays unchanged. */
export function readableTime({ time, seconds }: Bar): string {
  if (!Number.isFinite(seconds)) return time;
  const text = new Date(seconds * 1000).toISOString();
  return time.length > 8 ? `${text.slice(0, 10)} ${text.slice(11, 16)}` : text.slice(0, 10);
}

/** NaN for a value that is not a number: a missing price must not become 0. */
function figure(value: Json | undefined): number {
  return typeof value === 'number' || (typeof value === 'string' && value.trim() !== '') ? Number(value) : Number.NaN;
}

export function barOf(candle: Partial<Candle>): Bar {
  const time = String(candle[candleFields.time]);
  const number = (field: keyof Candle) => figure(candle[field]);
  return {
    time,
    seconds: secondsOf(time),
    open: number(candleFields.open),
    high: number(candleFields.high),
    low: number(candleFields.low),
    close: number(candleFields.close),
    volume: number(candleFields.volume),
    amount: number(candleFields.amount),
  };
}

/** Bars that a chart can draw: complete, and in ascending order of time. */
export function drawable(bars: readonly Bar[]): Bar[] {
  const drawn: Bar[] = [];
  for (const bar of bars) {
    const { seconds, open, high, low, close, volume } = bar;
    const before = drawn[drawn.length - 1];
    if (![seconds, open, high, low, close, volume].every(Number.isFinite)) continue;
    if (!before || seconds > before.seconds) drawn.push(bar);
  }
  return drawn;
}
