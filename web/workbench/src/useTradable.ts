import type { Connection } from '@varnel/web-client';
import { useEffect } from 'react';
import { usePush, useRefetch } from './live/hooks';
import { useAnswer } from './useAnswer';
import { useDelayed } from './useDelayed';

/** The tradable quantity of the ticket. Asks again when the ticket or its account changes. */
export function useTradable(sdk: Connection, asked: Parameters<Connection['getTradableQty']>[0] | undefined): string {
  const [answer, follow] = useAnswer<{ key: string; qty: string | undefined }>();
  const key = asked && asked.price !== '' ? JSON.stringify(asked) : '';
  const settled = useDelayed(key); // no call for each key

  async function ask() {
    if (!asked || key === '' || key !== settled) return;
    const call = sdk.getTradableQty(asked).then((tradable) => ({ key, qty: tradable?.qty }));
    follow(call);
    await call.catch(() => {}); // the answer has the error, too
  }
  useEffect(() => void ask(), [sdk, settled]);
  const refetch = useRefetch(ask);
  usePush(sdk, 'on_AssetUpdate', (asset) => {
    if (!asset || asset.fundAccount === asked?.fundAccount) refetch();
  });

  // The old quantity stays visible until the new answer comes, but never the quantity of another ticket.
  return (answer.data?.key === key && answer.data.qty) || '—';
}
