import type { Connection, TradableQty } from '@varnel/web-client';
import { useEffect, useState } from 'react';
import { usePush } from './live/hooks';
import { useAnswer } from './useAnswer';
import { useDelayed } from './useDelayed';

/** How much can be traded as the ticket stands; asked again when it, or an asset, has changed. */
export function useTradable(sdk: Connection, asked: Parameters<Connection['getTradableQty']>[0] | undefined): string {
  const [qty, follow] = useAnswer<TradableQty | { qty?: never }>();
  const [assetChanges, countChange] = useState(0);
  usePush(sdk, 'on_AssetUpdate', () => countChange((before) => before + 1));
  const key = asked && asked.price !== '' ? JSON.stringify([asked, assetChanges]) : '';
  const settled = useDelayed(key);
  useEffect(() => {
    if (settled !== '' && asked) follow(sdk.getTradableQty(asked).then((answer) => answer ?? {}));
  }, [sdk, follow, settled]);
  if (key === '' || settled !== key || qty.error) return '—';
  return qty.data?.qty || '—';
}
