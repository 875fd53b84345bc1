import type { Page } from '@playwright/test';
import type { EntrustList, ExecutionList, FundAccount, SecurityDetail } from '@varnel/web-client';
import { ask } from './ask';

/** All securities, with their details, by symbol. */
export async function securities(page: Page): Promise<Map<string, SecurityDetail>> {
  const list = await ask<SecurityDetail[]>(page, 'Data_getSymbolListWithDetail_REQ', '{"symbolFilter":[]}');
  return new Map(list.map((detail) => [detail.symbol, detail]));
}

/** The name of a security in records, which have no symbol. */
export function nameOf({ securityId, displayName }: { securityId: string; displayName: string }): string {
  return `${securityId} ${displayName}`;
}

export async function accounts(page: Page): Promise<string[]> {
  const list = await ask<FundAccount[]>(page, 'Data_getFundAccountList_REQ', 0);
  return list.map(({ fundAccount }) => fundAccount);
}

/** A count that is longer than every list. */
export const everything = 1_000_000;

export function orders(page: Page, filter: object, start = 0, count = everything): Promise<EntrustList> {
  return ask(page, 'Data_getEntrustList_REQ', JSON.stringify(filter), start, count);
}

export function executions(page: Page, filter: object, start = 0, count = everything): Promise<ExecutionList> {
  return ask(page, 'Data_getExecutionList_REQ', JSON.stringify(filter), start, count);
}
