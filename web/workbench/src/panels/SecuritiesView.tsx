import type { Connection } from '@varnel/web-client';
import { useState } from 'react';
import { Split } from '../ui/Split';
import { useAsk } from '../useAsk';
import { useFundAccounts } from '../useFundAccounts';
import { QuotePanel } from './QuotePanel';
import { SecurityListPanel } from './SecurityListPanel';
import { SecurityPanel } from './SecurityPanel';
import { TradableQtyPanel } from './TradableQtyPanel';

/** A list of securities, and the details of the chosen one. */
export function SecuritiesView({ sdk }: { sdk: Connection }) {
  const accounts = useFundAccounts(sdk);
  const [symbol, setSymbol] = useState('');
  const enabled = symbol !== '';
  const detail = useAsk(
    ['securityDetails', symbol],
    () => sdk.getSymbolDetail({ symbols: [symbol] }).then(([only]) => only ?? null),
    { enabled },
  );
  const security = { ...detail, data: detail.data ?? undefined };

  return (
    <Split
      id="securities"
      parts={[
        {
          id: 'securities-list',
          size: 36,
          min: 260,
          content: <SecurityListPanel sdk={sdk} chosen={symbol} onChoose={setSymbol} />,
        },
        {
          id: 'securities-detail',
          size: 64,
          min: 320,
          className: 'column',
          content: (
            <>
              <QuotePanel symbol={symbol} precision={security.data?.precision ?? 2} />
              <SecurityPanel detail={security} />
              <TradableQtyPanel
                sdk={sdk}
                symbol={symbol}
                exchange={security.data?.exchange ?? ''}
                securityType={security.data?.securityType ?? ''}
                accounts={accounts}
              />
            </>
          ),
        },
      ]}
    />
  );
}
