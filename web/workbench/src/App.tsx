import type { CallBridge, Connection } from '@varnel/web-client';
import { useCallback, useState } from 'react';
import type { ConnectionWatch } from './bridge';
import { Header } from './desk/Header';
import type { StrategyLog } from './live/StrategyLog';
import { FreeCallForm } from './panels/FreeCallForm';
import { HoldingsView } from './panels/HoldingsView';
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
import { useClosing } from './useClosing';
import type { Proposal } from './useTicket';

interface Props {
  sdk: Connection;
  bridge: CallBridge;
  connection: ConnectionWatch;
  strategyLog: StrategyLog;
}

export function App({ sdk, bridge, connection, strategyLog }: Props) {
  const t = useTexts();
  useTheme();
  const [view, setView] = useState('overview');
  const [symbol, setSymbol] = useState('');
  const [proposal, setProposal] = useState<Proposal>(); // for the order ticket
  const choose = useCallback((chosen: string) => {
    setSymbol(chosen);
    setProposal({ symbol: chosen });
  }, []);
  const close = useClosing(
    sdk,
    useCallback((order: Proposal) => {
      setProposal(order);
      setView('trade');
    }, []),
  );
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
                      content: <Overview sdk={sdk} symbol={symbol} onSymbol={choose} />,
                    },
                    {
                      id: 'trade',
                      title: t.trade,
                      content: <TradeView sdk={sdk} proposal={proposal} />,
                    },
                    {
                      id: 'securities',
                      title: t.securities,
                      content: <SecuritiesView sdk={sdk} />,
                    },
                    { id: 'orders', title: t.orders, content: <OrdersView sdk={sdk} /> },
                    { id: 'holdings', title: t.holdings, content: <HoldingsView sdk={sdk} onClose={close} /> },
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
              content: <FreeCallForm bridge={bridge} />,
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
