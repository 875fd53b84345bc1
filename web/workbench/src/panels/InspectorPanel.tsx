import { useVirtualizer } from '@tanstack/react-virtual';
import { useLayoutEffect, useMemo, useRef, useState, useSyncExternalStore, type RefObject } from 'react';
import { useFormats } from '../formats';
import { layOut } from '../freeCall';
import type { CallEntry, Entry, Journal, Snapshot } from '../journal';
import { CutText } from '../keptText';
import { useTexts } from '../texts/useTexts';
import { useVisible } from '../useVisible';
import { Panel } from './Panel';

const rowHeight = 24; // a target for fingers and unsteady hands
const nobody = () => () => {};

function milliseconds(value: number): string {
  return `${value.toFixed(value < 10 ? 1 : 0)} ms`;
}

function clock(at: Date): string {
  return `${at.toTimeString().slice(0, 8)}.${String(at.getMilliseconds()).padStart(3, '0')}`;
}

/** Every call and every event of this page, newest first. It rests while it is paused or out of sight. */
export function InspectorPanel({ journal }: { journal: Journal }) {
  const t = useTexts();
  const { whole } = useFormats();
  const root = useRef<HTMLDivElement>(null);
  const isVisible = useVisible(root);
  const [paused, setPaused] = useState<Snapshot>();
  const live = useSyncExternalStore(isVisible && !paused ? journal.watch : nobody, journal.current);
  const { entries, unanswered, total, bytes } = paused ?? live;

  const [unansweredOnly, setUnansweredOnly] = useState(false);
  const [withPushes, setWithPushes] = useState(true);
  const [chosen, setChosen] = useState<Entry>();
  const shown = useMemo(() => {
    const isShown = (entry: Entry) =>
      unansweredOnly ? isWaiting(entry) : withPushes || entry.kind !== 'event' || !entry.isPush;
    return entries.filter(isShown).reverse();
  }, [entries, unansweredOnly, withPushes]);

  const tools = (
    <div className="tools">
      <label className="inline">
        <input type="checkbox" checked={unansweredOnly} onChange={(event) => setUnansweredOnly(event.target.checked)} />
        {t.unansweredOnly} <span data-testid="unanswered">{whole(unanswered)}</span>
      </label>
      <label className="inline">
        <input type="checkbox" checked={withPushes} onChange={(event) => setWithPushes(event.target.checked)} />
        {t.withPushes}
      </label>
      <label className="inline">
        <input
          type="checkbox"
          checked={paused !== undefined}
          onChange={(event) => setPaused(event.target.checked ? journal.current() : undefined)}
        />
        {t.pause}
      </label>
      <button
        type="button"
        className="plain"
        onClick={() => {
          journal.clear();
          setChosen(undefined);
          setPaused(undefined);
        }}
      >
        {t.clear}
      </button>
    </div>
  );
  return (
    <Panel title={t.inspector} tools={tools} className="inspector" testId="inspector">
      <div ref={root} className="journal">
        <p className="quiet" data-testid="inspector-count" data-bytes={bytes}>
          {t.inspectorCount(whole(entries.length), whole(total))}
        </p>
        <Rows shown={shown} chosen={chosen} onChoose={setChosen} />
        {chosen && <Detail entry={chosen} />}
      </div>
    </Panel>
  );
}

const isWaiting = (entry: Entry) => entry.kind === 'call' && !entry.oneWay && !entry.answer;

interface RowsProps {
  shown: readonly Entry[];
  chosen: Entry | undefined;
  onChoose: (entry: Entry | undefined) => void;
}

function Rows({ shown, chosen, onChoose }: RowsProps) {
  const t = useTexts();
  const scroll = useRef<HTMLOListElement>(null);
  const virtual = useVirtualizer({
    count: shown.length,
    getScrollElement: () => scroll.current,
    estimateSize: () => rowHeight,
    getItemKey: (index) => shown[index]!.id,
    overscan: 6,
  });
  const keepPosition = useSteadyScroll(scroll, shown);
  return (
    <ol ref={scroll} className="scroll" tabIndex={0} onScroll={keepPosition} aria-label={t.newestFirst(t.inspector)}>
      {shown.length === 0 && <li className="quiet">{t.nothingYet}</li>}
      <li role="presentation" style={{ height: virtual.getTotalSize() }} aria-hidden="true" />
      {virtual.getVirtualItems().map(({ index, start }) => {
        const entry = shown[index]!;
        return (
          <li
            key={entry.id}
            className={entry.kind}
            data-testid="entry"
            data-kind={entry.kind}
            data-name={entry.name}
            aria-setsize={shown.length}
            aria-posinset={index + 1}
            style={{ height: rowHeight, transform: `translateY(${start}px)` }}
          >
            <Row entry={entry} isChosen={entry === chosen} onChoose={onChoose} />
          </li>
        );
      })}
    </ol>
  );
}

/**
 * New rows come above. Whoever has scrolled down goes on seeing the same rows. To read the position while the rows change
 * would make the browser lay out the page, so it is kept when it changes.
 */
function useSteadyScroll(scroll: RefObject<HTMLElement | null>, shown: readonly Entry[]): () => void {
  const before = useRef(shown);
  const top = useRef(0);
  useLayoutEffect(() => {
    const first = before.current[0];
    before.current = shown;
    if (!first || top.current < rowHeight) return;
    const added = shown.findIndex(({ id }) => id <= first.id);
    if (added > 0) scroll.current!.scrollTop = top.current + added * rowHeight;
  }, [scroll, shown]);
  return () => {
    top.current = scroll.current!.scrollTop;
  };
}

const marks = { call: '→', event: '←', connection: '•' };

interface RowProps {
  entry: Entry;
  isChosen: boolean;
  onChoose: (entry: Entry | undefined) => void;
}

function Row({ entry, isChosen, onChoose }: RowProps) {
  const t = useTexts();
  return (
    <button type="button" aria-expanded={isChosen} onClick={() => onChoose(isChosen ? undefined : entry)}>
      <span className="mark" role="img" aria-label={t[entry.kind]}>
        {marks[entry.kind]}
      </span>
      <time dateTime={entry.at.toISOString()}>{clock(entry.at)}</time>
      <span className="name">{entry.name}</span>
      {entry.kind === 'call' && <CallState call={entry} />}
      {entry.kind === 'event' && entry.afterMs !== undefined && (
        <span className="state">{milliseconds(entry.afterMs)}</span>
      )}
    </button>
  );
}

function CallState({ call }: { call: CallEntry }) {
  const t = useTexts();
  if (call.oneWay) return <span className="state">{t.noReplyExpected}</span>;
  if (!call.answer) return <span className="state open">{t.noAnswerYet}</span>;
  const names = { ok: t.replyOk, failed: t.replyFailed, empty: t.replyEmpty };
  const { outcome, afterMs } = call.answer;
  return (
    <span className={`state ${outcome}`}>
      {names[outcome]} · {milliseconds(afterMs)}
    </span>
  );
}

function Detail({ entry: { name, args } }: { entry: Entry }) {
  const t = useTexts();
  const { whole } = useFormats();
  return (
    <div className="detail" data-testid="entry-detail">
      <p className="name">{name}</p>
      {args.length === 0 && <p className="quiet">{t.noArguments}</p>}
      {args.map((arg, index) => (
        <pre key={index} tabIndex={0} aria-label={t.argument(index)}>
          {arg instanceof CutText
            ? `${arg.text}\n${t.cutAfter(whole(arg.text.length), whole(arg.length))}`
            : arg === ''
              ? `""  ${t.emptyText}`
              : layOut(arg)}
        </pre>
      ))}
    </div>
  );
}
