import { useFormats } from '../formats';
import type { Quote } from '../quote';
import { useTexts } from '../texts/useTexts';

interface Props {
  quote: Quote;
  name: string;
  precision: number;
  onPrice: (text: string) => void;
}

/** The current prices. A press copies one to the ticket. */
export function TicketPrices({ quote: { figures, bids, asks }, name, precision, onPrice }: Props) {
  const t = useTexts();
  const { price } = useFormats();
  const prices: [string, number | undefined][] = [
    [t.bid, bids[0]?.price],
    [t.last, figures.last],
    [t.asked, asks[0]?.price],
  ];
  return (
    <div className="prices wide" role="group" aria-label={t.pricesNow}>
      <strong>{name || '—'}</strong>
      {prices.map(([title, value]) => (
        <span key={title}>
          <small>{title}</small>{' '}
          {value ? (
            <button
              type="button"
              className="link number"
              aria-label={t.takePrice(title, price(value, precision))}
              onClick={() => onPrice(value.toFixed(precision))}
            >
              {price(value, precision)}
            </button>
          ) : (
            '—'
          )}
        </span>
      ))}
    </div>
  );
}
