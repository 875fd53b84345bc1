import { flag, json, list, number, object, record, shapesOf, text } from './shapes.js';

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
