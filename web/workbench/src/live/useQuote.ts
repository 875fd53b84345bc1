import type { Connection, Tick } from '@varnel/web-client';
import { useCallback, useMemo } from 'react';
import { useStream, type OpenStream } from './useStream';

/** The latest quote of a symbol, while the component is shown. Rendered at most once a frame. */
export function useQuote(sdk: Connection, symbol: string): Tick | undefined {
  const open = useMemo<OpenStream<Tick> | undefined>(
    () => (symbol === '' ? undefined : (listener, signal) => sdk.watchQuotes([symbol], listener, { signal })),
    [sdk, symbol],
  );
  const only = useCallback(
    (ticks: ReadonlyMap<string, Tick>) => {
      const tick = ticks.get(symbol);
      return tick ? [tick] : [];
    },
    [symbol],
  );
  return useStream<Tick>(open, only).items[0];
}
