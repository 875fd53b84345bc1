import type { Json } from '@varnel/web-client';

const figure = new Intl.NumberFormat('zh-CN', { maximumFractionDigits: 4 });
const whole = new Intl.NumberFormat('zh-CN', { maximumFractionDigits: 0 });

/** A value of the terminal for display: a dash for null, formatted numbers, other texts unchanged. */
export function written(value: Json | undefined): string {
  if (value === null || value === undefined) return '—';
  if (typeof value === 'number') return figure.format(value);
  return typeof value === 'object' ? JSON.stringify(value) : String(value);
}

const percent = new Intl.NumberFormat('zh-CN', { style: 'percent', minimumFractionDigits: 2 });

/** A fraction as a percentage. */
export function rate(value: Json | undefined): string {
  return typeof value === 'number' ? percent.format(value) : written(value);
}

export function wholeNumber(value: number): string {
  return Number.isFinite(value) ? whole.format(value) : '—';
}

/** The class of the colours red and green in theme.css. */
export function toneOf(value: Json | undefined): 'up' | 'down' | '' {
  const number = typeof value === 'string' ? Number(value) : value;
  return typeof number !== 'number' || !number ? '' : number > 0 ? 'up' : 'down';
}
