import type { Connection, Position } from '@varnel/web-client';
import { useCallback } from 'react';
import { closingOrder, securityOf } from './closing';
import { quoteOf } from './quote';
import { useFetchSecurities } from './useSecurities';
import type { Proposal } from './useTicket';

/** Prepares the order that closes a position, at the current quote. Nothing is sent. */
export function useClosing(sdk: Connection, onPrepared: (order: Proposal) => void): (position: Position) => void {
  const fetchSecurities = useFetchSecurities(sdk);
  return useCallback(
    (position) => {
      void (async () => {
        const security = securityOf(position, await fetchSecurities());
        if (!security) return;
        // Without a quote the user types the price.
        const tick = await sdk.getCurrentTick({ symbol: security.symbol }).catch(() => ({}));
        onPrepared(closingOrder(position, security, quoteOf(tick)));
      })().catch(console.error);
    },
    [sdk, fetchSecurities, onPrepared],
  );
}
