/** Names and codes of the simulator. docs/vocabulary.md explains them, and a test compares the two. */

/** Fields of a candle. */
export const candleFields = {
  symbol: 'symbol',
  time: 'time',
  open: 'open',
  high: 'high',
  low: 'low',
  close: 'close',
  volume: 'volume',
  amount: 'amount',
  clientMsgID: 'clientMsgID',
} as const;

/** Period flags of getKLineData. Every text other than "1" means days. */
export const klinePeriods = { minute: '1', day: '2' } as const;

/** Values of getFundAccountList's fundProp. */
export const fundProperties = { all: 0, stock: 1, futures: 2 } as const;

/** Values of securityType, in filters and details. */
export const securityTypes = { share: 'Share', fund: 'Fund', bond: 'Bond', future: 'Future' } as const;

/** Fields of a quote. Prices and quantities of the five best levels are lists, best first. */
export const quoteFields = {
  symbol: 'symbol',
  time: 'time',
  previousClose: 'previousClose',
  open: 'open',
  high: 'high',
  low: 'low',
  last: 'last',
  upperLimit: 'upperLimit',
  lowerLimit: 'lowerLimit',
  volume: 'volume',
  amount: 'amount',
  bidPrices: 'bidPrices',
  bidQtys: 'bidQtys',
  askPrices: 'askPrices',
  askQtys: 'askQtys',
} as const;

/** Values of orderStatus in a filter, and of an order's status. */
export const orderStatuses = {
  reported: 'Reported',
  partlyFilled: 'PartlyFilled',
  filled: 'Filled',
  partlyCancelled: 'PartlyCancelled',
  cancelled: 'Cancelled',
  rejected: 'Rejected',
} as const;

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
