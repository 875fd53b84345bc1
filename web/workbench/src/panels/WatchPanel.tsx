import type { Connection, SecurityDetail, Tick } from '@varnel/web-client';
import { useMemo, useRef, useState, type FormEvent } from 'react';
import { useFormats, toneOf, type Formats } from '../formats';
import { useQuotes } from '../live/useWatch';
import { clockOf, quoteOf, type Quote } from '../quote';
import { DataTable } from '../table/DataTable';
import { symbolColumn, symbolOf } from '../table/symbolColumn';
import type { Column } from '../table/types';
import type { Texts } from '../texts';
import { useTexts } from '../texts/useTexts';
import { useDetails } from '../useSecurities';
import type { WatchList } from '../useWatchList';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  list: WatchList;
  chosen: string;
  onChoose: (symbol: string) => void;
}

interface Watched {
  symbol: string;
  detail: SecurityDetail | undefined;
  tick: Tick | undefined;
  quote: Quote;
}

/** Securities with their live quotes. The terminal keeps the list for the login. */
export function WatchPanel({ sdk, list, chosen, onChoose }: Props) {
  const t = useTexts();
  const formats = useFormats();
  const [typed, setTyped] = useState('');
  const items = useWatched(list.symbols, useDetails(sdk, list.symbols), useQuotes(list.symbols));

  const { remove } = list;
  const columns = useMemo(() => columnsOf(t, formats, onChoose, remove), [t, formats, onChoose, remove]);

  function add(event: FormEvent) {
    event.preventDefault();
    if (typed === '' || !list.isKnown) return;
    list.add(typed);
    setTyped('');
  }

  const tools = (
    <form className="tools" onSubmit={add}>
      <label className="inline">
        {t.symbol}
        <input value={typed} size={10} spellCheck={false} onChange={(event) => setTyped(event.target.value.trim())} />
      </label>
      <button type="submit" className="plain" disabled={!list.isKnown}>
        {t.addToWatchList}
      </button>
    </form>
  );
  return (
    <Panel title={t.watchList} className="watch" testId="watch">
      {list.answer.error && <Outcome of={list.answer}>{() => null}</Outcome>}
      <DataTable
        name="watch"
        label={t.watchList}
        columns={columns}
        items={items}
        idOf={symbolOf}
        testId="watch-table"
        chosenId={chosen}
        tools={tools}
        empty={list.isKnown ? t.watchListEmpty : t.waiting}
      />
    </Panel>
  );
}

function columnsOf(
  t: Texts,
  formats: Formats,
  onChoose: (symbol: string) => void,
  onRemove: (symbol: string) => void,
): readonly Column<Watched>[] {
  const rise = ({ quote: { figures, previousClose } }: Watched) => toneOf(figures.last - previousClose);
  const price = (key: string, title: string, of: (quote: Quote) => number | undefined): Column<Watched> => ({
    key,
    title,
    kind: 'number',
    value: ({ quote }) => of(quote),
    write: ({ quote, detail }) => formats.price(of(quote), detail?.precision ?? 2),
  });
  const change = ({ quote: { figures, previousClose } }: Watched) => (figures.last - previousClose) / previousClose;
  return [
    symbolColumn(t, onChoose),
    { key: 'name', title: t.name, kind: 'text', value: ({ detail }) => detail?.displayName || null },
    { ...price('last', t.last, ({ figures }) => figures.last), tone: rise, isMarked: true },
    {
      key: 'change',
      title: t.change,
      kind: 'number',
      value: (watched) => (Number.isFinite(change(watched)) ? change(watched) : null),
      write: (watched) => (Number.isFinite(change(watched)) ? formats.rate(change(watched)) : formats.value(null)),
      tone: rise,
    },
    price('bid', t.bid, ({ bids }) => bids[0]?.price),
    price('ask', t.asked, ({ asks }) => asks[0]?.price),
    { ...price('high', t.high, ({ figures }) => figures.high), isExtra: true },
    { ...price('low', t.low, ({ figures }) => figures.low), isExtra: true },
    {
      key: 'volume',
      title: t.volume,
      kind: 'number',
      isExtra: true,
      value: ({ quote }) => quote.figures.volume,
      write: ({ quote }) => formats.whole(quote.figures.volume),
    },
    {
      key: 'time',
      title: t.time,
      kind: 'number',
      value: ({ quote }) => quote.time,
      write: ({ quote }) => clockOf(quote.time) || formats.value(null),
    },
    {
      key: 'actions',
      title: '',
      kind: 'control',
      width: 3,
      value: () => null,
      write: ({ symbol }) => (
        <button
          type="button"
          className="link"
          aria-label={t.removeFromWatchList(symbol)}
          onClick={() => onRemove(symbol)}
        >
          ✕
        </button>
      ),
    },
  ];
}

/** The rows. A security whose quote has not changed stays the same object, so that its row is not drawn again. */
function useWatched(
  symbols: readonly string[],
  details: ReadonlyMap<string, SecurityDetail>,
  ticks: readonly Tick[],
): readonly Watched[] {
  const before = useRef(new Map<string, Watched>());
  return useMemo(() => {
    const bySymbol = new Map(ticks.map((tick) => [tick.symbol, tick]));
    const items = symbols.map((symbol) => {
      const old = before.current.get(symbol);
      const [detail, tick] = [details.get(symbol), bySymbol.get(symbol)];
      return old && old.detail === detail && old.tick === tick
        ? old
        : { symbol, detail, tick, quote: quoteOf(tick ?? {}) };
    });
    before.current = new Map(items.map((item) => [item.symbol, item]));
    return items;
  }, [symbols, details, ticks]);
}
