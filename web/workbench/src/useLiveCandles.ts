import type { Connection } from '@varnel/web-client';
import { useEffect, useMemo, useState } from 'react';
import { barOf, type Bar } from './candles';
import { lastOf } from './lastOf';
import { barsOf, candlesOf, withAnswer, withQuote } from './liveCandles';
import { useQuote } from './live/useWatch';
import { quoteOf } from './quote';

export interface KLineQuery {
  symbol: string;
  startTime: string;
  stopTime: string;
  period: string;
}

/**
 * The answered candles and those that quotes add. When a candle has ended, and when the connection is open again, the
 * terminal is asked for the finished ones: its figures replace those made from quotes.
 */
export function useLiveCandles(sdk: Connection, query: KLineQuery, answered: readonly Bar[]): readonly Bar[] {
  const isFollowing = query.stopTime === '';
  const quote = useQuote(isFollowing ? query.symbol : '');
  const [candles, setCandles] = useState(() => candlesOf(query.period, answered));
  useEffect(() => setCandles(candlesOf(query.period, answered)), [query, answered]);

  useEffect(() => {
    if (quote) setCandles((before) => withQuote(before, quoteOf(quote)));
  }, [quote, answered]);

  const ended = isFollowing ? candles.running[candles.running.length - 2]?.time : undefined;
  const known = lastOf(candles.finished)?.time;
  const [reopened, setReopened] = useState(0);
  useEffect(() => sdk.onOpen(({ again }) => again && setReopened((count) => count + 1)), [sdk]);
  useEffect(() => {
    if (!isFollowing || known === undefined || (ended === undefined && reopened === 0)) return;
    const end = new AbortController();
    // The range begins with a candle that is known: without any candle no answer would come.
    sdk.getKLineData({ ...query, startTime: known }, { signal: end.signal }).then(
      (list) => setCandles((before) => withAnswer(before, list.map(barOf))),
      () => {}, // the candles made from quotes stay
    );
    return () => end.abort();
  }, [sdk, query, ended, reopened]);

  return useMemo(() => barsOf(candles), [candles]);
}
