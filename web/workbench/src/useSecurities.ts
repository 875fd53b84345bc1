import { useQueryClient } from '@tanstack/react-query';
import type { Connection, SecurityDetail } from '@varnel/web-client';
import { useCallback, useMemo } from 'react';
import type { Answered } from './useAnswer';
import { useAsk } from './useAsk';

const allKey = ['securities', 'details'] as const;
const askAll = (sdk: Connection) => sdk.getSymbolListWithDetail({ symbolFilter: [] });

/** All securities of the terminal with their details. The list is long, so it is asked for only where it is needed. */
export function useSecurities(sdk: Connection, enabled = true): Answered<SecurityDetail[]> {
  return useAsk(allKey, () => askAll(sdk), { enabled });
}

/** The same list for a single use. It is asked for only if it is not known. */
export function useFetchSecurities(sdk: Connection): () => Promise<SecurityDetail[]> {
  const client = useQueryClient();
  return useCallback(
    () => client.fetchQuery({ queryKey: allKey, queryFn: () => askAll(sdk), staleTime: Infinity }),
    [client, sdk],
  );
}

const none: ReadonlyMap<string, SecurityDetail> = new Map();

/** The details of some securities by symbol, as far as they are known. The terminal knows no others. */
export function useDetails(sdk: Connection, symbols: readonly string[]): ReadonlyMap<string, SecurityDetail> {
  const { data } = useAsk(['securityDetails', ...symbols], () => sdk.getSymbolDetail({ symbols: [...symbols] }), {
    enabled: symbols.length > 0,
  });
  return useMemo(() => (data ? new Map(data.map((detail) => [detail.symbol, detail])) : none), [data]);
}
