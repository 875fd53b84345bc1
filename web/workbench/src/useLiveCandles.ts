import type { Connection } from '@varnel/web-client';
import { useEffect, useMemo, useRef, useState } from 'react';
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
 * The answered candles and those that quotes add. When a candle has ended, when the chart is shown again, and when the
 * connection is open again, the terminal is asked for the finished ones: its figures replace those made from quotes.
 */
export function useLiveCandles(sdk: Connection, query: KLineQuery, answered: readonly Bar[]): readonly Bar[] {
  const isFollowing = query.stopTime === '';
  const quote = useQuote(isFollowing ? query.symbol : '');
  const [candles, setCandles] = useState(() => candlesOf(query.period, answered));
  const [missed, setMissed] = useState(0); // how often candles may have ended unseen

  const taken = useRef<readonly Bar[]>(undefined);
  useEffect(() => {
    if (taken.current === answered)
      setMissed((count) => count + 1); // a hidden view is shown again
    else setCandles(candlesOf(query.period, answered));
    taken.current = answered;
  }, [query, answered]);

  useEffect(() => {
    if (quote) setCandles((before) => withQuote(before, quoteOf(quote)));
  }, [quote, answered]);

  const ended = isFollowing ? candles.running[candles.running.length - 2]?.time : undefined;
  const known = lastOf(candles.finished)?.time;
  useEffect(() => sdk.onOpen(({ again }) => again && setMissed((count) => count + 1)), [sdk]);
  useEffect(() => {
    if (!isFollowing || known === undefined || (ended === undefined && missed === 0)) return;
    const end = new AbortController();
    // The range begins with a candle that is known: without any candle no answer would come.
    sdk.getKLineData({ ...query, startTime: known }, { signal: end.signal }).then(
      (list) => setCandles((before) => withAnswer(before, list.map(barOf))),
      () => {}, // the candles made from quotes stay
    );
    return () => end.abort();
  }, [sdk, query, ended, missed]);

  return useMemo(() => barsOf(candles), [candles]);
}
