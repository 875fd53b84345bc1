import type { Connection } from '@varnel/web-client';
import { useCallback, useEffect, useState } from 'react';
import { commaParts } from './freeCall';
import { useAnswer, type Answered } from './useAnswer';
import { readWatchList, watchListKey, withoutRepeats, writeWatchList } from './watchList';

export interface WatchList {
  symbols: readonly string[];
  /** State of the call that reads the saved list. */
  answer: Answered<unknown>;
  /** Whether the saved list has been read. A change before that would overwrite it. */
  isKnown: boolean;
  /** Adds one symbol, or several with commas. */
  add: (typed: string) => void;
  remove: (symbol: string) => void;
}

const nothing: readonly string[] = [];

/** The watch list. The terminal's settings keep it over a restart. */
export function useWatchList(sdk: Connection): WatchList {
  const [answer, follow] = useAnswer<readonly string[]>();
  const [changed, setChanged] = useState<readonly string[]>();
  const [failure, setFailure] = useState<Error>();
  const symbols = changed ?? answer.data ?? nothing;

  useEffect(() => follow(sdk.getSetting({ key: watchListKey }).then(readWatchList)), [sdk, follow]);

  const change = useCallback(
    (after: readonly string[]) => {
      setChanged(after);
      sdk
        .saveSetting({ key: watchListKey, value: writeWatchList(after) })
        .then(() => setFailure(undefined), setFailure);
    },
    [sdk],
  );
  return {
    symbols,
    isKnown: answer.data !== undefined,
    answer: failure ? { ...answer, error: failure } : answer,
    add: (typed) => change(withoutRepeats([...symbols, ...commaParts(typed).filter((symbol) => symbol !== '')])),
    remove: (symbol) => change(symbols.filter((each) => each !== symbol)),
  };
}
