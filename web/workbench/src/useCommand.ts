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

/** A reply that cannot be read may well say that it was carried out. */
function isUnknown(error: Error): boolean {
  return error instanceof OutcomeUnknownError || error instanceof UnexpectedReplyError;
}

/** One at a time: as long as a call is under way another click does nothing. */
export function useCommand<T>(): [Command<T>, (call: () => Promise<T>) => void, () => void] {
  const [command, setCommand] = useState<Command<T>>({ phase: 'idle' });
  const busy = useRef(false); // state comes too late for the second of two quick clicks
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
