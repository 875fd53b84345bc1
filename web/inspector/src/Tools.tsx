import { rowKinds, type RowKind } from './entry';
import type { Filter } from './filter';
import { useTexts, type Texts } from './texts';
import type { Snapshot } from './TrafficStore';

const kindNames: Readonly<Record<RowKind, (t: Texts) => string>> = {
  page: (t) => t.kindPage,
  call: (t) => t.kindCall,
  reply: (t) => t.kindReply,
  push: (t) => t.kindPush,
  command: (t) => t.kindCommand,
  host: (t) => t.kindHost,
  bus: (t) => t.kindBus,
  quote: (t) => t.kindQuote,
};

interface Props {
  traffic: Snapshot;
  shown: number;
  filter: Filter;
  onFilter: (filter: Filter) => void;
  isPaused: boolean;
  onPause: (pause: boolean) => void;
  onClear: () => void;
  onSave: () => void;
}

export function Tools({ traffic, shown, filter, onFilter, isPaused, onPause, onClear, onSave }: Props) {
  const t = useTexts();
  const { calls, replies, pushes } = {
    calls: traffic.rates.call.toFixed(1),
    replies: traffic.rates.reply.toFixed(1),
    pushes: traffic.rates.push.toFixed(1),
  };
  const methods = traffic.methods.map(({ name }) => name).sort();
  const toggle = (kind: RowKind, isShown: boolean) => {
    const kinds = new Set(filter.kinds);
    if (isShown) kinds.add(kind);
    else kinds.delete(kind);
    onFilter({ ...filter, kinds });
  };
  return (
    <section className="tools" aria-label={t.kinds} data-testid="tools">
      <label className="inline">
        {t.page}
        <select
          data-testid="filter-page"
          value={filter.page}
          onChange={(event) => onFilter({ ...filter, page: Number(event.target.value) })}
        >
          <option value={0}>{t.allPages}</option>
          {traffic.pages.map((page) => (
            <option key={page} value={page}>
              {t.pageNumber(page)}
            </option>
          ))}
        </select>
      </label>
      <label className="inline">
        {t.method}
        <select value={filter.method} onChange={(event) => onFilter({ ...filter, method: event.target.value })}>
          <option value="">{t.allMethods}</option>
          {filter.method && !methods.includes(filter.method) && <option>{filter.method}</option>}
          {methods.map((method) => (
            <option key={method}>{method}</option>
          ))}
        </select>
      </label>
      <label className="inline">
        {t.search}
        <input
          type="search"
          value={filter.text}
          placeholder={t.searchHint}
          onChange={(event) => onFilter({ ...filter, text: event.target.value })}
        />
      </label>
      <fieldset>
        <legend className="unseen">{t.kinds}</legend>
        {rowKinds.map((kind) => (
          <label key={kind} className="inline">
            <input
              type="checkbox"
              checked={filter.kinds.has(kind)}
              onChange={(event) => toggle(kind, event.target.checked)}
            />
            {kindNames[kind](t)}
          </label>
        ))}
      </fieldset>
      <label className="inline">
        <input type="checkbox" checked={isPaused} onChange={(event) => onPause(event.target.checked)} />
        {t.pause}
      </label>
      <button type="button" className="plain" onClick={onClear}>
        {t.clear}
      </button>
      <button type="button" className="plain" onClick={onSave}>
        {t.save}
      </button>
      <p className="figures">
        <span data-testid="rates">{t.rates(calls, replies, pushes)}</span>
        <span data-testid="count">{t.shown(String(shown), String(traffic.rows.length), String(traffic.total))}</span>
        {traffic.lost > 0 && <strong data-testid="lost">{t.lost(String(traffic.lost))}</strong>}
      </p>
    </section>
  );
}
