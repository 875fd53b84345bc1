import type { Method, OneWayMethod } from './calls.js';

/** Parameters that several calls have. A comment must stand in the file of the call, or the packed types lose it. */

const fundAccount = {
  /** Fund account, as `getFundAccountList` names it, such as "880010001". */
  fundAccount: 'text',
} as const;

const fundAccounts = {
  /** Fund accounts, as `getFundAccountList` names them. The list must not be empty, and no entry may have a comma. */
  fundAccounts: 'commaList',
} as const;

const symbol = {
  /** Symbol of the security, such as "609801.SH". Case matters. */
  symbol: 'text',
} as const;

const orderPage = {
  /** Conditions. A record must meet all of them. */
  filter: 'orderFilter',
  /**
   * Where to start, counted from 0. The terminal decides whether it counts records or pages; the simulator counts
   * records.
   */
  start: 'integer',
  /** How many records are wanted. In the simulator 0 means all the rest. */
  count: 'integer',
} as const;

const exchange = {
  /** Exchange of the security, such as "SH". */
  exchange: 'text',
} as const;

const priced = {
  /** Price type as a code, such as "Limit". */
  priceType: 'priceType',
  /**
   * Limit in the currency of the security: a number as text, such as "18.36". A price type without limit ignores it.
   */
  price: 'text',
} as const;

const orderTag = {
  /**
   * A text of your choice, by which the page finds its orders again: they show it as `orderSource`. It may be empty.
   */
  orderTag: 'text',
} as const;

const strategy = {
  /** Identifier of the strategy, as `startStrategy` answered it. */
  strategyID: 'text',
} as const;

const extension = {
  /** Any JSON value. It comes back unchanged as `ExtField` of the answer. */
  extension: 'json',
} as const;

const customMessage = {
  /** Identifier of the custom messages. In the simulator it is the identifier of a strategy. */
  customMsgID: 'text',
} as const;

/** Calls about orders, holdings and strategies. */
export const tradeCalls = {
  /**
   * Lists orders that meet conditions. **If the terminal knows none of the fund accounts in the filter, the answer has the
   * orders of all accounts.**
   * @returns a part of the matching orders and their number; the simulator has the newest first
   */
  getEntrustList: { method: 'Data_getEntrustList_REQ', parameters: { ...orderPage }, answer: 'entrustList' },

  /**
   * Lists executions whose orders meet conditions. **If the terminal knows none of the fund accounts in the filter, the
   * answer has the executions of all accounts.**
   * @returns a part of the matching executions and their number; the simulator has the newest first
   */
  getExecutionList: {
    method: 'Data_getExecutionList_REQ',
    parameters: { ...orderPage },
    answer: 'executionList',
  },

  /**
   * Lists positions. Accounts that the terminal does not know are left out.
   * @returns the positions
   */
  getPositionList: {
    method: 'Data_getPositionList_REQ',
    parameters: {
      ...fundAccounts,
      /** Symbol of the security, such as "609801.SH", or "" for all positions. */
      symbol: 'text',
    },
    answer: 'positions',
  },

  /**
   * Asks for the money of fund accounts. Accounts that the terminal does not know are left out.
   * @returns an asset summary for each account
   */
  getAsset: { method: 'Data_getAsset_REQ', parameters: { ...fundAccounts }, answer: 'assets' },

  /**
   * Asks for the largest quantity that an order could have now.
   * @returns the quantity; nothing for a fund account that the terminal does not know
   */
  getTradableQty: {
    method: 'Data_getTradableQty_REQ',
    parameters: {
      ...fundAccount,
      ...symbol,
      ...exchange,
      /** Side of the order as a code, such as "Buy". */
      side: 'side',
      ...priced,
      /** Tag of the order. It may be empty. */
      tag: 'text',
    },
    answer: 'tradableQty',
  },

  /**
   * Places an order. **A repeated call is a second order**: after a call without an answer, look at the order list.
   * @returns what became of the order
   * @wire the arguments of the page, and the order's number as `orderID`
   */
  insertOrder: {
    method: 'Trade_insertOrder_REQ',
    parameters: {
      ...fundAccount,
      ...symbol,
      ...exchange,
      /** Side of the order as a code, such as "Buy". Futures have sides that open and close, such as "BuyOpen". */
      orderSide: 'side',
      ...priced,
      /**
       * Quantity in shares, bonds or contracts: a whole number as text, such as "100". Any other text arrives as 0.
       */
      qty: 'text',
      ...orderTag,
    },
    answer: 'placedOrder',
    hasSideEffects: true,
  },

  /**
   * Places a list of orders. Each has its own outcome, and the call succeeds although some are refused. **A repeated call
   * places them all a second time.**
   * @returns what became of each order, in their order
   * @wire the orders with the values that the terminal accepted, each with its outcome
   */
  insertOrderList: {
    method: 'Trade_insertOrderList_REQ',
    parameters: {
      ...fundAccount,
      ...orderTag,
      /** The orders, in the order in which they are entered. */
      orders: 'orderLines',
    },
    answer: 'listedOrders',
    hasSideEffects: true,
  },

  /**
   * Cancels orders. Each cancel has its own outcome.
   * @returns the outcome of each cancel
   */
  cancelOrders: {
    method: 'Trade_reqCancelOrder_REQ',
    parameters: {
      /**
       * Numbers of the orders: `orderID` of the answer to an order, `orderId` of a record. The list must not be empty.
       */
      orderIds: 'commaList',
    },
    answer: 'cancelledOrders',
    hasSideEffects: true,
  },

  /**
   * Starts a strategy on the terminal's platform. The push `strategyStatus` tells when its state changes.
   * @returns the strategy's identifier and state
   */
  startStrategy: {
    method: 'Vlx_startStrategy_REQ',
    parameters: {
      /** Path of the strategy's file on the platform. */
      filePath: 'text',
      /** Number of the language. `strategyLanguages` has those of the simulator: 1 Python, 2 C++, 3 JavaScript. */
      language: 'integer',
      ...fundAccounts,
      /** Basic parameters of the strategy, any JSON value. */
      basicParam: 'json',
      ...extension,
    },
    answer: 'strategyAnswer',
    deferred: true,
    hasSideEffects: true,
  },

  /**
   * Stops a strategy.
   * @returns the strategy's identifier and state
   */
  stopStrategy: {
    method: 'Vlx_stopStrategy_REQ',
    parameters: { ...strategy, ...extension },
    answer: 'strategyAnswer',
    deferred: true,
    hasSideEffects: true,
  },

  /**
   * Asks for the state of a strategy.
   * @returns the strategy's identifier and state
   */
  queryStrategyStatus: {
    method: 'Vlx_queryStrategyStatus_REQ',
    parameters: { ...strategy, ...extension },
    answer: 'strategyAnswer',
    deferred: true,
  },
} as const satisfies Record<string, Method>;

/** Calls to which the terminal never replies. */
export const oneWayMethods = {
  /** Sends a custom message, for example to a strategy. No reply comes. */
  sendCustomInfo: {
    method: 'Vlx_sendCustomInfo_REQ',
    parameters: {
      ...customMessage,
      /** The message, any text. */
      message: 'text',
    },
  },

  /**
   * Begins or ends the page's subscription to custom messages, which come as the push `strategyMessage`. No reply
   * comes.
   */
  subStrategyMsg: {
    method: 'Vlx_subStrategyMsg_REQ',
    parameters: {
      ...customMessage,
      /** True begins the subscription, false ends it. */
      subscribed: 'subscription',
    },
  },
} as const satisfies Record<string, OneWayMethod>;
