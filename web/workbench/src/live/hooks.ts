import type { Connection, PushEvent, PushListener } from '@varnel/web-client';
import { useEffect, useMemo, useRef } from 'react';
import { Throttled } from './Throttled';

/** Listens to a push while the component is mounted, with the listener of the latest rendering. */
export function usePush<P extends PushEvent>(sdk: Connection, push: P, listener: PushListener<P>): void {
  const latest = useRef(listener);
  useEffect(() => {
    latest.current = listener;
  });
  useEffect(() => sdk.on(push, ((...args) => latest.current(...args)) as PushListener<P>), [sdk, push]);
}

const refetchPeriodMs = 500;

/**
 * A function that repeats a call after changes, however often it is called: one call at a time, and at most two a second.
 * The last change is always followed by a call, unless the component is gone by then.
 */
export function useRefetch(ask: () => Promise<unknown>): () => void {
  const latest = useRef(ask);
  useEffect(() => {
    latest.current = ask;
  });
  const throttled = useMemo(() => new Throttled(() => latest.current(), refetchPeriodMs), []);
  useEffect(() => throttled.stop, [throttled]);
  return throttled.trigger;
}
