/** The key under which the terminal keeps the desk's watch list. */
export const watchListKey = 'workbench.watchList';

/** The list before the first change: securities of the default scenario. */
export const firstWatched: readonly string[] = [
  '609801.SH',
  '609802.SH',
  '009811.SZ',
  '519821.SH',
  '119831.SH',
  'YL2503.CF',
];

/** Reads the saved list. An empty or unreadable text gives the first list. */
export function readWatchList(text: string): readonly string[] {
  try {
    const saved: unknown = JSON.parse(text);
    if (Array.isArray(saved) && saved.every((symbol) => typeof symbol === 'string')) return withoutRepeats(saved);
  } catch {
    // falls back below
  }
  return firstWatched;
}

export function writeWatchList(symbols: readonly string[]): string {
  return JSON.stringify(symbols);
}

export function withoutRepeats(symbols: readonly string[]): readonly string[] {
  return [...new Set(symbols)];
}
