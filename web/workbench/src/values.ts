import type { Json } from '@varnel/web-client';

const figure = new Intl.NumberFormat('zh-CN', { maximumFractionDigits: 4 });
const whole = new Intl.NumberFormat('zh-CN', { maximumFractionDigits: 0 });

/** A value of the terminal as the desk shows it. Nothing is shown for null, and what is no number stays as it is. */
export function written(value: Json | undefined): string {
  if (value === null || value === undefined) return '—';
  if (typeof value === 'number') return figure.format(value);
  return typeof value === 'object' ? JSON.stringify(value) : String(value);
}

const percent = new Intl.NumberFormat('zh-CN', { style: 'percent', minimumFractionDigits: 2 });

/** A rate, of which 1 is the whole. */
export function rate(value: Json | undefined): string {
  return typeof value === 'number' ? percent.format(value) : written(value);
}

export function wholeNumber(value: number): string {
  return Number.isFinite(value) ? whole.format(value) : '—';
}

/** Red and green as theme.css has them. */
export function toneOf(value: Json | undefined): 'up' | 'down' | '' {
  const number = typeof value === 'string' ? Number(value) : value;
  return typeof number !== 'number' || !number ? '' : number > 0 ? 'up' : 'down';
}
