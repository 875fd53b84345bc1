import { list, number, object, record, text, type Fields } from './shapes.js';

/**
 * What a terminal defines: the fields of quotes and candles, and its codes. Give your terminal's vocabulary to `connect`:
 *
 *     interface MyVocabulary extends Vocabulary { tick: MyTick; side: 'B' | 'S' }
 *     const sdk = connect<MyVocabulary>();
 *
 * The client does not check it at run time.
 */
export interface Vocabulary {
  /** A quote. */
  tick: object;
  /** A candle. */
  candle: object;
  /** Codes of sides, in calls, records and filters. */
  side: string;
  priceType: string;
  orderStatus: string;
  securityType: string;
}

/** One of the known codes, which editors suggest, or any other text. */
export type Code<Known extends string> = Known | (string & {});

/** The vocabulary of the simulator. Other codes are accepted too, because a terminal may have its own. */
export interface SimulatorVocabulary extends Vocabulary {
  tick: SimulatorTick;
  candle: SimulatorCandle;
  side: Code<(typeof sides)[keyof typeof sides]>;
  priceType: Code<(typeof priceTypes)[keyof typeof priceTypes]>;
  orderStatus: Code<(typeof orderStatuses)[keyof typeof orderStatuses]>;
  securityType: Code<(typeof securityTypes)[keyof typeof securityTypes]>;
}

/** A quote. Its fields are those of the terminal's vocabulary. */
export type Tick<V extends Vocabulary = SimulatorVocabulary> = V['tick'];

/** A candle. Its fields are those of the terminal's vocabulary. */
export type Candle<V extends Vocabulary = SimulatorVocabulary> = V['candle'];

/** The terminal defines the fields of quotes and candles, so any object counts as one. */
export const tick = object<Partial<Tick>>('Tick');
export const candle = object<Candle>('Candle');

// ---- Names and codes of the simulator. docs/vocabulary.md explains them, and a test compares the two. ---------------

/** The names of the fields under themselves. */
function namesOf<T extends object>(fields: T): { readonly [Key in keyof T]: Key } {
  return Object.fromEntries(Object.keys(fields).map((key) => [key, key])) as { [Key in keyof T]: Key };
}

const simulatorTickFields = {
  /** The symbol, such as "609801.SH". */
  symbol: text,
  /** Exchange time of the last change, "yyyyMMddHHmmss". */
  time: text,
  /** Close of the trading day before: a price in the currency of the security. */
  previousClose: number,
  /** First price of the day, in the currency of the security. */
  open: number,
  /** Highest price of the day so far, in the currency of the security. */
  high: number,
  /** Lowest price of the day so far, in the currency of the security. */
  low: number,
  /** Last price, in the currency of the security. */
  last: number,
  /** Highest price that the day allows; 0 when the security has no price limit. */
  upperLimit: number,
  /** Lowest price that the day allows; 0 when the security has no price limit. */
  lowerLimit: number,
  /** Quantity traded on the day so far, in shares, bonds or contracts. */
  volume: number,
  /** Money traded on the day so far, to two decimals. A future's multiplier is counted in. */
  amount: number,
  /** The five best prices to sell at, best first. A level beyond the price limit has price and quantity 0. */
  bidPrices: list(number),
  /** How much is wanted at each of `bidPrices`, in shares, bonds or contracts. */
  bidQtys: list(number),
  /** The five best prices to buy at, best first. A level beyond the price limit has price and quantity 0. */
  askPrices: list(number),
  /** How much is offered at each of `askPrices`, in shares, bonds or contracts. */
  askQtys: list(number),
};

/** A quote of the simulator. The quote of a symbol that it does not know is an empty object. */
export interface SimulatorTick extends Fields<typeof simulatorTickFields> {}

export const simulatorTick = record<SimulatorTick>('SimulatorTick', simulatorTickFields);

/** Names of the fields of a quote. */
export const quoteFields = namesOf(simulatorTickFields);

const simulatorCandleFields = {
  /** The symbol, as asked for. */
  symbol: text,
  /** When the candle ends: "yyyyMMddHHmmss" for a minute, "yyyyMMdd" for a day. */
  time: text,
  /** First price, in the currency of the security. */
  open: number,
  /** Highest price, in the currency of the security. */
  high: number,
  /** Lowest price, in the currency of the security. */
  low: number,
  /** Last price, in the currency of the security. */
  close: number,
  /** Quantity traded, in shares, bonds or contracts. */
  volume: number,
  /** Money traded, to two decimals. A future's multiplier is counted in. */
  amount: number,
  /** The terminal's number of the request. Calls are paired by their identifier instead. */
  clientMsgID: text,
};

/** A candle of the simulator. */
export interface SimulatorCandle extends Fields<typeof simulatorCandleFields> {}

export const simulatorCandle = record<SimulatorCandle>('SimulatorCandle', simulatorCandleFields);

/** Names of the fields of a candle. */
export const candleFields = namesOf(simulatorCandleFields);

/** Period flags of getKLineData. Every text other than "1" means days. */
export const klinePeriods = { minute: '1', day: '2' } as const;

/** Values of getFundAccountList's fundProp. */
export const fundProperties = { all: 0, stock: 1, futures: 2 } as const;

/** Values of securityType, in filters and details. */
export const securityTypes = { share: 'Share', fund: 'Fund', bond: 'Bond', future: 'Future' } as const;

/** Values of orderStatus in a filter, and of an order's status. */
export const orderStatuses = {
  toBeSent: 'ToBeSent',
  sent: 'Sent',
  reported: 'Reported',
  partlyFilled: 'PartlyFilled',
  filled: 'Filled',
  toBeCancelled: 'ToBeCancelled',
  partlyCancelled: 'PartlyCancelled',
  cancelled: 'Cancelled',
  rejected: 'Rejected',
} as const;

/** The states in which an order can still change. One that is to be cancelled can still be filled. */
export const openOrderStatuses = [
  orderStatuses.toBeSent,
  orderStatuses.sent,
  orderStatuses.reported,
  orderStatuses.partlyFilled,
  orderStatuses.toBeCancelled,
] as const;

/**
 * Values of sideUnion and of the sides in calls. Futures use those that open or close, other securities the plain ones. A
 * record's `side` is only buy or sell.
 */
export const sides = {
  buy: 'Buy',
  sell: 'Sell',
  buyOpen: 'BuyOpen',
  sellOpen: 'SellOpen',
  buyClose: 'BuyClose',
  sellClose: 'SellClose',
  afterHoursBuy: 'AfterHoursBuy',
  afterHoursSell: 'AfterHoursSell',
} as const;

export const priceTypes = { limit: 'Limit', market: 'Market', afterHours: 'AfterHours' } as const;

/** Values of startStrategy's language. */
export const strategyLanguages = { python: 1, cpp: 2, javascript: 3 } as const;

/** Statuses of a strategy, in answers and pushes. */
export const strategyStatuses = {
  starting: 'Starting',
  running: 'Running',
  stopping: 'Stopping',
  stopped: 'Stopped',
} as const;
