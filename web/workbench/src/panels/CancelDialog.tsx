import type { Entrust } from '@varnel/web-client';
import { useEffect, useState } from 'react';
import { orderIdOf } from '../records';
import { priceText } from '../table/cellColumn';
import { useTexts } from '../texts/useTexts';
import { Dialog } from '../ui/Dialog';

interface Props {
  /** The open orders to cancel; undefined while nobody is asked. */
  orders: readonly Entrust[] | undefined;
  onYes: (orderIds: readonly string[]) => void;
  onNo: () => void;
}

const namedAtMost = 8;

/** Asks before several orders, or one chosen by a hot key, are cancelled. */
export function CancelDialog({ orders, onYes, onNo }: Props) {
  const t = useTexts();
  const [kept, setKept] = useState<readonly Entrust[]>([]); // the dialog closes with its last contents
  useEffect(() => {
    if (orders) setKept(orders);
  }, [orders]);
  const named = orders ?? kept;

  return (
    <Dialog
      open={orders !== undefined}
      onClose={onNo}
      title={t.cancelQuestion(named.length)}
      testId="cancel-dialog"
      buttons={
        <>
          <button type="button" autoFocus disabled={named.length === 0} onClick={() => onYes(named.map(orderIdOf))}>
            {t.cancelNow}
          </button>
          <button type="button" className="plain" onClick={onNo}>
            {t.back}
          </button>
        </>
      }
    >
      <ul className="reasons">
        {named.slice(0, namedAtMost).map((order) => (
          <li key={orderIdOf(order)}>
            <code>{orderIdOf(order)}</code> {String(order.securityName.displayRole)}{' '}
            {t.code('side', String(order.sideUnion.userRole))} {priceText(order, t)} ×{' '}
            {String(order.leaveQty.displayRole)}
          </li>
        ))}
        {named.length > namedAtMost && <li>…</li>}
      </ul>
    </Dialog>
  );
}
