import type { SecurityDetail } from '@varnel/web-client';

/** The key under which the terminal keeps the desk's watch list. */
export const watchListKey = 'workbench.watchList';

const firstOfEachType = 2;

/** The list before the first change: the first securities of each type that the terminal lists. */
export function firstWatched(securities: readonly SecurityDetail[]): readonly string[] {
  const counts = new Map<string, number>();
  const chosen = securities.filter(({ securityType }) => {
    const count = (counts.get(securityType) ?? 0) + 1;
    counts.set(securityType, count);
    return count <= firstOfEachType;
  });
  return chosen.map(({ symbol }) => symbol);
}

/** The saved list. */
export function readWatchList(saved: unknown): readonly string[] | undefined {
  return Array.isArray(saved) && saved.every((symbol) => typeof symbol === 'string')
    ? withoutRepeats(saved)
    : undefined;
}

export function withoutRepeats(symbols: readonly string[]): readonly string[] {
  return [...new Set(symbols)];
}
