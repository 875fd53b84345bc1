import { sides, type Entrust } from '@varnel/web-client';
import type { Level, Quote } from './quote';

/** One price of the ladder, with what the market and the own open orders have there. */
export interface Rung {
  /** Such as "ask 5" or "bid 1". */
  id: string;
  price: number;
  bidQty: number | undefined;
  askQty: number | undefined;
  /** Open quantity of own orders to buy and to sell at this price. */
  ownBuy: number;
  ownSell: number;
}

export interface Ladder {
  /** The highest price first. */
  rungs: readonly Rung[];
  /** Own open orders at prices that are not on the ladder. */
  elsewhere: number;
}

const levels = [1, 2, 3, 4, 5];
const number = (value: unknown) => (typeof value === 'number' ? value : 0);

/** The levels of a quote as a ladder. The own orders are those of its security. */
export function ladderOf(quote: Quote, own: readonly Entrust[], precision: number): Ladder {
  const keyOf = (price: number) => price.toFixed(precision);
  const atPrice = new Map<string, { buy: number; sell: number }>();
  for (const { price, leaveQty, side } of own) {
    const key = keyOf(number(price.userRole));
    const sums = atPrice.get(key) ?? { buy: 0, sell: 0 };
    sums[side.userRole === sides.buy ? 'buy' : 'sell'] += number(leaveQty.userRole);
    atPrice.set(key, sums);
  }

  const rung = (kind: 'ask' | 'bid', level: number, { price, qty }: Level): Rung => {
    const sums = atPrice.get(keyOf(price));
    return {
      id: `${kind} ${level}`,
      price,
      bidQty: kind === 'bid' ? qty : undefined,
      askQty: kind === 'ask' ? qty : undefined,
      ownBuy: sums?.buy ?? 0,
      ownSell: sums?.sell ?? 0,
    };
  };
  const rungsOf = (kind: 'ask' | 'bid', list: readonly Level[]) =>
    levels.flatMap((level) => (list[level - 1] ? [rung(kind, level, list[level - 1]!)] : []));
  // In the opening call both best levels have the price at which the opening would be: it is one rung.
  const bids = rungsOf('bid', quote.bids);
  const [best] = bids;
  const asks = rungsOf('ask', quote.asks);
  const isOnePrice = best !== undefined && asks[0] !== undefined && keyOf(best.price) === keyOf(asks[0].price);
  if (isOnePrice) best.askQty = asks.shift()!.askQty;
  const rungs = [...asks.reverse(), ...bids];
  const shown = new Set(rungs.map(({ price }) => keyOf(price)));
  const elsewhere = own.filter(({ price }) => !shown.has(keyOf(number(price.userRole)))).length;
  return { rungs, elsewhere };
}
