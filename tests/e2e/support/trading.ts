import { expect } from '@playwright/test';
import type {
  CancelledOrder,
  Entrust,
  Execution,
  ListedOrder,
  OrderLine,
  PlacedOrder,
  SecurityDetail,
} from '@varnel/web-client';
import { ask } from './ask';
import type { EventRecorder } from './eventRecorder';
import type { Envelope } from './peer';
import { fundAccounts, symbols } from './scenario';

/** A stock account, and a share that it can buy. */
export const account = fundAccounts('stock')[0]!.fundAccount;
export const symbol = symbols[0]!;

export type Order = OrderLine & { fundAccount: string; orderTag: string };

export interface Market {
  detail: SecurityDetail;
  last: number;
  /** The price limits of the day as texts. */
  lowest: string;
  highest: string;
}

export async function market({ page }: EventRecorder, of = symbol): Promise<Market> {
  const [detail] = await ask<[SecurityDetail]>(page, 'Data_getSymbolDetail_REQ', of);
  const tick = await ask<Record<string, number>>(page, 'Data_getCurrentTick_REQ', of);
  const price = (name: string) => tick[name]!.toFixed(detail.precision);
  return { detail, last: tick.last!, lowest: price('lowerLimit'), highest: price('upperLimit') };
}

/** A buy order that rests in the book, with the given changes. */
export function orderFor({ detail, lowest }: Market, but: Partial<Order> = {}): Order {
  return {
    fundAccount: account,
    symbol: detail.symbol,
    exchange: detail.exchange,
    orderSide: 'Buy',
    priceType: 'Limit',
    price: lowest,
    qty: detail.minQty,
    orderTag: 'e2e',
    ...but,
  };
}

/** The arguments of the call, in their order. */
export function argsOf({ fundAccount, symbol, exchange, orderSide, priceType, price, qty, orderTag }: Order) {
  return [fundAccount, symbol, exchange, orderSide, priceType, price, qty, orderTag];
}

export const lineOf = ({ symbol, exchange, orderSide, priceType, price, qty }: Order): OrderLine => ({
  symbol,
  exchange,
  orderSide,
  priceType,
  price,
  qty,
});

export function place(recorder: EventRecorder, order: Order): Promise<Envelope> {
  return recorder.envelope('Trade_insertOrder_REQ', ...argsOf(order));
}

/** Places an order that must be accepted, and gives its number. */
export async function placed(recorder: EventRecorder, order: Order): Promise<string> {
  const envelope = await place(recorder, order);
  expect(envelope).toMatchObject({ code: '0', msg: '' });
  return (envelope.resultData as PlacedOrder).orderID!;
}

export async function placeList(
  recorder: EventRecorder,
  orders: readonly Order[],
  orderTag = 'list',
): Promise<Envelope> {
  return recorder.envelope('Trade_insertOrderList_REQ', account, orderTag, JSON.stringify(orders.map(lineOf)));
}

export const listed = ({ resultData }: Envelope) => resultData as ListedOrder[];

export async function cancel(recorder: EventRecorder, ...ids: string[]): Promise<CancelledOrder[]> {
  const { code, msg, resultData } = await recorder.envelope('Trade_reqCancelOrder_REQ', ids.join(','));
  expect({ code, msg }).toEqual({ code: '0', msg: '' });
  return resultData as CancelledOrder[];
}

export const idOf = ({ orderId }: Entrust | Execution) => String(orderId.userRole);
export const statusOf = ({ status }: Entrust) => String(status.userRole);

/** The pushed states of an order, in order. */
export function pushed(recorder: EventRecorder, id: string): Entrust[] {
  return recorder
    .pushes<Entrust[]>('on_entrustUpdate')
    .flat()
    .filter((order) => idOf(order) === id);
}

export function reached(recorder: EventRecorder, id: string, status: string): Promise<Entrust> {
  return recorder.until(() => pushed(recorder, id).find((order) => statusOf(order) === status));
}
