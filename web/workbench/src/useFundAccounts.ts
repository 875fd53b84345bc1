import { fundProperties, type Connection, type FundAccount } from '@varnel/web-client';
import { useEffect } from 'react';
import { useAnswer, type Answered } from './useAnswer';

/** All fund accounts of the login. */
export function useFundAccounts(sdk: Connection): Answered<FundAccount[]> {
  const [accounts, follow] = useAnswer<FundAccount[]>();
  useEffect(() => follow(sdk.getFundAccountList({ fundProp: fundProperties.all })), [sdk, follow]);
  return accounts;
}
