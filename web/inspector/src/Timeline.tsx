import { useVirtualizer } from '@tanstack/react-virtual';
import { useLayoutEffect, useRef, type RefObject } from 'react';
import type { Row } from './entry';
import { RowLine } from './RowLine';
import { useTexts } from './texts';

const rowHeight = 24; // a target for fingers and unsteady hands

interface Props {
  /** Newest first. */
  rows: readonly Row[];
  now: number;
  chosen: Row | undefined;
  onChoose: (row: Row) => void;
}

export function Timeline({ rows, now, chosen, onChoose }: Props) {
  const t = useTexts();
  const scroll = useRef<HTMLOListElement>(null);
  const virtual = useVirtualizer({
    count: rows.length,
    getScrollElement: () => scroll.current,
    estimateSize: () => rowHeight,
    getItemKey: (index) => rows[index]!.entry.number,
    overscan: 6,
  });
  const keepPosition = useSteadyScroll(scroll, rows);
  return (
    <section className="timeline">
      <div className="row heads" aria-hidden="true">
        <span>{t.time}</span>
        <span className="of">{t.page}</span>
        <span />
        <span>{t.name}</span>
        <span>{t.uuid}</span>
        <span className="size">{t.size}</span>
        <span className="took">
          {t.held} / {t.toPage}
        </span>
      </div>
      <ol ref={scroll} tabIndex={0} onScroll={keepPosition} aria-label={t.timeline} data-testid="timeline">
        {rows.length === 0 && <li className="quiet">{t.nothingYet}</li>}
        <li role="presentation" style={{ height: virtual.getTotalSize() }} aria-hidden="true" />
        {virtual.getVirtualItems().map(({ index, start }) => {
          const row = rows[index]!;
          return (
            <li
              key={row.entry.number}
              className={row.kind}
              data-testid="row"
              data-kind={row.kind}
              data-name={row.entry.name}
              aria-setsize={rows.length}
              aria-posinset={index + 1}
              style={{ height: rowHeight, transform: `translateY(${start}px)` }}
            >
              <RowLine row={row} now={now} isChosen={row === chosen} onChoose={onChoose} />
            </li>
          );
        })}
      </ol>
    </section>
  );
}

/** New rows come above. Whoever has scrolled down goes on seeing the same rows. */
function useSteadyScroll(scroll: RefObject<HTMLElement | null>, rows: readonly Row[]): () => void {
  const before = useRef(rows);
  const top = useRef(0);
  useLayoutEffect(() => {
    const first = before.current[0];
    before.current = rows;
    if (!first || top.current < rowHeight) return;
    const added = rows.findIndex(({ entry }) => entry.number <= first.entry.number);
    if (added > 0) scroll.current!.scrollTop = top.current + added * rowHeight;
  }, [scroll, rows]);
  return () => {
    top.current = scroll.current!.scrollTop;
  };
}
