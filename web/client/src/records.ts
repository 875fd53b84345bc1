import { flag, json, list, number, object, optional, record, shapesOf, text } from './shapes.js';

/** What the terminal's lists are made of. A test compares every key with the library's own constants. */

export const fundAccount = record({ fundAccount: text, fundAccountName: text });

/** The fields of a candle are the quote service's; `candleFields` lists them. */
export const candle = object;

/** The fields of a quote are the quote service's, too. */
export const tick = object;

export const securityEntry = record({ symbol: text, displayName: text, spellName: text });

export const securityDetail = record({
  symbol: text,
  securityId: text,
  exchange: text,
  displayName: text,
  spellName: text,
  qtyUnit: number,
  precision: number,
  priceUnit: number,
  /** The step in which quantities are shown. */
  qtyStep: number,
  /** A quantity step, too: no number of decimals, whatever its name says. */
  qtyPrecision: number,
  /** A number's text, unlike the other quantities. */
  minQty: text,
  /** A number's text, unlike the other quantities. */
  maxQty: text,
  securityType: text,
  securitySubType: text,
  priceLimitType: flag,
  stockInterest: number,
});

/** What the terminal shows, and the value behind it. Both are null where it has none. */
export const cell = record({ displayRole: json, userRole: json });

/** Keys of an order, in the terminal's order of columns. */
export const entrustKeys = [
  'entrustTime',
  'securityId',
  'securityName',
  'side',
  'sideUnion',
  'status',
  'priceType',
  'price',
  'entrustQty',
  'leaveQty',
  'dealQty',
  'dealPrice',
  'entrustAmount',
  'dealAmount',
  'fundAccountName',
  'fundAccount',
  'exchangeOrderId',
  'orderId',
  'traderName',
  'remark',
  'orderSource',
  'instanceID',
] as const;

/** Keys of an execution, in the terminal's order of columns. */
export const executionKeys = [
  'dealTime',
  'securityId',
  'securityName',
  'side',
  'sideUnion',
  'dealPrice',
  'dealQty',
  'dealAmount',
  'fundAccountName',
  'fundAccount',
  'execId',
  'exchangeOrderId',
  'orderId',
  'traderName',
  'orderSource',
  'instanceID',
] as const;

export const entrust = record(shapesOf(entrustKeys, cell));
export const execution = record(shapesOf(executionKeys, cell));

export const entrustList = record({ totalSize: number, size: number, entrustInfoList: list(entrust) });
export const executionList = record({ totalSize: number, size: number, executionInfoList: list(execution) });

/** Keys of a position, in the terminal's order of columns; its interest comes besides. */
export const positionKeys = [
  'fundAccountName',
  'fundAccount',
  'securityAccount',
  'securityName',
  'securityId',
  'exchange',
  'lastPrice',
  'riseDownRate',
  'currentQty',
  'tradableQty',
  'costPrice',
  'cost',
  'costCNY',
  'marketValue',
  'marketValueCNY',
  'totalCost',
  'profit',
  'profitRate',
] as const;

export const position = record({ ...shapesOf(positionKeys, json), stockInterest: number });

/** Keys of an asset summary. Amounts are texts with two decimals. */
export const assetKeys = [
  'fundAccount',
  'fundAccountName',
  'marketValue',
  'holdingCost',
  'profit',
  'fetchableCash',
  'totalAsset',
  'tradableCash',
  'closePosProfitDate',
  'closePosProfitTrade',
  'floatingProfit',
] as const;

export const asset = record(shapesOf(assetKeys, text));

export const tradableQty = record({ qty: text });

/**
 * An order as the page sent it, with the number under which the terminal keeps it. Without a number the terminal has
 * taken no order, although it reports no failure either.
 */
export const placedOrder = record({
  orderID: optional(text),
  fundAccount: text,
  symbol: text,
  orderSide: text,
  priceType: text,
  price: text,
  qty: text,
  exchange: text,
});

/** One order of a list as the terminal took it, with an outcome of its own. */
export const listedOrder = record({
  symbol: text,
  orderSide: text,
  priceType: text,
  price: text,
  qty: text,
  exchange: text,
  orderID: text,
  code: text,
  msg: text,
});

/** Spelled orderId here, as the terminal spells it for cancels. The values are the terminal's own. */
export const cancelledOrder = record({ orderId: json, code: json, msg: json });

/** The extension comes back as the page sent it. */
export const strategyAnswer = record({ strategyID: text, strategyStatus: json, ExtField: json });

export type FundAccount = ReturnType<typeof fundAccount>;
export type Candle = ReturnType<typeof candle>;
export type Tick = ReturnType<typeof tick>;
export type SecurityEntry = ReturnType<typeof securityEntry>;
export type SecurityDetail = ReturnType<typeof securityDetail>;
export type Cell = ReturnType<typeof cell>;
export type Entrust = ReturnType<typeof entrust>;
export type EntrustList = ReturnType<typeof entrustList>;
export type Execution = ReturnType<typeof execution>;
export type ExecutionList = ReturnType<typeof executionList>;
export type Position = ReturnType<typeof position>;
export type Asset = ReturnType<typeof asset>;
export type TradableQty = ReturnType<typeof tradableQty>;
export type PlacedOrder = ReturnType<typeof placedOrder>;
export type ListedOrder = ReturnType<typeof listedOrder>;
export type CancelledOrder = ReturnType<typeof cancelledOrder>;
export type StrategyAnswer = ReturnType<typeof strategyAnswer>;
