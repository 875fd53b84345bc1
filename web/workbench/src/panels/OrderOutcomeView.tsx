import type { Connection, Entrust, OrderOutcome } from '@varnel/web-client';
import { useState } from 'react';
import { reasonOf } from '../errors';
import { orderIdOf, statusText } from '../records';
import { useTexts } from '../texts/useTexts';
import { useAnswer } from '../useAnswer';

/** What became of an order. */
export function OrderOutcomeView({
  sdk,
  outcome,
  fundAccount,
}: {
  sdk: Connection;
  outcome: OrderOutcome;
  fundAccount: string;
}) {
  const t = useTexts();
  switch (outcome.outcome) {
    case 'accepted':
      return (
        <p role="status" data-outcome="accepted">
          {t.accepted} <code>{outcome.orderID}</code>
        </p>
      );
    case 'refused':
      return (
        <p className="problem" role="alert" data-outcome="refused">
          {t.refusedBecause(outcome.reason)} {outcome.orderID && <code>{outcome.orderID}</code>}
        </p>
      );
    case 'refusedWithoutReason':
      return (
        <p className="problem" role="alert" data-outcome="refusedWithoutReason">
          {t.refusedWithoutReason}
        </p>
      );
    case 'unknown':
      return (
        <div className="doubt" data-outcome="unknown">
          <p className="problem" role="alert">
            {t.outcomeUnknownLook} <small>{t.tagOf(outcome.orderTag)}</small>
          </p>
          <LookUp sdk={sdk} orderTag={outcome.orderTag} fundAccount={fundAccount} />
        </div>
      );
  }
}

/** Looks up what became of orders without an answer. Nothing is sent again. */
export function LookUp({ sdk, orderTag, fundAccount }: { sdk: Connection; orderTag: string; fundAccount: string }) {
  const t = useTexts();
  const [found, follow] = useAnswer<Entrust[]>();
  const [isAsked, setAsked] = useState(false);

  function look() {
    setAsked(true);
    follow(sdk.findOrders({ orderTag, fundAccount }));
  }

  return (
    <>
      <button type="button" className="plain" disabled={found.waiting} onClick={look}>
        {found.waiting ? t.lookingUp : t.lookUp}
      </button>
      <div role="status" data-testid="look-up">
        {isAsked && found.error && <p className="problem">{reasonOf(found.error, t)}</p>}
        {found.data && (
          <>
            <p>{found.data.length === 0 ? t.notFoundByTag(orderTag) : t.foundByTag(found.data.length, orderTag)}</p>
            <ul className="reasons">
              {found.data.slice(0, 20).map((order) => (
                <li key={orderIdOf(order)}>
                  <code>{orderIdOf(order)}</code> {statusText(order, t)} {String(order.remark.displayRole ?? '')}
                </li>
              ))}
            </ul>
          </>
        )}
      </div>
    </>
  );
}
