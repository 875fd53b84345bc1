import type { Connection, PushEvent, PushListener } from '@varnel/web-client';
import { useEffect, useMemo, useRef } from 'react';
import { Refetch } from './Refetch';

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
