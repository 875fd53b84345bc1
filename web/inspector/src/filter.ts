import type { Row, RowKind } from './entry';

export interface Filter {
  /** 0 for all. */
  page: number;
  kinds: ReadonlySet<RowKind>;
  /** A call and its reply; empty for all. */
  method: string;
  /** In the name, the uuid or the arguments. */
  text: string;
}

/** Of a method its call, its reply and the ends of them; the name of an event is also that of a push. */
function isOfMethod(row: Row, method: string): boolean {
  const { name } = row.entry;
  return name === method || (row.kind === 'reply' && name === method.replace(/_REQ$/, '_RES'));
}

function hasText({ entry }: Row, text: string): boolean {
  if (entry.name?.toLowerCase().includes(text) || entry.uuid?.toLowerCase().includes(text)) return true;
  return (entry.args ?? []).some((arg) =>
    (typeof arg === 'string' ? arg : JSON.stringify(arg)).toLowerCase().includes(text),
  );
}

/** The rows that pass the filter, in their order. */
export function filtered(rows: readonly Row[], { page, kinds, method, text }: Filter): Row[] {
  const wanted = text.trim().toLowerCase();
  return rows.filter(
    (row) =>
      kinds.has(row.kind) &&
      (page === 0 || row.entry.page === page) &&
      (method === '' || isOfMethod(row, method)) &&
      (wanted === '' || hasText(row, wanted)),
  );
}
