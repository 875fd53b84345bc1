import { OutcomeUnknownError, UnexpectedReplyError } from '@varnel/web-client';
import { useCallback, useRef, useState } from 'react';

/** A call that trades, starts or stops something, from the click to its outcome. */
export type Command<T> =
  | { phase: 'idle' }
  | { phase: 'busy' }
  | { phase: 'done'; data: T }
  | { phase: 'refused'; error: Error }
  /** Nobody knows whether it was carried out. */
  | { phase: 'unknown'; error: Error };

/** An unreadable reply may mean that the call was carried out. */
function isUnknown(error: Error): boolean {
  return error instanceof OutcomeUnknownError || error instanceof UnexpectedReplyError;
}

/** Makes one call at a time: a click during a call does nothing. */
export function useCommand<T>(): [Command<T>, (call: () => Promise<T>) => void, () => void] {
  const [command, setCommand] = useState<Command<T>>({ phase: 'idle' });
  const busy = useRef(false); // React updates state too late for the second of two quick clicks
  const run = useCallback((call: () => Promise<T>) => {
    if (busy.current) return;
    busy.current = true;
    setCommand({ phase: 'busy' });
    const settle = (after: Command<T>) => {
      busy.current = false;
      setCommand(after);
    };
    const fail = (error: Error) => settle({ phase: isUnknown(error) ? 'unknown' : 'refused', error });
    try {
      call().then((data) => settle({ phase: 'done', data }), fail);
    } catch (error) {
      fail(error as Error);
    }
  }, []);
  const reset = useCallback(() => {
    if (!busy.current) setCommand({ phase: 'idle' });
  }, []);
  return [command, run, reset];
}
