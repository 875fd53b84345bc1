import type { Connection } from '@varnel/web-client';
import { useEffect } from 'react';
import { usePush, useRefetch } from './live/hooks';
import { useAnswer } from './useAnswer';
import { useDelayed } from './useDelayed';

/** How much can be traded as the ticket stands; asked again when it, or what its account has, has changed. */
export function useTradable(sdk: Connection, asked: Parameters<Connection['getTradableQty']>[0] | undefined): string {
  const [answer, follow] = useAnswer<{ key: string; qty: string | undefined }>();
  const key = asked && asked.price !== '' ? JSON.stringify(asked) : '';
  const settled = useDelayed(key); // not at each key

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

  // What stood before the account changed stays until there is a new answer; that to another ticket does not.
  return (answer.data?.key === key && answer.data.qty) || '—';
}
