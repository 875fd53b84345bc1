import { useRef } from 'react';
import { missing } from '../formats';
import type { Column } from './types';
import { textWidth } from './widths';

/**
 * Texts are looked at in so many rows, which are all of a live table. A longer text further down is cut, and its tooltip
 * shows it whole.
 */
const sampled = 500;
const longest = 40;
/** Characters beside the title: the arrow of the order. */
const titleExtra = 2;

/**
 * The widths of columns in characters. They grow with the texts and never shrink while the table is there, so that
 * columns do not move back and forth with the figures. The array stays the same while no width changes.
 */
export function useColumnWidths<Item>(
  columns: readonly Column<Item>[],
  items: readonly Item[],
  write: (column: Column<Item>, item: Item) => unknown,
): readonly number[] {
  const grown = useRef(new Map<string, number>());
  const kept = useRef<readonly number[]>([]);
  const seen = useRef<{ columns: unknown; items: readonly Item[] }>(undefined);
  if (seen.current?.columns !== columns) {
    seen.current = undefined;
    grown.current.clear(); // another language has other titles
  }
  if (seen.current?.items !== items) {
    const measured = new Set(seen.current?.items.slice(0, sampled));
    seen.current = { columns, items };
    const sample = items.slice(0, sampled).filter((item) => !measured.has(item));
    for (const column of columns) {
      let width = Math.max(
        grown.current.get(column.key) ?? 0,
        textWidth(column.title) + (column.kind === 'control' ? 0 : titleExtra),
      );
      if (column.width === undefined)
        for (const item of sample) {
          const shown = write(column, item);
          width = Math.max(width, textWidth(typeof shown === 'string' ? shown : missing) + (column.isMarked ? 2 : 0));
        }
      grown.current.set(column.key, Math.min(width, longest));
    }
  }
  const widths = columns.map(({ key, width }) => width ?? grown.current.get(key)!);
  if (!widths.every((width, at) => width === kept.current[at]) || widths.length !== kept.current.length)
    kept.current = widths;
  return kept.current;
}
