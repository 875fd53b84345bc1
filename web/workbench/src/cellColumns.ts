import { sides, type Cell } from '@varnel/web-client';
import type { Column } from './RecordTable';
import { written } from './values';

/** An order or an execution: a cell for each field. */
export type CellRow = Partial<Record<Column<unknown>['key'], Cell>>;

/** Shows the terminal's text of a field. */
export function cellColumn(key: Column<CellRow>['key']): Column<CellRow> {
  return {
    key,
    write: (row) => written(row[key]?.displayRole),
    isFigure: (row) => typeof row[key]?.userRole === 'number',
    ...(key === 'side' && { tone: (row) => (row.side?.userRole === sides.buy ? 'up' : 'down') }),
  };
}

/** The value behind a cell as text. Numbers get no separators, so identifiers stay readable for the terminal. */
export function valueOf(cell: Cell | undefined): string {
  const value = cell?.userRole ?? '';
  return typeof value === 'object' ? JSON.stringify(value) : String(value);
}
