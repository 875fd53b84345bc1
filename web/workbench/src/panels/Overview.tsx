import type { Connection } from '@varnel/web-client';
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
    <>
      <div className="column">
        <LoginPanel sdk={sdk} />
        <AccountsPanel sdk={sdk} />
        <PermissionPanel sdk={sdk} />
        <StationPanel sdk={sdk} />
      </div>
      <div className="column">
        <WatchPanel sdk={sdk} list={watchList} chosen={symbol} onChoose={onSymbol} />
        <KLinePanel sdk={sdk} chosen={symbol || (watchList.symbols[0] ?? '')} />
      </div>
    </>
  );
}
