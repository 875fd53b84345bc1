import type { Tick, Update, Watch } from '@varnel/web-client';
import { useCallback, useEffect, useRef, useState } from 'react';
import { useSdk } from '../desk/DeskContext';
import { nextDrawing } from './frame';

export interface Watched<Item> {
  /** In the order of the watch, which is oldest first for orders and executions; the same array until something changes. */
  items: readonly Item[];
  /** Whether the first snapshot has come. */
  isReady: boolean;
  /** Why there is no first snapshot. */
  error: Error | undefined;
}

/** Starts a watch of the client with the given listener. */
export type StartWatch<Item> = (listener: (update: Update<Item>) => void) => Watch<Item>;

const nothing: Watched<never> = { items: [], isReady: false, error: undefined };

/**
 * The records of a watch, which lives as long as the component is shown. A burst of updates is drawn once. `start` must
 * stay the same from one rendering to the next (`useCallback`); without it nothing is watched.
 */
export function useWatch<Item>(start: StartWatch<Item> | undefined): Watched<Item> {
  const [watched, setWatched] = useState<Watched<Item>>(nothing);
  const startedWith = useRef(start);

  useEffect(() => {
    if (startedWith.current !== start) setWatched(nothing);
    startedWith.current = start;
    if (!start) return;
    let isOver = false;
    let isAnnounced = false;
    let isReady = false;
    let isSettled = false;
    const draw = () => {
      isAnnounced = false;
      if (isOver) return;
      const items = [...watch.items.values()];
      setWatched((before) => {
        // A view that is shown again keeps what it had until all of it is there again.
        if (!isSettled && items.length < before.items.length) return before;
        return { items, isReady: isReady || before.isReady, error: isReady ? undefined : before.error };
      });
    };
    const announce = () => {
      if (isAnnounced) return;
      isAnnounced = true;
      nextDrawing(draw);
    };
    const watch = start(announce);
    watch.ready.then(
      () => {
        isReady = isSettled = true;
        announce();
      },
      (error: Error) => {
        isSettled = true;
        if (!isOver) setWatched((before) => ({ ...before, error }));
      },
    );
    return () => {
      isOver = true;
      watch.stop();
    };
  }, [start]);
  return watched;
}

/** The latest quotes of the symbols that have one. Keep the array of symbols from one rendering to the next. */
export function useQuotes(symbols: readonly string[]): readonly Tick[] {
  const sdk = useSdk();
  const start = useCallback<StartWatch<Tick>>((listener) => sdk.watchQuotes(symbols, listener), [sdk, symbols]);
  return useWatch(symbols.length === 0 ? undefined : start).items;
}

/** The latest quote of a symbol, if there is one. */
export function useQuote(symbol: string): Tick | undefined {
  const sdk = useSdk();
  const start = useCallback<StartWatch<Tick>>((listener) => sdk.watchQuotes([symbol], listener), [sdk, symbol]);
  const [quote] = useWatch(symbol === '' ? undefined : start).items;
  return quote?.symbol === symbol ? quote : undefined;
}
