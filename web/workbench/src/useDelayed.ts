import { useEffect, useState } from 'react';

/** A value that has stood for a moment: typing makes no call for each key. */
export function useDelayed<T>(value: T, delayMs = 200): T {
  const [settled, setSettled] = useState(value);
  useEffect(() => {
    const timer = setTimeout(() => setSettled(value), delayMs);
    return () => clearTimeout(timer);
  }, [value, delayMs]);
  return settled;
}
