import { json, keysOf, list, number, optional, record, text, type Fields, type Json } from './shapes.js';
import type { SimulatorVocabulary, Vocabulary } from './vocabulary.js';

/**
 * The records of the terminal's lists: each field once, with its shape. The interfaces take over fields and comments, and
 * put the codes of the vocabulary in. A test compares every key with the library's own constants.
 */

// ---- Orders and executions -----------------------------------------------------------------------------------------

/** One field of an order or an execution. Both members are null when there is no value. */
export interface Cell<Value extends Json = Json> {
  /** The text that the terminal shows, in the terminal's display mode. For people only. */
  displayRole: Json;
  /** The value behind the text: a number, a code or a text. */
  userRole: Value | null;
}

export const cell = record<Cell>('Cell', { displayRole: json, userRole: json });

const tradedFields = {
  /** The exchange's code of the security, such as "609801". Records have no symbol. */
  securityId: cell,
  /** Name of the security. */
  securityName: cell,
  /** Side as a code: only buy or sell, for futures too. */
  side: cell,
  /** Side as a code, which also tells whether a future is opened or closed. */
  sideUnion: cell,
};

const ownerFields = {
  /** Name of the fund account. */
  fundAccountName: cell,
  /** Fund account that trades. */
  fundAccount: cell,
};

const numberFields = {
  /** The exchange's number of the order. Empty while the exchange does not have the order. */
  exchangeOrderId: cell,
  /** The terminal's number of the order, as `cancelOrders` takes it. */
  orderId: cell,
  /** The trader: the value is the identifier, the shown text the name. */
  traderName: cell,
};

const originFields = {
  /** The tag that the page gave to the order, or another source's name. */
  orderSource: cell,
  /** The instance of the strategy that placed the order. Empty for a person's order. */
  instanceID: cell,
};

const entrustFields = {
  /** Exchange time of entry, "yyyyMMddHHmmss". */
  entrustTime: cell,
  ...tradedFields,
  /** State of the order as a code. */
  status: cell,
  /** Price type as a code. */
  priceType: cell,
  /** Limit, in the currency of the security. 0 for an order without a limit. */
  price: cell,
  /** Quantity ordered, in shares, bonds or contracts. */
  entrustQty: cell,
  /** Quantity that is still open, in shares, bonds or contracts. 0 when the order is no longer open. */
  leaveQty: cell,
  /** Quantity filled so far, in shares, bonds or contracts. */
  dealQty: cell,
  /** Average price of the fills, in the currency of the security. 0 without a fill. */
  dealPrice: cell,
  /** Money ordered: price times quantity, in the currency of the security, to two decimals. */
  entrustAmount: cell,
  /** Money of the fills, in the currency of the security, to two decimals. */
  dealAmount: cell,
  ...ownerFields,
  ...numberFields,
  /** Why the order was refused, for people. Usually empty. */
  remark: cell,
  ...originFields,
};

const executionFields = {
  /** Exchange time of the execution, "yyyyMMddHHmmss". */
  dealTime: cell,
  ...tradedFields,
  /** Price, in the currency of the security. */
  dealPrice: cell,
  /** Quantity, in shares, bonds or contracts. */
  dealQty: cell,
  /** Money: price times quantity, in the currency of the security, to two decimals. */
  dealAmount: cell,
  ...ownerFields,
  /** The number of the execution. */
  execId: cell,
  ...numberFields,
  ...originFields,
};

/** An order. */
export interface Entrust<V extends Vocabulary = SimulatorVocabulary> extends Fields<typeof entrustFields> {
  side: Cell<V['side']>;
  sideUnion: Cell<V['side']>;
  status: Cell<V['orderStatus']>;
  priceType: Cell<V['priceType']>;
}

/** A fill of an order, or of a part of it. */
export interface Execution<V extends Vocabulary = SimulatorVocabulary> extends Fields<typeof executionFields> {
  side: Cell<V['side']>;
  sideUnion: Cell<V['side']>;
}

/** Keys of an order, in the terminal's order of columns. */
export const entrustKeys = keysOf(entrustFields);
/** Keys of an execution, in the terminal's order of columns. */
export const executionKeys = keysOf(executionFields);

export const entrust = record<Entrust>('Entrust', entrustFields);
export const execution = record<Execution>('Execution', executionFields);

const pageFields = {
  /** How many records meet the conditions. */
  totalSize: number,
  /** How many of them this answer has. */
  size: number,
};

/** A part of the orders that meet the conditions. */
export interface EntrustList<V extends Vocabulary = SimulatorVocabulary> extends Fields<typeof pageFields> {
  /** The orders of this part. */
  entrustInfoList: Entrust<V>[];
}

/** A part of the executions that meet the conditions. */
export interface ExecutionList<V extends Vocabulary = SimulatorVocabulary> extends Fields<typeof pageFields> {
  /** The executions of this part. */
  executionInfoList: Execution<V>[];
}

export const entrustList = record<EntrustList>('EntrustList', { ...pageFields, entrustInfoList: list(entrust) });
export const executionList = record<ExecutionList>('ExecutionList', {
  ...pageFields,
  executionInfoList: list(execution),
});

// ---- Positions and money --------------------------------------------------------------------------------------------

const positionColumns = {
  /** Name of the fund account. */
  fundAccountName: json,
  /** Fund account that holds the position. */
  fundAccount: json,
  /** The trading account at the exchange. */
  securityAccount: json,
  /** Name of the security. */
  securityName: json,
  /** The exchange's code of the security, such as "609801". Records have no symbol. */
  securityId: json,
  /** The exchange as the terminal shows it to people, such as "上海". Calls take another name. */
  exchange: json,
  /** Last price, in the currency of the security. */
  lastPrice: json,
  /** Change of the price since the previous close, as a fraction: 0.01 is one percent. */
  riseDownRate: json,
  /** Quantity held, in shares, bonds or contracts. Short positions are negative in the simulator. 0: closed. */
  currentQty: json,
  /** Quantity that an order may close now, in shares, bonds or contracts. */
  tradableQty: json,
  /** Average price of the position, in the currency of the security. */
  costPrice: json,
  /** Cost of the position, in the currency of the security. */
  cost: json,
  /** Cost of the position, in yuan. */
  costCNY: json,
  /** Value at the last price, in the currency of the security. */
  marketValue: json,
  /** Value at the last price, in yuan. */
  marketValueCNY: json,
  /** Cost at the prices at which the position was opened, in the currency of the security. */
  totalCost: json,
  /** Profit that is not realized, in the currency of the security: the market value less the cost. */
  profit: json,
  /** Profit as a fraction of the cost: 0.01 is one percent. */
  profitRate: json,
};

const positionFields = {
  ...positionColumns,
  /** A bond's accrued interest for 100 of face value, in its currency. 0 for other securities. */
  stockInterest: number,
};

/** A position of a fund account. Its values are plain: numbers and texts, or null where there is no value. */
export interface Position extends Fields<typeof positionFields> {}

/** Keys of a position, in the terminal's order of columns, without `stockInterest`. */
export const positionKeys = keysOf(positionColumns);

export const position = record<Position>('Position', positionFields);

const assetFields = {
  /** The fund account. */
  fundAccount: text,
  /** Name of the fund account. */
  fundAccountName: text,
  /** Value of the positions at the last prices, in yuan: a text with two decimals. */
  marketValue: text,
  /** Cost of the positions, in yuan: a text with two decimals. */
  holdingCost: text,
  /** Profit of the open positions, in yuan: a text with two decimals. */
  profit: text,
  /** Money that may leave the account today, in yuan: a text with two decimals. */
  fetchableCash: text,
  /** Everything that the account has, in yuan: a text with two decimals. */
  totalAsset: text,
  /** Money that new orders may use, in yuan: a text with two decimals. */
  tradableCash: text,
  /** Profit of today's closed positions since the previous close, in yuan: a text with two decimals. */
  closePosProfitDate: text,
  /** Profit of today's closed positions since they were opened, in yuan: a text with two decimals. */
  closePosProfitTrade: text,
  /** Profit of the open positions since they were opened, in yuan: a text with two decimals. */
  floatingProfit: text,
};

/** The money of a fund account. `compareAmounts` and `addAmounts` compute with its texts exactly. */
export interface Asset extends Fields<typeof assetFields> {}

/** Keys of an asset summary. */
export const assetKeys = keysOf(assetFields);

export const asset = record<Asset>('Asset', assetFields);

const tradableQtyFields = {
  /** The largest quantity that such an order could have now, in shares, bonds or contracts: a text of the terminal. */
  qty: text,
};

/** A tradable quantity. */
export interface TradableQty extends Fields<typeof tradableQtyFields> {}

export const tradableQty = record<TradableQty>('TradableQty', tradableQtyFields);

// ---- Answers to orders, cancels and calls of strategies -------------------------------------------------------------

const orderEcho = {
  /** The symbol. */
  symbol: text,
  /** Side as a code. */
  orderSide: text,
  /** Price type as a code. */
  priceType: text,
  /** Price, in the currency of the security: a number as text. */
  price: text,
  /** Quantity, in shares, bonds or contracts: a number as text. */
  qty: text,
  /** The exchange. */
  exchange: text,
};

const placedOrderFields = {
  /**
   * The terminal's number of the order, as `cancelOrders` takes it. Without a number there is no order, although the
   * terminal reports no failure.
   */
  orderID: optional(text),
  /** The fund account. */
  fundAccount: text,
  ...orderEcho,
};

const ownOutcome = {
  /** "0" for success, "-1" for failure. */
  code: text,
  /** The terminal's reason, for people. Usually empty on success. */
  msg: text,
};

const listedOrderFields = {
  ...orderEcho,
  /** The terminal's number of the order, as `cancelOrders` takes it. */
  orderID: text,
  ...ownOutcome,
};

/** An order as the page sent it, with the terminal's number. */
export interface PlacedOrder<V extends Vocabulary = SimulatorVocabulary> extends Fields<typeof placedOrderFields> {
  orderSide: V['side'];
  priceType: V['priceType'];
}

/** One order of a list with the values that the terminal accepted, and its own outcome. */
export interface ListedOrder<V extends Vocabulary = SimulatorVocabulary> extends Fields<typeof listedOrderFields> {
  orderSide: V['side'];
  priceType: V['priceType'];
}

const cancelledOrderFields = {
  /** The number of the order. It is spelt `orderId` here, and `orderID` in the answers to orders. */
  orderId: json,
  /** "0" when the order is cancelled, "-1" when it is not. */
  code: json,
  /** The terminal's reason, for people. */
  msg: json,
};

/** The outcome of one cancel. */
export interface CancelledOrder extends Fields<typeof cancelledOrderFields> {}

const strategyAnswerFields = {
  /** The identifier of the strategy. */
  strategyID: text,
  /** The state of the strategy, a code of the terminal. */
  strategyStatus: json,
  /** The extension that the page sent, unchanged. */
  ExtField: json,
};

/** A strategy with its state. */
export interface StrategyAnswer extends Fields<typeof strategyAnswerFields> {}

export const placedOrder = record<PlacedOrder>('PlacedOrder', placedOrderFields);
export const listedOrder = record<ListedOrder>('ListedOrder', listedOrderFields);
export const cancelledOrder = record<CancelledOrder>('CancelledOrder', cancelledOrderFields);
export const strategyAnswer = record<StrategyAnswer>('StrategyAnswer', strategyAnswerFields);
