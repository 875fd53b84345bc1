import { priceTypes, sides, type Cell, type entrustKeys, type executionKeys } from '@varnel/web-client';
import { missing } from '../formats';
import type { CodeKind, Texts } from '../texts';
import type { Column } from './types';

type CellKey = (typeof entrustKeys | typeof executionKeys)[number];

/** An order or an execution: a cell for each field. */
export type CellRow = Partial<Record<CellKey, Cell>>;

const numbers: ReadonlySet<CellKey> = new Set([
  'price',
  'entrustQty',
  'leaveQty',
  'dealQty',
  'dealPrice',
  'entrustAmount',
  'dealAmount',
]);

const codeKinds: Partial<Record<CellKey, CodeKind>> = {
  side: 'side',
  sideUnion: 'side',
  status: 'status',
  priceType: 'priceType',
};

/** The value behind a cell as text. Numbers get no separators, so identifiers stay readable for the terminal. */
export function valueOf(cell: Cell | undefined): string {
  const value = cell?.userRole ?? '';
  return typeof value === 'object' ? JSON.stringify(value) : String(value);
}

/** The limit of an order as the terminal shows it. For a market order that is a word, in the language of the desk. */
export function priceText({ price, priceType }: CellRow, t: Texts): string {
  return valueOf(priceType) === priceTypes.market ? t.marketPrice : String(price?.displayRole ?? missing);
}

/** The column of a field of orders or executions. It shows the terminal's text, and codes in the language of the desk. */
export function cellColumn<Row extends CellRow>(key: CellKey & keyof Row & string, t: Texts): Column<Row> {
  const kind = codeKinds[key];
  const shown = (row: CellRow) => {
    if (key === 'price') return priceText(row, t);
    const text = row[key]?.displayRole;
    if (text === null || text === undefined) return missing;
    // The terminal's own texts are Chinese.
    if (!kind || t.language === 'zh') return typeof text === 'object' ? JSON.stringify(text) : String(text);
    return t.code(kind, valueOf(row[key]), String(text));
  };
  return {
    key,
    title: t.field(key),
    kind: numbers.has(key) ? 'number' : 'text',
    value: (row) => {
      const value = row[key]?.userRole;
      return typeof value === 'number' ? value : kind ? shown(row) : valueOf(row[key]);
    },
    write: shown,
    ...(key === 'side' && { tone: (row: CellRow) => (row.side?.userRole === sides.buy ? 'up' : 'down') }),
  };
}
