import type { Connection, SecurityDetail, Tick } from '@varnel/web-client';
import type { TickFeed } from '../live/TickFeed';
import { useCallback, useState } from 'react';
import { useAnswer } from '../useAnswer';
import { useFundAccounts } from '../useFundAccounts';
import { QuotePanel } from './QuotePanel';
import { SecurityListPanel } from './SecurityListPanel';
import { SecurityPanel } from './SecurityPanel';
import { TradableQtyPanel } from './TradableQtyPanel';

/** A list of securities, and the details of the chosen one. */
export function SecuritiesView({ sdk, feed }: { sdk: Connection; feed: TickFeed }) {
  const accounts = useFundAccounts(sdk);
  const [symbol, setSymbol] = useState('');
  const [detail, followDetail] = useAnswer<SecurityDetail | undefined>();
  const [quote, followQuote] = useAnswer<Partial<Tick>>();

  const choose = useCallback(
    (chosen: string) => {
      setSymbol(chosen);
      followDetail(sdk.getSymbolDetail({ symbols: [chosen] }).then(([only]) => only));
      followQuote(sdk.getCurrentTick({ symbol: chosen }));
    },
    [sdk, followDetail, followQuote],
  );

  return (
    <>
      <div className="column">
        <SecurityListPanel sdk={sdk} chosen={symbol} onChoose={choose} />
      </div>
      <div className="column">
        <QuotePanel
          symbol={symbol}
          quote={quote}
          feed={feed}
          precision={detail.data?.precision ?? 2}
          onRefresh={() => followQuote(sdk.getCurrentTick({ symbol }))}
        />
        <SecurityPanel detail={detail} />
        <TradableQtyPanel
          sdk={sdk}
          symbol={symbol}
          exchange={detail.data?.exchange ?? ''}
          securityType={detail.data?.securityType ?? ''}
          accounts={accounts}
        />
      </div>
    </>
  );
}
