import { priceTypes, type Connection, type OrderOutcome, type SecurityDetail } from '@varnel/web-client';
import { useCallback, useEffect, useMemo, useRef, useState } from 'react';
import { accountFor, emptyDraft, fittingSide, isComplete, isMarket, tagMaker } from './ticket';
import type { Draft, TradingAccounts } from './ticket';
import { useCommand, type Command } from './useCommand';

const newTag = tagMaker();

/** An order as it will be sent: what is confirmed is what is sent. */
export interface ReadyOrder extends Draft {
  exchange: string;
  orderTag: string;
}

/** Fields that another part of the desk fills in, such as an order that closes a position. */
export type Proposal = Partial<Draft>;

export interface Ticket {
  draft: Draft;
  security: SecurityDetail | undefined;
  /** Changes fields. What was about to be confirmed is then no longer so. */
  change: (part: Partial<Draft>) => void;
  isComplete: boolean;
  /** The order that waits for its confirmation. */
  reviewed: ReadyOrder | undefined;
  review: () => void;
  back: () => void;
  /** Sends the reviewed order, once. */
  confirm: () => void;
  /** Sends an order at once. Only for a switch that the user has turned on. */
  sendNow: (part: Partial<Draft>) => void;
  command: Command<OrderOutcome>;
  /** Numbers of the orders that this page has placed, the latest last. */
  placed: readonly string[];
}

interface Options {
  sdk: Connection;
  accounts: TradingAccounts;
  securities: ReadonlyMap<string, SecurityDetail>;
  /** Each new object is filled in once. */
  proposal: Proposal | undefined;
}

/** The order ticket: fill in, review, confirm, send once. */
export function useTicket({ sdk, accounts, securities, proposal }: Options): Ticket {
  const [typed, setTyped] = useState<Draft>(emptyDraft);
  const [reviewed, setReviewed] = useState<ReadyOrder>();
  const [placed, setPlaced] = useState<readonly string[]>([]);
  const [command, run, reset] = useCommand<OrderOutcome>();

  const security = securities.get(typed.symbol);
  const draft = useMemo<Draft>(
    () => ({
      ...typed,
      fundAccount: accountFor(typed.fundAccount, security, accounts),
      orderSide: fittingSide(typed.orderSide, security),
    }),
    [typed, accounts, security],
  );

  const change = useCallback(
    (part: Partial<Draft>) => {
      // A price is that of a security: another security needs another price.
      setTyped((before) => {
        const isOther = part.symbol !== undefined && part.symbol !== before.symbol;
        return { ...before, ...(isOther && { price: '' }), ...part };
      });
      setReviewed(undefined);
      reset();
    },
    [reset],
  );

  // The effect runs again when a hidden view is shown again; what the user has typed since then must stay.
  const filledIn = useRef<Proposal>(undefined);
  useEffect(() => {
    if (!proposal || proposal === filledIn.current) return;
    filledIn.current = proposal;
    change(proposal);
  }, [proposal, change]);

  const ready = (order: Draft): ReadyOrder => ({
    ...order,
    exchange: security?.exchange ?? '',
    price: isMarket(order) ? '0' : order.price,
    orderTag: order.tag || newTag(),
  });

  function send({ tag: _, ...order }: ReadyOrder) {
    setReviewed(undefined);
    run(async () => {
      const outcome = await sdk.insertOrder(order);
      if (outcome.outcome === 'accepted') setPlaced((before) => [...before, outcome.orderID]);
      return outcome;
    });
  }

  const whole = security !== undefined && isComplete(draft);
  const isBusy = command.phase === 'busy';
  return {
    draft,
    security,
    change,
    isComplete: whole,
    reviewed,
    review: () => whole && !isBusy && setReviewed(ready(draft)),
    back: () => setReviewed(undefined),
    confirm: () => reviewed && !isBusy && send(reviewed),
    sendNow: (part) => {
      const order = { ...draft, priceType: priceTypes.limit as string, ...part };
      if (security && isComplete(order) && !isBusy) send(ready(order));
    },
    command,
    placed,
  };
}
