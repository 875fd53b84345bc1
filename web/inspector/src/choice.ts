import { useCallback, useState } from 'react';

/** A choice that this browser keeps. */
export function useChoice<Choice extends string>(
  key: string,
  choices: readonly Choice[],
  initial: Choice,
): [Choice, (choice: Choice) => void] {
  const [choice, setChoice] = useState(() => choices.find((known) => known === localStorage.getItem(key)) ?? initial);
  const change = useCallback(
    (next: Choice) => {
      localStorage.setItem(key, next);
      setChoice(next);
    },
    [key],
  );
  return [choice, change];
}
