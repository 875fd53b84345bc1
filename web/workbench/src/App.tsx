import type { Connection } from '@varnel/web-client';
import { useState } from 'react';
import type { ConnectionWatch } from './bridge';
import { Header } from './desk/Header';
import type { Journal } from './journal';
import type { StrategyLog } from './live/StrategyLog';
import type { TickFeed } from './live/TickFeed';
import { FreeCallForm } from './panels/FreeCallForm';
import { HoldingsView } from './panels/HoldingsView';
import { InspectorPanel } from './panels/InspectorPanel';
import { OrdersView } from './panels/OrdersView';
import { Overview } from './panels/Overview';
import { SecuritiesView } from './panels/SecuritiesView';
import { StrategiesView } from './panels/StrategiesView';
import { TradeView } from './panels/TradeView';
import { useTexts } from './texts/useTexts';
import { useTheme } from './theme';
import { Split } from './ui/Split';
import { Tabs } from './ui/Tabs';
import { useAsk } from './useAsk';

interface Props {
  sdk: Connection;
  feed: TickFeed;
  journal: Journal;
  connection: ConnectionWatch;
  strategyLog: StrategyLog;
}

export function App({ sdk, feed, journal, connection, strategyLog }: Props) {
  const t = useTexts();
  useTheme();
  const [view, setView] = useState('overview');
  const [symbol, setSymbol] = useState('');
  const login = useAsk(['login'], () => sdk.getLoginTrader());

  return (
    <div className="desk">
      <Header connection={connection} login={login.data} />
      <main className="panels">
        <Split
          id="desk"
          parts={[
            {
              id: 'desk-view',
              size: 69,
              min: 480,
              content: (
                <Tabs
                  label={t.views}
                  current={view}
                  onChange={setView}
                  tabs={[
                    {
                      id: 'overview',
                      title: t.overview,
                      content: <Overview sdk={sdk} symbol={symbol} onSymbol={setSymbol} />,
                    },
                    {
                      id: 'trade',
                      title: t.trade,
                      className: 'aside',
                      content: <TradeView sdk={sdk} feed={feed} symbol={symbol} />,
                    },
                    {
                      id: 'securities',
                      title: t.securities,
                      content: <SecuritiesView sdk={sdk} />,
                    },
                    { id: 'orders', title: t.orders, content: <OrdersView sdk={sdk} /> },
                    { id: 'holdings', title: t.holdings, content: <HoldingsView sdk={sdk} /> },
                    {
                      id: 'strategies',
                      title: t.strategies,
                      content: <StrategiesView sdk={sdk} log={strategyLog} />,
                    },
                  ]}
                />
              ),
            },
            {
              id: 'desk-calls',
              size: 31,
              min: 260,
              className: 'column',
              content: (
                <>
                  <InspectorPanel journal={journal} />
                  <FreeCallForm bridge={journal} />
                </>
              ),
            },
          ]}
        />
      </main>
      <footer className="bar">
        <p>
          {t.madeUp} {t.charts}
          <a href="https://www.tradingview.com/">TradingView Lightweight Charts™</a> ·{' '}
          <a href="/NOTICE.txt">{t.notices}</a>
        </p>
      </footer>
    </div>
  );
}
