import type { ReactNode } from 'react';

export interface Column<Item> {
  /** Stays the same in every language: `data-key` of the cells, and the name under which the setting keeps the column. */
  key: string;
  title: string;
  /**
   * - text, number: sortable; numbers are aligned to the right
   * - control: buttons and the like, neither sortable nor hidden by the user
   */
  kind: 'text' | 'number' | 'control';
  /** What the rows are sorted and filtered by, and what is shown unless `write` says otherwise. */
  value: (item: Item) => string | number | null | undefined;
  /** The contents of a cell. A text keeps the widths of columns right; other contents need a `width`. */
  write?: (item: Item) => ReactNode;
  /** Colours the cell as a rise or fall. */
  tone?: (item: Item) => 'up' | 'down' | '';
  /** Puts ▲ or ▼ beside the figure, so that nobody needs the colours. Not for figures with a sign of their own. */
  isMarked?: boolean;
  /** Width in characters of text. Without it the column is as wide as its longest text. */
  width?: number;
  /** Left out until the user chooses the column. */
  isExtra?: boolean;
}

/** What a user has chosen for a table. */
export interface TableChoice {
  /** Columns that are shown or hidden unlike the first time. */
  columns: Readonly<Record<string, boolean>>;
  sort?: { key: string; isDescending: boolean };
}
