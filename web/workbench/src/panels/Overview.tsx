import type { Connection } from '@varnel/web-client';
import { Split } from '../ui/Split';
import { useWatchList } from '../useWatchList';
import { AccountsPanel } from './AccountsPanel';
import { KLinePanel } from './KLinePanel';
import { LoginPanel } from './LoginPanel';
import { PermissionPanel } from './PermissionPanel';
import { StationPanel } from './StationPanel';
import { WatchPanel } from './WatchPanel';

interface Props {
  sdk: Connection;
  /** The symbol that the user has chosen, or empty. */
  symbol: string;
  onSymbol: (symbol: string) => void;
}

/** The login on the left, quotes and candles on the right. */
export function Overview({ sdk, symbol, onSymbol }: Props) {
  const watchList = useWatchList(sdk);
  return (
    <Split
      id="overview"
      parts={[
        {
          id: 'overview-login',
          size: 31,
          min: 220,
          className: 'column',
          content: (
            <>
              <LoginPanel sdk={sdk} />
              <AccountsPanel sdk={sdk} />
              <PermissionPanel sdk={sdk} />
              <StationPanel sdk={sdk} />
            </>
          ),
        },
        {
          id: 'overview-market',
          size: 69,
          min: 360,
          content: (
            <Split
              id="market"
              isVertical
              parts={[
                {
                  id: 'market-watch',
                  size: 41,
                  min: 120,
                  content: <WatchPanel sdk={sdk} list={watchList} chosen={symbol} onChoose={onSymbol} />,
                },
                {
                  id: 'market-klines',
                  size: 59,
                  min: 240,
                  content: <KLinePanel sdk={sdk} chosen={symbol || (watchList.symbols[0] ?? '')} />,
                },
              ]}
            />
          ),
        },
      ]}
    />
  );
}
