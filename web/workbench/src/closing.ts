import { priceTypes, securityTypes, sides, type Position, type SecurityDetail } from '@varnel/web-client';
import type { Quote } from './quote';
import { isOf } from './records';
import type { Draft } from './ticket';

const number = (value: unknown) => (typeof value === 'number' ? value : Number(value ?? Number.NaN));

/** The security of a position. */
export function securityOf(position: Position, list: readonly SecurityDetail[]): SecurityDetail | undefined {
  return list.find((security) => isOf(position, security));
}

/** Whether an order could close a part of the position now. */
export function isClosable(position: Position): boolean {
  return number(position.tradableQty) !== 0 && Number.isFinite(number(position.tradableQty));
}

/**
 * An order that closes the position as far as an order may now. A long position is sold at the best bid, a short one
 * bought back at the best ask. Without such a level the last price is taken.
 */
export function closingOrder(position: Position, security: SecurityDetail, quote: Quote): Omit<Draft, 'tag'> {
  const tradable = number(position.tradableQty);
  const isShort = tradable < 0;
  const isFuture = security.securityType === securityTypes.future;
  const closing = isShort ? sides.buyClose : sides.sellClose;
  const plain = isShort ? sides.buy : sides.sell;
  const price = (isShort ? quote.asks : quote.bids)[0]?.price ?? quote.figures.last;
  const most = Number(security.maxQty);
  return {
    fundAccount: String(position.fundAccount),
    symbol: security.symbol,
    orderSide: isFuture ? closing : plain,
    priceType: priceTypes.limit,
    price: price > 0 ? price.toFixed(security.precision) : '',
    qty: String(Math.min(Math.abs(tradable), most > 0 ? most : Infinity)),
  };
}
