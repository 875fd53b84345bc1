import type { Tick } from '@varnel/web-client';
import { useTick } from '../live/hooks';
import type { TickFeed } from '../live/TickFeed';
import { clockOf, quoteOf, type Level, type Quote } from '../quote';
import type { Answered } from '../useAnswer';
import { toneOf, wholeNumber } from '../values';
import { Outcome, Panel } from './Panel';

interface Props {
  symbol: string;
  /** The answer to the latest call. */
  quote: Answered<Partial<Tick>>;
  feed: TickFeed;
  /** Decimals of the security's prices. */
  precision: number;
  onRefresh: () => void;
}

const levels = [1, 2, 3, 4, 5];

const figureNames = {
  last: '最新',
  open: '开盘',
  high: '最高',
  low: '最低',
  upperLimit: '涨停',
  lowerLimit: '跌停',
  volume: '总量',
  amount: '总额',
} satisfies Record<keyof Quote['figures'], string>;

export function QuotePanel({ symbol, quote, feed, precision, onRefresh }: Props) {
  const live = useTick(feed, symbol);
  const tools = (
    <div className="tools">
      <strong className="number">{symbol}</strong>
      <button type="button" className="plain" disabled={!symbol} onClick={onRefresh}>
        刷新 Refresh
      </button>
    </div>
  );
  return (
    <Panel title="行情" hint="Quote" tools={tools} testId="quote">
      <Outcome of={quote}>{(tick) => <Levels quote={quoteOf(live ?? tick)} precision={precision} />}</Outcome>
    </Panel>
  );
}

function Levels({ quote, precision }: { quote: Quote; precision: number }) {
  const { bids, asks, previousClose, figures } = quote;
  const price = (value: number) => (Number.isFinite(value) && value !== 0 ? value.toFixed(precision) : '—');
  const row = (name: string, level: Level | undefined) => (
    <tr key={name}>
      <th scope="row">{name}</th>
      <td className={`number ${level ? toneOf(level.price - previousClose) : ''}`}>{price(level?.price ?? 0)}</td>
      <td className="number">{level ? wholeNumber(level.qty) : '—'}</td>
    </tr>
  );
  return (
    <div className="quote">
      <table data-testid="levels">
        <tbody>
          {[...levels].reverse().map((level) => row(`卖${level}`, asks[level - 1]))}
          {levels.map((level) => row(`买${level}`, bids[level - 1]))}
        </tbody>
      </table>
      <dl>
        <dt>时间</dt>
        <dd className="number">{clockOf(quote.time) || '—'}</dd>
        <dt>昨收</dt>
        <dd className="number">{price(previousClose)}</dd>
        {Object.entries(figureNames).map(([key, name]) => {
          const value = figures[key as keyof Quote['figures']];
          const isMoney = key === 'amount' || key === 'volume';
          return [
            <dt key={`${key} name`}>{name}</dt>,
            <dd key={key} data-key={key} className={`number ${isMoney ? '' : toneOf(value && value - previousClose)}`}>
              {isMoney ? wholeNumber(value) : price(value)}
            </dd>,
          ];
        })}
      </dl>
    </div>
  );
}
