import { useEffect, useState } from 'react';

/** The value after a pause without changes, so that typing does not make a call for each key. */
export function useDelayed<T>(value: T, delayMs = 200): T {
  const [settled, setSettled] = useState(value);
  useEffect(() => {
    const timer = setTimeout(() => setSettled(value), delayMs);
    return () => clearTimeout(timer);
  }, [value, delayMs]);
  return settled;
}
