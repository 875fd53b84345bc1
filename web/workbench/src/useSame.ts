import { useRef } from 'react';

/** The texts as the same array, as long as they are the same texts. */
export function useSame(texts: readonly string[]): readonly string[] {
  const same = useRef(texts);
  const isSame = same.current.length === texts.length && texts.every((text, at) => text === same.current[at]);
  if (!isSame) same.current = texts;
  return same.current;
}
