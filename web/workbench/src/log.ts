export interface LogLine {
  id: number;
  text: string;
}

const longest = 200;

/** The latest line first, and no more lines than anybody reads. */
export function withLine(log: readonly LogLine[], text: string): readonly LogLine[] {
  return [{ id: (log[0]?.id ?? 0) + 1, text }, ...log].slice(0, longest);
}
