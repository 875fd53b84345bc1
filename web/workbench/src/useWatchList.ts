import type { Connection } from '@varnel/web-client';
import { useCallback, useMemo, useRef } from 'react';
import { commaParts } from './freeCall';
import { useSetting } from './settings/useSetting';
import type { Answered } from './useAnswer';
import { useSecurities } from './useSecurities';
import { firstWatched, readWatchList, watchListKey, withoutRepeats } from './watchList';

export interface WatchList {
  symbols: readonly string[];
  /** What went wrong with the saved list, or whether it is still read. */
  answer: Answered<readonly string[]>;
  /** Whether the list is known. A change before that would lose it. */
  isKnown: boolean;
  /** Adds one symbol, or several with commas. */
  add: (typed: string) => void;
  remove: (symbol: string) => void;
}

const nothing: readonly string[] = [];

/** The watch list. The terminal's settings keep it over a restart. */
export function useWatchList(sdk: Connection): WatchList {
  const [saved, change, { isKnown, error }] = useSetting<readonly string[] | undefined>(
    watchListKey,
    readWatchList,
    undefined,
  );
  const isFirst = isKnown && saved === undefined;
  const securities = useSecurities(sdk, isFirst);
  const first = useMemo(() => (securities.data ? firstWatched(securities.data) : undefined), [securities.data]);
  const symbols = saved ?? (isFirst ? first : undefined);

  const shown = useRef(symbols);
  shown.current = symbols;
  const changeTo = useCallback(
    (after: (before: readonly string[]) => readonly string[]) =>
      change((before) => after(before ?? shown.current ?? nothing)),
    [change],
  );
  const add = useCallback(
    (typed: string) =>
      changeTo((before) => withoutRepeats([...before, ...commaParts(typed).filter((symbol) => symbol !== '')])),
    [changeTo],
  );
  const remove = useCallback(
    (symbol: string) => changeTo((before) => before.filter((each) => each !== symbol)),
    [changeTo],
  );
  return {
    symbols: symbols ?? nothing,
    isKnown: symbols !== undefined,
    answer: { data: symbols, error: error ?? securities.error, waiting: symbols === undefined },
    add,
    remove,
  };
}
