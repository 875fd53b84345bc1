import type { Row } from './entry';
import { bytes, exchangeClock, laidOut, milliseconds } from './format';
import { kindName, RowLine } from './RowLine';
import { useTexts } from './texts';

interface Props {
  chosen: Row;
  /** All rows of its call, in order. */
  followed: readonly Row[];
  onChoose: (row: Row) => void;
  onClose: () => void;
}

/** A push may be one of thousands of its order: this many rows are drawn. */
const drawnRows = 500;

/** The call of the chosen row from beginning to end, and all of the row itself. */
export function Details({ chosen, followed, onChoose, onClose }: Props) {
  const t = useTexts();
  return (
    <section className="panel" data-testid="details">
      <header>
        <h2>{t.followed}</h2>
        <button type="button" className="plain" onClick={onClose}>
          {t.back}
        </button>
      </header>
      <ol className="followed" data-testid="followed">
        {followed.slice(0, drawnRows).map((row) => (
          <li
            key={row.entry.number}
            className={row.kind}
            data-testid="followed-row"
            data-kind={row.kind}
            data-name={row.entry.name}
          >
            <RowLine row={row} now={0} isChosen={row === chosen} onChoose={onChoose} />
          </li>
        ))}
      </ol>
      <RowDetails row={chosen} />
    </section>
  );
}

function RowDetails({ row }: { row: Row }) {
  const t = useTexts();
  const { entry, end } = row;
  const size = entry.size ?? end?.size;
  const operations = entry.kind === 'call' ? (end?.args?.[0] as Record<string, number> | undefined) : undefined;
  const facts: [string, string | undefined][] = [
    [t.uuid, entry.uuid],
    [t.messageId, entry.messageId],
    [t.size, size === undefined ? undefined : bytes(size)],
    [entry.kind === 'call' ? t.held : t.toPage, end && milliseconds(end.duration ?? 0)],
    [t.exchangeTime, entry.exchangeTime === undefined ? undefined : exchangeClock(entry.exchangeTime)],
  ];
  return (
    <div data-testid="row-details">
      <h3>
        {kindName(row, t)} <code>{entry.name}</code>
      </h3>
      <dl>
        {facts.map(
          ([name, value]) =>
            value !== undefined && (
              <div key={name}>
                <dt>{name}</dt>
                <dd>{value}</dd>
              </div>
            ),
        )}
      </dl>
      {operations && Object.keys(operations).length > 0 && (
        <>
          <h4>{t.operations}</h4>
          <dl data-testid="operations">
            {Object.entries(operations).map(([name, count]) => (
              <div key={name}>
                <dt>{name}</dt>
                <dd>{count}</dd>
              </div>
            ))}
          </dl>
        </>
      )}
      <h4>{t.arguments}</h4>
      {!entry.args && <p className="quiet">{t.noArguments}</p>}
      {entry.args?.map((arg, index) => (
        <pre key={index} tabIndex={0} aria-label={`${t.arguments} ${index}`}>
          {laidOut(arg)}
        </pre>
      ))}
      {entry.count !== undefined && <p className="quiet">{t.records(entry.args?.length ?? 0, entry.count)}</p>}
      {entry.cut && <p className="quiet">{t.cut}</p>}
    </div>
  );
}
