import type { Tick } from '@varnel/web-client';
import { useCallback } from 'react';
import { useSdk } from '../desk/DeskContext';
import { toneOf, useFormats } from '../formats';
import { useWatch, type StartWatch } from '../live/useWatch';
import { clockOf, quoteOf, type Level, type Quote } from '../quote';
import { useTexts } from '../texts/useTexts';
import { MarketPhase } from './MarketPhase';
import { Outcome, Panel } from './Panel';

interface Props {
  symbol: string;
  /** Decimals of the security's prices. */
  precision: number;
}

const levels = [1, 2, 3, 4, 5];
const figureKeys = [
  'last',
  'open',
  'high',
  'low',
  'upperLimit',
  'lowerLimit',
  'volume',
  'amount',
] as const satisfies (keyof Quote['figures'])[];

export function QuotePanel({ symbol, precision }: Props) {
  const t = useTexts();
  const sdk = useSdk();
  const start = useCallback<StartWatch<Tick>>((listener) => sdk.watchQuotes([symbol], listener), [sdk, symbol]);
  const { items, isReady, error } = useWatch(symbol === '' ? undefined : start);
  const tick = items.find((each) => each.symbol === symbol);
  return (
    <Panel title={t.quote} tools={<strong className="figure">{symbol}</strong>} testId="quote">
      {symbol === '' ? (
        <p className="quiet">{t.chooseSecurity}</p>
      ) : isReady && !tick ? (
        <p className="quiet">{t.noQuote}</p>
      ) : (
        <Outcome of={{ data: tick, error, waiting: true }}>
          {(quoted) => <Levels quote={quoteOf(quoted)} precision={precision} />}
        </Outcome>
      )}
    </Panel>
  );
}

function Levels({ quote, precision }: { quote: Quote; precision: number }) {
  const t = useTexts();
  const formats = useFormats();
  const { bids, asks, previousClose, figures } = quote;
  const tone = (price: number | undefined) => (price ? toneOf(price - previousClose) : '');
  const row = (name: string, level: Level | undefined) => (
    <tr key={name}>
      <th scope="row">{name}</th>
      <td className={`number marked ${tone(level?.price)}`}>{formats.price(level?.price, precision)}</td>
      <td className="number">{formats.whole(level?.qty ?? Number.NaN)}</td>
    </tr>
  );
  return (
    <div className="quote">
      <MarketPhase quote={quote} precision={precision} />
      <table data-testid="levels">
        <thead>
          <tr>
            <th scope="col">{t.level}</th>
            <th scope="col" className="number">
              {t.price}
            </th>
            <th scope="col" className="number">
              {t.quantity}
            </th>
          </tr>
        </thead>
        <tbody>
          {[...levels].reverse().map((level) => row(t.askLevel(level), asks[level - 1]))}
          {levels.map((level) => row(t.bidLevel(level), bids[level - 1]))}
        </tbody>
      </table>
      <dl>
        <dt>{t.time}</dt>
        <dd className="number">{clockOf(quote.time) || formats.value(null)}</dd>
        <dt>{t.previousClose}</dt>
        <dd className="number">{formats.price(previousClose, precision)}</dd>
        {figureKeys.map((key) => {
          const value = figures[key];
          const isPrice = key !== 'amount' && key !== 'volume';
          return [
            <dt key={`${key} name`}>{t[key]}</dt>,
            <dd key={key} data-key={key} className={`number marked ${isPrice ? tone(value) : ''}`}>
              {isPrice ? formats.price(value, precision) : formats.whole(value)}
            </dd>,
          ];
        })}
      </dl>
    </div>
  );
}
