import { useMemo } from 'react';
import type { Row } from './entry';
import { milliseconds } from './format';
import { useTexts } from './texts';
import type { Snapshot } from './TrafficStore';
import { warningOf, type WarningKind } from './warnings';

const drawnWarnings = 50;

interface Props {
  traffic: Snapshot;
  /** 0 for all. */
  page: number;
  onChoose: (row: Row) => void;
}

/** What is wrong with the kept calls, newest first. */
export function Warnings({ traffic: { rows, now }, page, onChoose }: Props) {
  const t = useTexts();
  const found = useMemo(() => {
    const all: [Row, WarningKind][] = [];
    for (const row of rows) {
      const warning = page === 0 || row.entry.page === page ? warningOf(row, now) : undefined;
      if (warning) all.push([row, warning]);
    }
    return all.reverse();
  }, [rows, now, page]);
  return (
    <section className="panel" data-testid="warnings">
      <h2>
        {t.warnings} <small>{found.length}</small>
      </h2>
      {found.length === 0 && <p className="quiet">{t.noWarnings}</p>}
      <ul>
        {found.slice(0, drawnWarnings).map(([row, warning]) => (
          <li key={row.entry.number} data-testid="warning" data-kind={warning}>
            <button type="button" className="link" onClick={() => onChoose(row)}>
              {row.entry.name || '""'}
            </button>{' '}
            {t.pageNumber(row.entry.page ?? 0)}: {t[warning]}
            {warning === 'slow' && ` · ${milliseconds(row.end!.duration ?? 0)}`}
          </li>
        ))}
      </ul>
      {found.length > drawnWarnings && <p className="quiet">{t.moreWarnings(found.length - drawnWarnings)}</p>}
    </section>
  );
}
