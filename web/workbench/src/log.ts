export interface LogLine {
  id: number;
  text: string;
}

const longest = 200;

/** Puts the line first and drops the oldest lines. */
export function withLine(log: readonly LogLine[], text: string): readonly LogLine[] {
  return [{ id: (log[0]?.id ?? 0) + 1, text }, ...log].slice(0, longest);
}
