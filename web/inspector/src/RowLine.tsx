import type { Row } from './entry';
import { bytes, clock, milliseconds } from './format';
import { useTexts, type Texts } from './texts';
import { warningOf } from './warnings';

const marks: Readonly<Record<Row['kind'], string>> = {
  page: '•',
  call: '→',
  reply: '←',
  push: '◂',
  command: '▸',
  host: '·',
  bus: '≡',
  quote: '¤',
};

/** What the line stands for. */
export function kindName({ kind, entry }: Row, t: Texts): string {
  if (kind === 'reply' || kind === 'push') return t[kind];
  return entry.kind === 'callDone' || entry.kind === 'eventDelivered' ? t.event : t[entry.kind];
}

interface Props {
  row: Row;
  now: number;
  isChosen: boolean;
  onChoose: (row: Row) => void;
}

/** One line: when, which page, what, and how long it took. */
export function RowLine({ row, now, isChosen, onChoose }: Props) {
  const t = useTexts();
  const { kind, entry, end } = row;
  const warning = warningOf(row, now);
  const size = kind === 'call' ? entry.size : end?.size;
  return (
    <button type="button" className="row" aria-pressed={isChosen} onClick={() => onChoose(row)}>
      <span className="when">{clock(entry.time ?? 0)}</span>
      <span className="of">{entry.page ?? ''}</span>
      <span className="mark" role="img" aria-label={kindName(row, t)}>
        {marks[kind]}
      </span>
      <span className="what">{entry.name ?? kindName(row, t)}</span>
      {warning && (
        <span className="warning" role="img" aria-label={t[warning]} title={t[warning]}>
          ⚠
        </span>
      )}
      <span className="uuid">{entry.uuid ?? entry.messageId ?? ''}</span>
      <span className="size">{size === undefined ? '' : bytes(size)}</span>
      <span className="took" title={kind === 'call' ? t.held : t.toPage}>
        {end ? milliseconds(end.duration ?? 0) : ''}
      </span>
    </button>
  );
}
