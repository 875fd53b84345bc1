import { useCallback, useRef, useState } from 'react';

export interface Answered<T> {
  /** The answer to the latest call. It stays until the next call is answered. */
  data: T | undefined;
  error: Error | undefined;
  waiting: boolean;
}

/** Keeps the state of a repeatable call. Only the latest of several waiting calls counts. */
export function useAnswer<T>(): [Answered<T>, (call: Promise<T>) => void] {
  const [state, setState] = useState<Answered<T>>({ data: undefined, error: undefined, waiting: false });
  const latest = useRef<Promise<T>>(undefined);
  const follow = useCallback((call: Promise<T>) => {
    latest.current = call;
    setState((before) => ({ ...before, waiting: true }));
    const settle = (after: Partial<Answered<T>>) => {
      if (latest.current === call) setState({ data: undefined, error: undefined, waiting: false, ...after });
    };
    call.then(
      (data) => settle({ data }),
      (error: Error) => settle({ error }),
    );
  }, []);
  return [state, follow];
}
