import type { Entry, Row } from './entry';

/** All entries of the rows, one JSON object a line, in their order. */
export function jsonLines(rows: readonly Row[]): string {
  const entries = rows.flatMap(({ entry, end }) => (end ? [entry, end] : [entry]));
  entries.sort((a: Entry, b: Entry) => a.number - b.number);
  return entries.map((entry) => `${JSON.stringify(entry)}\n`).join('');
}

export function saveAs(name: string, text: string): void {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(new Blob([text], { type: 'application/jsonl' }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href));
}
