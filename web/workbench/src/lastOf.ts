/** `list.at(-1)`, which the Chromium of Qt WebEngine 5.15 does not know. */
export function lastOf<T>(list: readonly T[]): T | undefined {
  return list[list.length - 1];
}
