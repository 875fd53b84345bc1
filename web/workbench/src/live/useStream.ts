import type { Update, Watch } from '@varnel/web-client';
import { useEffect, useMemo, useReducer, useRef } from 'react';
import { nextFrame } from './frame';

/** Opens a stream of the client. It ends with the signal. */
export type OpenStream<Item> = (listener: (update: Update<Item>) => void, signal: AbortSignal) => Watch<Item>;

export interface Streamed<Item> {
  /** The records, in the order of `arrange`; the same array until something changes. */
  items: readonly Item[];
  /** Whether the first list has come. */
  isReady: boolean;
  /** Why the list could not be had. */
  error: Error | undefined;
}

interface State<Item> {
  records: ReadonlyMap<string, Item>;
  isReady: boolean;
  error: Error | undefined;
}

/**
 * Follows a stream of the client while the component is shown. A burst of changes is rendered once, with the next frame.
 * `open` and `arrange` must stay the same from one rendering to the next; another `open` opens another stream.
 */
export function useStream<Item>(
  open: OpenStream<Item> | undefined,
  arrange: (records: ReadonlyMap<string, Item>) => readonly Item[] = listed,
): Streamed<Item> {
  const [version, changed] = useReducer((count: number) => count + 1, 0);
  const state = useRef<State<Item>>({ records: new Map(), isReady: false, error: undefined });

  useEffect(() => {
    if (!open) return;
    const end = new AbortController();
    let announced = false;
    const announce = () => {
      if (announced) return;
      announced = true;
      nextFrame(() => {
        announced = false;
        if (!end.signal.aborted) changed();
      });
    };
    const { ready } = open(({ items }) => {
      state.current = { records: items, isReady: true, error: undefined };
      announce();
    }, end.signal);
    ready.catch((error: Error) => {
      if (end.signal.aborted) return;
      state.current = { ...state.current, error };
      announce();
    });
    return () => end.abort();
  }, [open]);

  const { records, isReady, error } = state.current;
  const items = useMemo(() => arrange(records), [arrange, records, version]);
  return { items, isReady, error };
}

function listed<Item>(records: ReadonlyMap<string, Item>): readonly Item[] {
  return [...records.values()];
}
