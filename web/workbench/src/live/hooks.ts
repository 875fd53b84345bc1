import type { Connection, PushEvent, PushListener, Tick } from '@varnel/web-client';
import { useCallback, useEffect, useMemo, useRef, useSyncExternalStore } from 'react';
import { Refetch } from './Refetch';
import type { TickFeed } from './TickFeed';

/** Listens to a push while the component is mounted, with the listener of the latest rendering. */
export function usePush<P extends PushEvent>(sdk: Connection, push: P, listener: PushListener<P>): void {
  const latest = useRef(listener);
  useEffect(() => {
    latest.current = listener;
  });
  useEffect(() => sdk.on(push, ((...args) => latest.current(...args)) as PushListener<P>), [sdk, push]);
}

/** A function that repeats a call, one at a time, however often it is called. */
export function useRefetch(ask: () => Promise<unknown>): () => void {
  const latest = useRef(ask);
  useEffect(() => {
    latest.current = ask;
  });
  return useMemo(() => new Refetch(() => latest.current()), []).trigger;
}

/** The latest quote of a symbol. Renders again only when that quote changes. */
export function useTick(feed: TickFeed, symbol: string): Partial<Tick> | undefined {
  useEffect(() => (symbol === '' ? undefined : feed.subscribe([symbol])), [feed, symbol]);
  return useSyncExternalStore(
    feed.watch,
    useCallback(() => feed.tick(symbol), [feed, symbol]),
  );
}
