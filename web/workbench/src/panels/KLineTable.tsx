import { useMemo } from 'react';
import type { Bar } from '../candles';
import { direction, useFigures } from '../figures';
import { DataTable } from '../table/DataTable';
import type { Column } from '../table/types';
import { useTexts } from '../texts/useTexts';

const idOf = ({ time }: Bar) => time;

/** Newest first, as traders read it. */
export function KLineTable({ title, bars }: { title: string; bars: readonly Bar[] }) {
  const t = useTexts();
  const figures = useFigures();
  const columns = useMemo<readonly Column<Bar>[]>(
    () =>
      figures.map(({ key, name, write }) => ({
        key,
        title: name,
        kind: key === 'time' ? ('text' as const) : ('number' as const),
        value: (bar) => bar[key],
        write,
        ...(key === 'close' && { tone: direction, isMarked: true }),
      })),
    [figures],
  );
  const newestFirst = useMemo(() => [...bars].reverse(), [bars]);
  return (
    <DataTable
      name="klines"
      label={t.klineTable(title)}
      columns={columns}
      items={newestFirst}
      idOf={idOf}
      testId="kline-table"
    />
  );
}
