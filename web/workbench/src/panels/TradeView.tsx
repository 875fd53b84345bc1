import type { Connection } from '@varnel/web-client';
import type { TickFeed } from '../live/TickFeed';
import { BasketPanel } from './BasketPanel';
import { BlotterPanel } from './BlotterPanel';
import { DealsPanel } from './DealsPanel';
import { TicketPanel } from './TicketPanel';

interface Props {
  sdk: Connection;
  feed: TickFeed;
  symbol: string;
}

/** Order entry on the left, orders on the right. */
export function TradeView({ sdk, feed, symbol }: Props) {
  return (
    <>
      <div className="column">
        <TicketPanel sdk={sdk} feed={feed} suggested={symbol} />
        <BasketPanel sdk={sdk} />
      </div>
      <div className="column">
        <BlotterPanel sdk={sdk} />
        <DealsPanel sdk={sdk} />
      </div>
    </>
  );
}
