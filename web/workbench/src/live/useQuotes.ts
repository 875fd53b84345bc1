import type { Tick } from '@varnel/web-client';
import { useCallback, useEffect, useRef, useSyncExternalStore } from 'react';
import type { TickFeed } from './TickFeed';

const none: ReadonlyMap<string, Tick> = new Map();

/** The latest quotes of the symbols. Renders again at most once a frame. Keep the array from one rendering to the next. */
export function useQuotes(feed: TickFeed, symbols: readonly string[]): ReadonlyMap<string, Tick> {
  useEffect(() => (symbols.length === 0 ? undefined : feed.subscribe(symbols)), [feed, symbols]);
  const shown = useRef(none);
  return useSyncExternalStore(
    feed.watch,
    useCallback(() => {
      const ticks = symbols.map((symbol) => [symbol, feed.tick(symbol)] as const);
      const known = ticks.filter((entry): entry is [string, Tick] => entry[1] !== undefined);
      const before = shown.current;
      const isSame = before.size === known.length && known.every(([symbol, tick]) => before.get(symbol) === tick);
      if (!isSame) shown.current = new Map(known);
      return shown.current;
    }, [feed, symbols]),
  );
}
