import { flag, json, list, number, object, optional, record, shapesOf, text } from './shapes.js';

/** The records of the terminal's lists. A test compares every key with the library's own constants. */

export const fundAccount = record({ fundAccount: text, fundAccountName: text });

/** The quote service defines the fields of a candle; `candleFields` lists those of the simulator. */
export const candle = object;

/** The quote service defines the fields of a quote too; `quoteFields` lists those of the simulator. */
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
  /** A quantity step too, not a number of decimals, despite its name. */
  qtyPrecision: number,
  /** These two are texts, unlike the other quantities. */
  minQty: text,
  maxQty: text,
  securityType: text,
  securitySubType: text,
  priceLimitType: flag,
  stockInterest: number,
});

/** The text that the terminal shows, and the value behind it. Both are null when there is no value. */
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

/** Keys of a position, in the terminal's order of columns, without `stockInterest`. */
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
 * An order as the page sent it, with the terminal's number. Without a number there is no order, although the terminal
 * reports no failure.
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

/** One order of a list with the values that the terminal accepted, and its own outcome. */
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

/** The key is orderId here, as in the protocol. The values are the terminal's own. */
export const cancelledOrder = record({ orderId: json, code: json, msg: json });

/** The extension comes back unchanged. */
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
