import { useCallback, useMemo } from 'react';
import { useSetting } from '../settings/useSetting';
import type { Column, TableChoice } from './types';

const nothingChosen: TableChoice = { columns: {} };

function isRecord(value: unknown): value is Record<string, unknown> {
  return typeof value === 'object' && value !== null && !Array.isArray(value);
}

function readChoice(value: unknown): TableChoice | undefined {
  if (!isRecord(value) || !isRecord(value.columns)) return undefined;
  const columns = Object.fromEntries(
    Object.entries(value.columns).filter((entry): entry is [string, boolean] => typeof entry[1] === 'boolean'),
  );
  const { sort } = value;
  return isRecord(sort) && typeof sort.key === 'string' && typeof sort.isDescending === 'boolean'
    ? { columns, sort: { key: sort.key, isDescending: sort.isDescending } }
    : { columns };
}

/** The columns and the order that the user has chosen for a table. The terminal keeps them. */
export function useTableChoice<Item>(name: string, columns: readonly Column<Item>[]) {
  const [choice, change] = useSetting(`workbench.columns.${name}`, readChoice, nothingChosen);
  const isShown = useMemo(
    () =>
      Object.fromEntries(
        columns.map(({ key, kind, isExtra }) => [key, kind === 'control' || (choice.columns[key] ?? !isExtra)]),
      ),
    [columns, choice],
  );
  const show = useCallback(
    (key: string, on: boolean) => change((before) => ({ ...before, columns: { ...before.columns, [key]: on } })),
    [change],
  );
  const sortBy = useCallback(
    (sort: TableChoice['sort']) =>
      change(({ columns: chosen }) => (sort ? { columns: chosen, sort } : { columns: chosen })),
    [change],
  );
  const reset = useCallback(() => change(nothingChosen), [change]);
  return { isShown, sort: choice.sort, show, sortBy, reset };
}
