import { readFileSync } from 'node:fs';

export function readDocument(name: string): string {
  return readFileSync(new URL(`../../../docs/${name}`, import.meta.url), 'utf8');
}

/** The cells of the first table after a text, without its heading. */
export function tableAfter(document: string, text: string): string[][] {
  const start = document.indexOf(text);
  if (start < 0) throw new Error(`the document has no "${text}"`);
  const lines = document.slice(start).split('\n');
  const first = lines.findIndex((line) => line.startsWith('|'));
  const rows: string[][] = [];
  for (const line of lines.slice(first)) {
    if (!line.startsWith('|')) break;
    rows.push(
      line
        .split('|')
        .slice(1, -1)
        .map((cell) => cell.trim()),
    );
  }
  return rows.slice(2); // without the names of the columns and the line below
}

/** The texts in code quotes. */
export function quoted(cell: string): string[] {
  return [...cell.matchAll(/`([^`]+)`/g)].map(([, text]) => text!);
}
