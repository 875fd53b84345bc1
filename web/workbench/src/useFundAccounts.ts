import { fundProperties, type Connection, type FundAccount } from '@varnel/web-client';
import type { Answered } from './useAnswer';
import { useAsk } from './useAsk';

/** The fund accounts of the login with a property. */
export function useFundAccounts(sdk: Connection, fundProp: number = fundProperties.all): Answered<FundAccount[]> {
  return useAsk(['accounts', fundProp], () => sdk.getFundAccountList({ fundProp }));
}
