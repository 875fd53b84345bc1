import { useCallback, useRef, useState } from 'react';

export interface Answered<T> {
  /** What the latest call gave; kept while the next one is under way. */
  data: T | undefined;
  error: Error | undefined;
  waiting: boolean;
}

/** Keeps the state of a call that can be repeated. Of several under way only the latest counts. */
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
