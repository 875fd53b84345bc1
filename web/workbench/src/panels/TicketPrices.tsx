import { useTick } from '../live/hooks';
import type { TickFeed } from '../live/TickFeed';
import { quoteOf } from '../quote';

interface Props {
  feed: TickFeed;
  symbol: string;
  name: string;
  precision: number;
  onPrice: (text: string) => void;
}

/** The current prices. A click copies one to the ticket. */
export function TicketPrices({ feed, symbol, name, precision, onPrice }: Props) {
  const { figures, bids, asks } = quoteOf(useTick(feed, symbol) ?? {});
  const prices: [string, number | undefined][] = [
    ['买一', bids[0]?.price],
    ['最新', figures.last],
    ['卖一', asks[0]?.price],
  ];
  return (
    <p className="prices wide">
      <strong>{name || '—'}</strong>
      {prices.map(([title, value]) => (
        <span key={title}>
          <small>{title}</small>{' '}
          {value ? (
            <button type="button" className="link number" onClick={() => onPrice(value.toFixed(precision))}>
              {value.toFixed(precision)}
            </button>
          ) : (
            '—'
          )}
        </span>
      ))}
    </p>
  );
}
