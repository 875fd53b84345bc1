import {
  columnFilteringFeature,
  createFilteredRowModel,
  createSortedRowModel,
  globalFilteringFeature,
  rowSortingFeature,
  tableFeatures,
  useTable,
  type ColumnDef,
  type RowData,
  type SortingState,
} from '@tanstack/react-table';
import { useVirtualizer } from '@tanstack/react-virtual';
import { memo, useCallback, useMemo, useRef, useState, type ReactNode } from 'react';
import { useFormats } from '../formats';
import { useTexts } from '../texts/useTexts';
import { ColumnMenu } from './ColumnMenu';
import type { Column } from './types';
import { useColumnWidths } from './useColumnWidths';
import { useTableChoice } from './useTableChoice';
import { textWidth } from './widths';

interface Props<Item> {
  /** Names the table's settings; stays the same in every language. */
  name: string;
  /** What the table shows, for screen readers. */
  label: string;
  /** Keep the same array from one rendering to the next: each column is prepared once. */
  columns: readonly Column<Item>[];
  items: readonly Item[];
  /** Identifies a record, so that its row is kept when others come before it. */
  idOf: (item: Item) => string;
  /** Whether the records are asked for again. */
  busy?: boolean;
  testId?: string;
  /** Marks the row of the chosen record. */
  chosenId?: string | undefined;
  /** Shown when there are no records. */
  empty?: ReactNode;
  /** Stands left of the filter. */
  tools?: ReactNode;
  /** The height of a row in pixels. */
  rowHeight?: number;
}

const features = tableFeatures({
  columnFilteringFeature,
  globalFilteringFeature,
  rowSortingFeature,
  filteredRowModel: createFilteredRowModel(),
  sortedRowModel: createSortedRowModel(),
});

/** Lists up to this length are drawn whole, so that the browser's own search finds every row. */
const drawnWhole = 100;

/**
 * Records in rows: sortable, filterable, with columns to choose. Long lists draw only the rows in sight. Records that are
 * the same objects as before are not drawn again.
 */
export function DataTable<Item extends RowData>(props: Props<Item>) {
  const { name, label, columns, items, idOf, busy = false, testId, chosenId, empty, tools, rowHeight = 24 } = props;
  const t = useTexts();
  const formats = useFormats();
  const { isShown, sort, show, sortBy, reset } = useTableChoice(name, columns);
  const [filter, setFilter] = useState('');
  const scroll = useRef<HTMLDivElement>(null);

  const write = useCallback(
    ({ value, write: own }: Column<Item>, item: Item): ReactNode => (own ? own(item) : formats.value(value(item))),
    [formats],
  );
  const shownColumns = useMemo(() => columns.filter(({ key }) => isShown[key]), [columns, isShown]);
  const widths = useColumnWidths(shownColumns, items, write);

  const definitions = useMemo(() => columns.map((column) => definitionOf(column, write)), [columns, write]);
  const sorting = useMemo<SortingState>(
    () => (sort && isShown[sort.key] ? [{ id: sort.key, desc: sort.isDescending }] : []),
    [sort, isShown],
  );
  // A row keeps the values of its cells, so other columns need other rows.
  const data = useMemo(() => [...items], [definitions, items]);
  const table = useTable<typeof features, Item>({
    features,
    data,
    columns: definitions,
    state: { sorting, globalFilter: filter },
    getRowId: idOf,
    globalFilterFn: containsText,
    // Numbers begin with the largest, texts with the first. A third press restores the order of the terminal.
    onSortingChange: (change) => {
      const [first] = typeof change === 'function' ? change(sorting) : change;
      sortBy(first && { key: first.id, isDescending: first.desc });
    },
    enableSortingRemoval: true,
  });
  const { rows } = table.getRowModel();

  const isVirtual = rows.length > drawnWhole;
  const virtual = useVirtualizer({
    count: rows.length,
    enabled: isVirtual,
    getScrollElement: () => scroll.current,
    estimateSize: () => rowHeight,
    getItemKey: (index) => rows[index]!.id,
    overscan: 4,
  });
  const inSight = virtual.getVirtualItems();
  const drawn = isVirtual ? inSight.map(({ index }) => rows[index]!) : rows;
  const above = isVirtual ? (inSight[0]?.start ?? 0) : 0;
  const below = isVirtual ? Math.max(0, virtual.getTotalSize() - (inSight[inSight.length - 1]?.end ?? 0)) : 0;

  const choosable = useMemo(() => columns.filter(({ kind }) => kind !== 'control'), [columns]);
  const total = formats.whole(items.length);
  return (
    <div className="data">
      <div className="tools">
        {tools}
        <p className="quiet count" role="status" data-testid={testId && `${testId}-count`}>
          {rows.length === items.length ? t.rowCount(total) : t.rowCountOf(formats.whole(rows.length), total)}
        </p>
        <span className="inline">
          <input
            type="search"
            className="filter"
            value={filter}
            placeholder={t.filterRows}
            aria-label={t.filterRowsOf(label)}
            spellCheck={false}
            onChange={(event) => setFilter(event.target.value)}
          />
          <ColumnMenu label={label} columns={choosable} isShown={isShown} onShow={show} onReset={reset} />
        </span>
      </div>
      <div ref={scroll} className="scroll" tabIndex={0} role="region" aria-label={label}>
        <div style={{ paddingTop: above, paddingBottom: below }}>
          <table
            className="records"
            aria-busy={busy}
            data-testid={testId}
            style={{ minWidth: `calc(${widths.reduce((sum, width) => sum + width, 0)}ch + ${widths.length * 13}px)` }}
          >
            <colgroup>
              {shownColumns.map(({ key }, at) => (
                <col key={key} style={{ width: `calc(${widths[at]}ch + 13px)` }} />
              ))}
            </colgroup>
            <thead>
              <tr>
                {shownColumns.map((column) => (
                  <Heading
                    key={column.key}
                    column={column}
                    sort={sorting[0]?.id === column.key ? (sorting[0].desc ? 'descending' : 'ascending') : undefined}
                    onSort={table.getColumn(column.key)!.getToggleSortingHandler()}
                  />
                ))}
              </tr>
            </thead>
            <tbody>
              {drawn.map((row) => (
                <Row
                  key={row.id}
                  id={row.id}
                  item={row.original}
                  columns={shownColumns}
                  widths={widths}
                  write={write as never}
                  height={rowHeight}
                  isChosen={row.id === chosenId}
                />
              ))}
            </tbody>
          </table>
        </div>
        {rows.length === 0 && (
          <p className="quiet blank">{items.length === 0 ? (empty ?? t.noRows) : t.noMatchingRows}</p>
        )}
      </div>
    </div>
  );
}

function definitionOf<Item extends RowData>(
  column: Column<Item>,
  write: (column: Column<Item>, item: Item) => ReactNode,
): ColumnDef<typeof features, Item> {
  const { key, kind, value } = column;
  return {
    id: key,
    // The filter looks at what is shown, which is not always the value.
    accessorFn: (item) => ({ value: value(item), shown: () => write(column, item) }) satisfies Sortable,
    enableSorting: kind !== 'control',
    enableGlobalFilter: kind !== 'control',
    sortDescFirst: kind === 'number',
    sortUndefined: false,
    sortFn: (one, other) => compare(one.getValue<Sortable>(key).value, other.getValue<Sortable>(key).value),
  };
}

interface Sortable {
  value: string | number | null | undefined;
  shown: () => ReactNode;
}

const order = new Intl.Collator('zh-CN', { numeric: true });

/** Numbers before texts, and what is missing last. */
function compare(one: Sortable['value'], other: Sortable['value']): number {
  const rank = (value: Sortable['value']) => (typeof value === 'number' ? 0 : value === '' || value == null ? 2 : 1);
  if (rank(one) !== rank(other)) return rank(one) - rank(other);
  return typeof one === 'number'
    ? one - (other as number)
    : rank(one) === 2
      ? 0
      : order.compare(String(one), String(other));
}

/** Whether a cell shows the typed text or has it as its value. Each word may be in another cell. */
function containsText(row: { getValue: <T>(key: string) => T }, key: string, typed: string): boolean {
  const { value, shown } = row.getValue<Sortable>(key);
  const sought = typed.trim().toLowerCase();
  const text = shown();
  return (
    String(value ?? '')
      .toLowerCase()
      .includes(sought) ||
    (typeof text === 'string' && text.toLowerCase().includes(sought))
  );
}

interface HeadingProps<Item> {
  column: Column<Item>;
  sort: 'ascending' | 'descending' | undefined;
  onSort: ((event: unknown) => void) | undefined;
}

function Heading<Item>({ column: { key, title, kind }, sort, onSort }: HeadingProps<Item>) {
  return (
    <th scope="col" data-key={key} className={kind} aria-sort={sort}>
      {kind === 'control' ? (
        title
      ) : (
        <button type="button" className="sort" title={title} onClick={onSort}>
          {title}
          <span aria-hidden="true">{sort === undefined ? '' : sort === 'ascending' ? '↑' : '↓'}</span>
        </button>
      )}
    </th>
  );
}

interface RowProps<Item> {
  id: string;
  item: Item;
  columns: readonly Column<Item>[];
  /** Of the columns, in characters. */
  widths: readonly number[];
  write: (column: Column<Item>, item: Item) => ReactNode;
  height: number;
  isChosen: boolean;
}

const Row = memo(function Row<Item>({ id, item, columns, widths, write, height, isChosen }: RowProps<Item>) {
  return (
    <tr data-id={id} aria-current={isChosen || undefined} style={{ height }}>
      {columns.map((column, at) => {
        const shown = write(column, item);
        const tone = column.tone?.(item) ?? '';
        const text = typeof shown === 'string' ? shown : String(column.value(item) ?? '');
        const isCut = textWidth(text) + (column.isMarked ? 2 : 0) > widths[at]!;
        return (
          <td
            key={column.key}
            data-key={column.key}
            className={`${column.kind} ${tone} ${column.isMarked ? 'marked' : ''} ${isCut ? 'cut' : ''}`}
            title={column.kind === 'text' && typeof shown === 'string' ? shown : undefined}
          >
            {shown}
          </td>
        );
      })}
    </tr>
  );
}) as <Item>(props: RowProps<Item>) => ReactNode;
