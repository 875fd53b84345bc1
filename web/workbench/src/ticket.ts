import {
  priceTypes,
  securityTypes,
  sides,
  type FundAccount,
  type SecurityDetail,
  type SecurityEntry,
} from '@varnel/web-client';

/** An order as typed, before it is sent. Prices and quantities are texts, because the terminal reads texts. */
export interface Draft {
  fundAccount: string;
  symbol: string;
  orderSide: string;
  priceType: string;
  price: string;
  qty: string;
  /** The user's own tag. Empty: the order gets one that no other order has. */
  tag: string;
}

export const emptyDraft: Draft = {
  fundAccount: '',
  symbol: '',
  orderSide: sides.buy,
  priceType: priceTypes.limit,
  price: '',
  qty: '',
  tag: '',
};

export type Direction = 'buy' | 'sell';

/** What securities a fund account trades: futures, or everything else. */
type Kind = 'future' | 'other';

/**
 * Sides of futures first open and then close a position; other securities are bought and sold. The after-hours sides are
 * not offered: the terminal sets them for the after-hours price type.
 */
const sidesOf = {
  buy: { future: [sides.buyOpen, sides.buyClose], other: [sides.buy] },
  sell: { future: [sides.sellOpen, sides.sellClose], other: [sides.sell] },
} as const satisfies Record<Direction, Record<Kind, readonly string[]>>;

const kindOf = (security: { securityType: string } | undefined): Kind =>
  security?.securityType === securityTypes.future ? 'future' : 'other';

/** For each kind of securities the accounts that can trade it. */
export type TradingAccounts = Readonly<Record<Kind, readonly FundAccount[]>>;

/** The chosen account, which is never replaced; while none is chosen, the first one that can trade the security. */
export function accountFor(
  chosen: string,
  security: { securityType: string } | undefined,
  accounts: TradingAccounts,
): string {
  return chosen || (accounts[kindOf(security)][0]?.fundAccount ?? '');
}

export function sideChoices(security: { securityType: string } | undefined): readonly string[] {
  const kind = kindOf(security);
  return [...sidesOf.buy[kind], ...sidesOf.sell[kind]];
}

export const priceTypeChoices: readonly string[] = [priceTypes.limit, priceTypes.market, priceTypes.afterHours];

const buying: readonly string[] = [sides.buy, sides.buyOpen, sides.buyClose, sides.afterHoursBuy];

export const directionOf = (side: string): Direction => (buying.includes(side) ? 'buy' : 'sell');

/** The side of this direction that fits the security. For a future, asking again switches from open to close. */
export function sideFor(direction: Direction, security: { securityType: string } | undefined, current: string): string {
  const [first, second = first]: readonly string[] = sidesOf[direction][kindOf(security)];
  return current === first ? second! : first!;
}

/** The side itself where the security has it, otherwise the side of the same direction that it has. */
export function fittingSide(side: string, security: { securityType: string } | undefined): string {
  return sideChoices(security).includes(side) ? side : sideFor(directionOf(side), security, '');
}

export type PriceSteps = Pick<SecurityDetail, 'priceUnit' | 'precision'>;
export type QtySteps = Pick<SecurityDetail, 'qtyStep' | 'minQty' | 'maxQty'>;

/** The price so many ticks on; without a readable price the `start`, such as the last price. */
export function steppedPrice(text: string, ticks: number, { priceUnit, precision }: PriceSteps, start: number): string {
  const price = readPositive(text);
  if (price === undefined) return start > 0 ? start.toFixed(precision) : text;
  const after = Math.round(price / priceUnit) + ticks;
  return (Math.max(1, after) * priceUnit).toFixed(precision);
}

/** The quantity so many steps on, within the smallest and the largest order; without a readable one the smallest. */
export function steppedQty(text: string, steps: number, { qtyStep, minQty, maxQty }: QtySteps): string {
  const [least, most] = [Number(minQty), Number(maxQty)];
  const qty = readPositive(text);
  if (qty === undefined) return String(least);
  const step = Math.max(1, qtyStep);
  const after = steps > 0 ? Math.floor(qty / step) + steps : Math.ceil(qty / step) + steps;
  return String(Math.min(most > 0 ? most : Infinity, Math.max(least, after * step)));
}

function readPositive(text: string): number | undefined {
  const number = text.trim() === '' ? Number.NaN : Number(text);
  return number > 0 && Number.isFinite(number) ? number : undefined;
}

/** What still misses before the order could be sent. The terminal judges the values. */
export function isComplete(draft: Draft): boolean {
  const { fundAccount, symbol, orderSide, price, qty } = draft;
  return [fundAccount, symbol, orderSide, qty, isMarket(draft) ? '0' : price].every((text) => text !== '');
}

export const isMarket = ({ priceType }: Pick<Draft, 'priceType'>) => priceType === priceTypes.market;

/** Makes tags that no other order has, by which an order can be found when its answer is missing. */
export function tagMaker(now: () => Date = () => new Date()): (prefix?: string) => string {
  let count = 0;
  return (prefix = 'manual') => {
    const time = now().toISOString().replace(/\D/g, '').slice(0, 17);
    return `${prefix}-${time}-${++count}`;
  };
}

/** Securities whose code, spelling code or name begins with the typed text, then those that contain it. */
export function suggestions(list: readonly SecurityEntry[], typed: string, count = 8): SecurityEntry[] {
  const text = typed.trim().toLowerCase();
  if (text === '') return [];
  const ranked = list.flatMap((entry) => {
    const places = [entry.symbol, entry.spellName, entry.displayName].map((key) => key.toLowerCase().indexOf(text));
    const found = places.filter((place) => place >= 0);
    return found.length === 0 ? [] : [{ entry, rank: Math.min(...found) > 0 ? 1 : 0 }];
  });
  return ranked
    .sort((one, other) => one.rank - other.rank)
    .slice(0, count)
    .map(({ entry }) => entry);
}
