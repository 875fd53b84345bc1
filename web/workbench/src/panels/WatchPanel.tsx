import type { Connection, SecurityDetail } from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import { useTick } from '../live/hooks';
import type { TickFeed } from '../live/TickFeed';
import { clockOf, quoteOf } from '../quote';
import { rate, toneOf } from '../values';
import type { WatchList } from '../useWatchList';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  feed: TickFeed;
  list: WatchList;
  chosen: string;
  onChoose: (symbol: string) => void;
}

const titles = ['标识', '名称', '最新', '涨跌幅', '买一', '卖一', '时间', ''];

/** Securities with their live quotes. The terminal keeps the list for the login. */
export function WatchPanel({ sdk, feed, list, chosen, onChoose }: Props) {
  const [typed, setTyped] = useState('');
  const details = useDetails(sdk, list.symbols);

  function add(event: FormEvent) {
    event.preventDefault();
    if (typed !== '') list.add(typed);
    setTyped('');
  }

  const tools = (
    <form className="tools" onSubmit={add}>
      <label className="inline">
        证券标识 <small>symbol</small>
        <input value={typed} size={10} spellCheck={false} onChange={(event) => setTyped(event.target.value.trim())} />
      </label>
      <button type="submit" className="plain" disabled={!list.isKnown}>
        加自选 Add
      </button>
    </form>
  );
  return (
    <Panel title="自选" hint="Watch list" tools={tools} className="watch" testId="watch">
      <Outcome of={list.answer}>
        {() => (
          <div className="scroll" tabIndex={0} role="region" aria-label="自选行情 watched quotes">
            <table className="records" data-testid="watch-table">
              <thead>
                <tr>
                  {titles.map((title, place) => (
                    <th key={place} scope="col" className={place > 1 ? 'number' : ''}>
                      {title}
                    </th>
                  ))}
                </tr>
              </thead>
              <tbody>
                {list.symbols.map((symbol) => (
                  <Row
                    key={symbol}
                    symbol={symbol}
                    detail={details.get(symbol)}
                    feed={feed}
                    isChosen={symbol === chosen}
                    onChoose={onChoose}
                    onRemove={list.remove}
                  />
                ))}
              </tbody>
            </table>
          </div>
        )}
      </Outcome>
    </Panel>
  );
}

interface RowProps {
  symbol: string;
  detail: SecurityDetail | undefined;
  feed: TickFeed;
  isChosen: boolean;
  onChoose: (symbol: string) => void;
  onRemove: (symbol: string) => void;
}

/** Renders again only when its own quote changes. */
function Row({ symbol, detail, feed, isChosen, onChoose, onRemove }: RowProps) {
  const { time, previousClose, figures, bids, asks } = quoteOf(useTick(feed, symbol) ?? {});
  const price = (value: number | undefined) => (value ? value.toFixed(detail?.precision ?? 2) : '—');
  const change = (figures.last - previousClose) / previousClose;
  const tone = toneOf(figures.last - previousClose);
  const cells: [key: string, text: string, tone: string][] = [
    ['last', price(figures.last), tone],
    ['change', Number.isFinite(change) ? rate(change) : '—', tone],
    ['bid', price(bids[0]?.price), ''],
    ['ask', price(asks[0]?.price), ''],
    ['time', clockOf(time) || '—', ''],
  ];
  return (
    <tr data-symbol={symbol} aria-current={isChosen || undefined}>
      <td>
        <button type="button" className="link number" onClick={() => onChoose(symbol)}>
          {symbol}
        </button>
      </td>
      <td>{detail?.displayName || '—'}</td>
      {cells.map(([key, text, cellTone]) => (
        <td key={key} data-key={key} className={`number ${cellTone}`}>
          {text}
        </td>
      ))}
      <td className="number">
        <button type="button" className="link" aria-label={`移除 remove ${symbol}`} onClick={() => onRemove(symbol)}>
          ✕
        </button>
      </td>
    </tr>
  );
}

/** Names and decimals of the watched securities, asked for when the list changes. */
function useDetails(sdk: Connection, symbols: readonly string[]): ReadonlyMap<string, SecurityDetail> {
  const [details, setDetails] = useState<ReadonlyMap<string, SecurityDetail>>(new Map());
  useEffect(() => {
    const missing = symbols.filter((symbol) => !details.has(symbol));
    if (missing.length === 0) return;
    sdk.getSymbolDetail({ symbols: missing }).then(
      (list) =>
        setDetails((before) => new Map([...before, ...list.map((each, place) => [missing[place]!, each] as const)])),
      () => {}, // the rows then show symbols without names
    );
  }, [sdk, symbols]);
  return details;
}
