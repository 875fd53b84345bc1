import { useMemo } from 'react';
import { readableTime, type Bar } from './candles';
import { missing } from './formats';
import { locales } from './texts';
import { useTexts } from './texts/useTexts';

export interface Figure {
  key: 'time' | 'open' | 'high' | 'low' | 'close' | 'volume' | 'amount';
  name: string;
  write: (bar: Bar) => string;
}

/** Names and formats of the figures of a candle, in display order. */
export function useFigures(): readonly Figure[] {
  const t = useTexts();
  return useMemo(() => {
    const format = (options: Intl.NumberFormatOptions) => {
      const number = new Intl.NumberFormat(locales[t.language], options);
      return (value: number) => (Number.isFinite(value) ? number.format(value) : missing);
    };
    const price = format({ minimumFractionDigits: 2, maximumFractionDigits: 4, useGrouping: false });
    const whole = format({ maximumFractionDigits: 0 });
    return [
      { key: 'time', name: t.time, write: readableTime },
      { key: 'open', name: t.open, write: (bar) => price(bar.open) },
      { key: 'high', name: t.high, write: (bar) => price(bar.high) },
      { key: 'low', name: t.low, write: (bar) => price(bar.low) },
      { key: 'close', name: t.closePrice, write: (bar) => price(bar.close) },
      { key: 'volume', name: t.candleVolume, write: (bar) => whole(bar.volume) },
      { key: 'amount', name: t.candleAmount, write: (bar) => whole(bar.amount) },
    ];
  }, [t]);
}

/** Class of a figure's colour: see theme.css. */
export function direction({ open, close }: Bar): 'up' | 'down' | '' {
  return close > open ? 'up' : close < open ? 'down' : '';
}
