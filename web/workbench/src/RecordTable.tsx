import type { ReactNode } from 'react';
import { fieldNames } from './columns';

export interface Column<Item> {
  key: keyof typeof fieldNames;
  write: (item: Item) => ReactNode;
  isFigure: (item: Item) => boolean;
  tone?: (item: Item) => 'up' | 'down' | '';
}

interface Props<Item> {
  label: string;
  columns: readonly Column<Item>[];
  items: readonly Item[];
  busy: boolean;
  testId: string;
  /** Identifies a record, so that its row is kept when others come before it. */
  idOf?: (item: Item) => string;
  /** A first column that is not a field of the record. */
  lead?: { title: ReactNode; write: (item: Item) => ReactNode };
}

/** Records of the terminal, one in each row. Columns of numbers are aligned to the right. */
export function RecordTable<Item>({ label, columns, items, busy, testId, idOf, lead }: Props<Item>) {
  const isFigures = columns.map(({ isFigure }) => items.length > 0 && items.every(isFigure));
  return (
    <div className="scroll" tabIndex={0} role="region" aria-label={label}>
      <table className="records" aria-busy={busy} data-testid={testId}>
        <thead>
          <tr>
            {lead && <th scope="col">{lead.title}</th>}
            {columns.map(({ key }, place) => (
              <th key={key} scope="col" title={key} className={isFigures[place] ? 'number' : ''}>
                {fieldNames[key]}
              </th>
            ))}
          </tr>
        </thead>
        <tbody>
          {items.map((item, row) => (
            <tr key={idOf ? idOf(item) : row} data-id={idOf?.(item)}>
              {lead && <td>{lead.write(item)}</td>}
              {columns.map(({ key, write, tone }, place) => (
                <td key={key} data-key={key} className={`${isFigures[place] ? 'number' : ''} ${tone?.(item) ?? ''}`}>
                  {write(item)}
                </td>
              ))}
            </tr>
          ))}
        </tbody>
      </table>
    </div>
  );
}
