import {
  fundProperties,
  openOrderStatuses,
  type Connection,
  type Entrust,
  type Execution,
  type Position,
} from '@varnel/web-client';
import { useCallback, useMemo, useRef, useState } from 'react';
import { flushSync } from 'react-dom';
import { useHotKeys } from '../hotkeys';
import { lastOf } from '../lastOf';
import { useWatch, type StartWatch, type Watched } from '../live/useWatch';
import { canBeCancelled, newestFirst, orderIdOf } from '../records';
import { useTexts } from '../texts/useTexts';
import { sideFor, type Direction } from '../ticket';
import { Split } from '../ui/Split';
import { Tabs } from '../ui/Tabs';
import { useClosing } from '../useClosing';
import { useFundAccounts } from '../useFundAccounts';
import { useSecurities } from '../useSecurities';
import { useTicket, type Proposal } from '../useTicket';
import { BasketPanel } from './BasketPanel';
import { BlotterPanel } from './BlotterPanel';
import { DealsTable } from './DealsPanel';
import { HotKeysDialog } from './HotKeysDialog';
import { LadderPanel } from './LadderPanel';
import { Panel } from './Panel';
import { PositionsTable } from './PositionsTable';
import { TicketPanel } from './TicketPanel';

interface Props {
  sdk: Connection;
  /** What another view has chosen for the ticket; each new object is filled in once. */
  proposal: Proposal | undefined;
}

const latestCount = 500;

function useNewestFirst<Row extends Entrust | Execution>(start: StartWatch<Row>): Watched<Row> {
  const watched = useWatch(start);
  return useMemo(() => ({ ...watched, items: newestFirst(watched.items) }), [watched]);
}

/** Order entry and ladder on the left; orders, positions and executions on the right. */
export function TradeView({ sdk, proposal }: Props) {
  const t = useTexts();
  const accounts = useFundAccounts(sdk);
  const futuresAccounts = useFundAccounts(sdk, fundProperties.futures).data;
  const stockAccounts = useFundAccounts(sdk, fundProperties.stock).data;
  const tradingAccounts = useMemo(
    () => ({ future: futuresAccounts ?? [], other: stockAccounts ?? [] }),
    [futuresAccounts, stockAccounts],
  );
  const securities = useSecurities(sdk);
  const bySymbol = useMemo(
    () => new Map((securities.data ?? []).map((security) => [security.symbol, security])),
    [securities.data],
  );
  const [asked, setAsked] = useState<readonly string[]>();
  const [isHelping, setHelping] = useState(false);
  const [notice, setNotice] = useState('');
  const [side, setSide] = useState('positions');
  const view = useRef<HTMLDivElement>(null);

  const open = useNewestFirst(
    useCallback<StartWatch<Entrust>>(
      (listener) => sdk.watchOrders({ filter: { orderStatus: openOrderStatuses } }, listener),
      [sdk],
    ),
  );
  const latest = useNewestFirst(
    useCallback<StartWatch<Entrust>>((listener) => sdk.watchOrders({ limit: latestCount }, listener), [sdk]),
  );
  const executions = useNewestFirst(
    useCallback<StartWatch<Execution>>((listener) => sdk.watchExecutions({ limit: latestCount }, listener), [sdk]),
  );
  const fundAccounts = useMemo(() => (accounts.data ?? []).map(({ fundAccount }) => fundAccount), [accounts.data]);
  const startPositions = useCallback<StartWatch<Position>>(
    (listener) => sdk.watchPositions({ fundAccounts }, listener),
    [sdk, fundAccounts],
  );
  const positions = useWatch(fundAccounts.length > 0 ? startPositions : undefined);

  const ticket = useTicket({
    sdk,
    accounts: tradingAccounts,
    securities: bySymbol,
    proposal,
  });

  const focus = useCallback((selector: string) => {
    const field = view.current?.querySelector<HTMLElement>(selector);
    field?.focus();
    if (field instanceof HTMLInputElement) field.select();
  }, []);

  const { change } = ticket;
  const close = useClosing(
    sdk,
    useCallback(
      (order: Proposal) => {
        flushSync(() => change(order)); // the button can be focused only when the ticket is complete
        focus('[data-testid="ticket"] button[type="submit"]');
      },
      [change, focus],
    ),
  );

  const take = (direction: Direction) => () =>
    ticket.change({ orderSide: sideFor(direction, ticket.security, ticket.draft.orderSide) });
  const openIds = () => open.items.filter(canBeCancelled).map(orderIdOf);
  useHotKeys({
    ticket: () => focus('[name="symbol"]'),
    buy: take('buy'),
    sell: take('sell'),
    price: () => focus('[name="price"]'),
    qty: () => focus('[name="qty"]'),
    ladder: () => focus('[data-testid="ladder"] tbody button[tabindex="0"]'),
    blotter: () => focus('[data-testid="blotter"] .scroll'),
    cancelLast: () => {
      const ids = new Set(openIds());
      const last = lastOf(ticket.placed.filter((id) => ids.has(id)));
      setNotice(last ? '' : t.noOwnOpenOrder);
      if (last) setAsked([last]);
    },
    cancelAll: () => {
      const ids = openIds();
      setNotice(ids.length > 0 ? '' : t.noOpenOrders);
      if (ids.length > 0) setAsked(ids);
    },
    help: () => setHelping(true),
  });

  const books = [
    {
      id: 'positions',
      title: t.positions,
      content: (
        <PositionsTable
          sdk={sdk}
          fundAccounts={fundAccounts}
          securities={securities.data}
          positions={positions}
          onClose={close}
        />
      ),
    },
    { id: 'deals', title: t.executions, content: <DealsTable executions={executions} /> },
    {
      id: 'basket',
      title: t.basket,
      content: <BasketPanel sdk={sdk} accounts={accounts} example={securities.data?.[0]?.symbol} />,
    },
  ];
  return (
    <div className="trade" ref={view}>
      <Split
        id="trade"
        parts={[
          {
            id: 'trade-entry',
            size: 22,
            min: 250,
            className: 'column entry',
            content: (
              <>
                <TicketPanel sdk={sdk} ticket={ticket} accounts={accounts} securities={securities} />
                <LadderPanel ticket={ticket} openOrders={open.items} />
              </>
            ),
          },
          {
            id: 'trade-records',
            size: 78,
            min: 400,
            content: (
              <Split
                id="trade-records"
                isVertical
                parts={[
                  {
                    id: 'trade-orders',
                    size: 50,
                    min: 120,
                    content: (
                      <>
                        <BlotterPanel sdk={sdk} open={open} latest={latest} asked={asked} onAsk={setAsked} />
                        <p className="notice" role="status" data-testid="notice">
                          {notice}
                        </p>
                      </>
                    ),
                  },
                  {
                    id: 'trade-book',
                    size: 50,
                    min: 120,
                    content: (
                      <Panel
                        title={t.book}
                        className="fill"
                        testId="book"
                        tools={
                          <button type="button" className="plain" onClick={() => setHelping(true)}>
                            {t.hotKeys}
                          </button>
                        }
                      >
                        <Tabs label={t.book} current={side} onChange={setSide} tabs={books} />
                      </Panel>
                    ),
                  },
                ]}
              />
            ),
          },
        ]}
      />
      <HotKeysDialog open={isHelping} onClose={() => setHelping(false)} />
    </div>
  );
}
