import type { Connection } from '@varnel/web-client';
import { useCallback, useEffect, useState, useSyncExternalStore } from 'react';
import type { ConnectionState, ConnectionWatch } from './bridge';
import type { Journal } from './journal';
import type { TickFeed } from './live/TickFeed';
import { AccountsPanel } from './panels/AccountsPanel';
import { FreeCallForm } from './panels/FreeCallForm';
import { HoldingsView } from './panels/HoldingsView';
import { InspectorPanel } from './panels/InspectorPanel';
import { KLinePanel } from './panels/KLinePanel';
import { LoginPanel } from './panels/LoginPanel';
import { OrdersView } from './panels/OrdersView';
import { PermissionPanel } from './panels/PermissionPanel';
import { SecuritiesView } from './panels/SecuritiesView';
import { StationPanel } from './panels/StationPanel';
import { StrategiesView } from './panels/StrategiesView';
import { TradeView } from './panels/TradeView';
import { WatchPanel } from './panels/WatchPanel';
import { Tabs } from './Tabs';
import { useAnswer } from './useAnswer';
import { useWatchList } from './useWatchList';

interface Props {
  sdk: Connection;
  feed: TickFeed;
  journal: Journal;
  connection: ConnectionWatch;
}

const phases = { connecting: '连接中 connecting', open: '已连接 connected', closed: '已断开 disconnected' };

function ConnectionLamp({ state }: { state: ConnectionState }) {
  const why =
    state.phase === 'closed' ? `（${state.code}${state.reason ? ` ${state.reason}` : ''}）请刷新页面 reload` : '';
  return (
    <p className={`lamp ${state.phase}`} role="status" data-testid="connection">
      {phases[state.phase]}
      {why}
    </p>
  );
}

export function App({ sdk, feed, journal, connection }: Props) {
  const state = useSyncExternalStore(connection.watch, connection.current);
  const [login, followLogin] = useAnswer<string>();
  const [token, followToken] = useAnswer<string>();
  const [traders, followTraders] = useAnswer<string[]>();

  const [symbol, setSymbol] = useState('');
  const watchList = useWatchList(sdk);

  const refresh = useCallback(() => {
    followLogin(sdk.getLoginTrader());
    followToken(sdk.getToken());
    followTraders(sdk.getTraderList());
  }, [sdk, followLogin, followToken, followTraders]);
  useEffect(refresh, [refresh]);

  const overview = (
    <>
      <div className="column">
        <LoginPanel login={login} token={token} traders={traders} onRefresh={refresh} />
        <AccountsPanel sdk={sdk} />
        <PermissionPanel sdk={sdk} />
        <StationPanel sdk={sdk} />
      </div>
      <div className="column">
        <WatchPanel sdk={sdk} feed={feed} list={watchList} chosen={symbol} onChoose={setSymbol} />
        <KLinePanel sdk={sdk} chosen={symbol} />
      </div>
    </>
  );

  return (
    <div className="desk">
      <header className="bar">
        <h1>
          模拟工作台 <small>Varnel Workbench</small>
        </h1>
        <p className="simulation">模拟环境 · 非真实行情与交易 SIMULATION</p>
        <ConnectionLamp state={state} />
        <p className="who">
          登录交易员 <strong>{login.data ?? '—'}</strong>
        </p>
      </header>
      <main className="panels">
        <Tabs
          label="视图 views"
          tabs={[
            { title: '总览', hint: 'Overview', className: 'aside', content: overview },
            {
              title: '交易',
              hint: 'Trade',
              className: 'aside',
              content: <TradeView sdk={sdk} feed={feed} symbol={symbol} />,
            },
            {
              title: '证券',
              hint: 'Securities',
              className: 'aside',
              content: <SecuritiesView sdk={sdk} feed={feed} />,
            },
            { title: '委托与成交', hint: 'Orders', className: '', content: <OrdersView sdk={sdk} /> },
            { title: '资产与持仓', hint: 'Holdings', className: '', content: <HoldingsView sdk={sdk} /> },
            { title: '策略', hint: 'Strategies', className: 'aside', content: <StrategiesView sdk={sdk} /> },
          ]}
        />
        <div className="column">
          <InspectorPanel journal={journal} />
          <FreeCallForm bridge={journal} />
        </div>
      </main>
      <footer className="bar">
        <p>
          所有账户、证券与行情均为虚构。All accounts, securities and quotes are made up. 图表 Charts:{' '}
          <a href="https://www.tradingview.com/">TradingView Lightweight Charts™</a> ·{' '}
          <a href="/NOTICE.txt">许可声明 Notices</a>
        </p>
      </footer>
    </div>
  );
}
