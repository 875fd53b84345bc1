import { useSyncExternalStore } from 'react';
import { useDesk } from '../desk/DeskContext';
import { useFormats } from '../formats';
import { clockOf, phaseOf, type Quote } from '../quote';
import { useTexts } from '../texts/useTexts';
import { useDelayed } from '../useDelayed';

const settledMs = 500;

/** Says what the market does with a security while it does not trade it continuously. */
export function MarketPhase({ quote, precision }: { quote: Quote; precision: number }) {
  const t = useTexts();
  const { price, whole } = useFormats();
  const { clock } = useDesk();
  const newest = useSyncExternalStore(clock.watch, clock.current);
  // A view that is shown again has its old quote until the new one comes: that is no halt.
  const standsStill = useDelayed(phaseOf(quote, newest) === 'standsStill', settledMs);
  const phase = phaseOf(quote, standsStill ? newest : '');
  if (phase === 'trading') return null;
  const opening = quote.bids[0] ?? quote.asks[0];
  const words = {
    standsStill: t.standsStill(clockOf(quote.time)),
    noTrades: t.noTradesYet,
    openingCall: t.openingCall(price(opening?.price, precision), whole(opening?.qty ?? Number.NaN)),
    opened: t.opened,
    noonBreak: t.noonBreak,
    closed: t.marketClosed,
  };
  return (
    <p className="quiet" data-testid="market-phase" data-phase={phase}>
      {words[phase]}
    </p>
  );
}
