import { readableTime, type Bar } from './candles';

const whole = new Intl.NumberFormat('zh-CN', { maximumFractionDigits: 0 });
const price = new Intl.NumberFormat('zh-CN', {
  minimumFractionDigits: 2,
  maximumFractionDigits: 4,
  useGrouping: false,
});
const tenThousands = new Intl.NumberFormat('zh-CN', { minimumFractionDigits: 2, maximumFractionDigits: 2 });

const written = (format: Intl.NumberFormat, value: number) => (Number.isFinite(value) ? format.format(value) : '—');

/** Names and formats of the figures of a candle, in display order. */
export const figures: readonly { name: string; hint: string; write: (bar: Bar) => string }[] = [
  { name: '时间', hint: 'time', write: readableTime },
  { name: '开盘', hint: 'open', write: (bar) => written(price, bar.open) },
  { name: '最高', hint: 'high', write: (bar) => written(price, bar.high) },
  { name: '最低', hint: 'low', write: (bar) => written(price, bar.low) },
  { name: '收盘', hint: 'close', write: (bar) => written(price, bar.close) },
  { name: '成交量', hint: 'volume', write: (bar) => written(whole, bar.volume) },
  { name: '成交额/万', hint: 'amount', write: (bar) => written(tenThousands, bar.amount / 10_000) },
];

/** Class of a figure's colour: red and green as theme.css has them. */
export function direction({ open, close }: Bar): 'up' | 'down' | '' {
  return close > open ? 'up' : close < open ? 'down' : '';
}
