import type { AnsweredCall, MethodName } from './protocol.js';
import { answers, parameters } from './readings.js';

interface OneWayMethod {
  method: MethodName;
  /** Name and reading of the arguments after the call identifier, in the order in which they are sent. */
  parameters: readonly (readonly [name: string, reading: keyof typeof parameters])[];
}

interface Method extends OneWayMethod {
  method: AnsweredCall;
  answer: (resultData: unknown) => unknown;
  /** The terminal asks elsewhere first: answers may overtake each other, and one may never come. */
  deferred?: true;
  /** The empty reply is the answer here, not a rejection. */
  answersEmpty?: true;
  /** The call trades, starts or stops something. Without an answer its outcome is unknown. */
  hasSideEffects?: true;
}

/** The calls that a connection offers. Types, argument lists and answers all derive from this table. */
export const methods = {
  getToken: { method: 'Data_getToken_REQ', parameters: [], answer: answers.text },
  getLoginTrader: { method: 'Data_getLoginTrader_REQ', parameters: [], answer: answers.text },
  getTraderList: { method: 'Data_getTraderList_REQ', parameters: [], answer: answers.texts },
  getFundAccountList: {
    method: 'Data_getFundAccountList_REQ',
    parameters: [['fundProp', 'integer']],
    answer: answers.fundAccounts,
  },
  getOPStation: {
    method: 'Data_getOPStation_REQ',
    parameters: [
      ['first', 'text'],
      ['second', 'text'],
    ],
    answer: answers.text,
  },
  getSymbolList: {
    method: 'Data_getSymbolList_REQ',
    parameters: [['symbolFilter', 'securityClasses']],
    answer: answers.securityEntries,
  },
  getSymbolListWithDetail: {
    method: 'Data_getSymbolListWithDetail_REQ',
    parameters: [['symbolFilter', 'securityClasses']],
    answer: answers.securityDetails,
  },
  getSymbolDetail: {
    method: 'Data_getSymbolDetail_REQ',
    parameters: [['symbols', 'commaList']],
    answer: answers.securityDetails,
  },
  getCurrentTick: { method: 'Data_getCurrentTick_REQ', parameters: [['symbol', 'text']], answer: answers.tick },
  getKLineData: {
    method: 'Data_getKLineData_REQ',
    parameters: [
      ['symbol', 'text'],
      ['startTime', 'text'],
      ['stopTime', 'text'],
      ['period', 'text'],
    ],
    answer: answers.candles,
    deferred: true,
  },
  getUpsDownsAnalysis: {
    method: 'Data_getUpsDownsAnalysis_REQ',
    parameters: [
      ['first', 'text'],
      ['second', 'text'],
      ['third', 'text'],
    ],
    answer: answers.text,
    answersEmpty: true,
  },
  getEntrustList: {
    method: 'Data_getEntrustList_REQ',
    parameters: [
      ['filter', 'orderFilter'],
      ['start', 'integer'],
      ['count', 'integer'],
    ],
    answer: answers.entrustList,
  },
  getExecutionList: {
    method: 'Data_getExecutionList_REQ',
    parameters: [
      ['filter', 'orderFilter'],
      ['start', 'integer'],
      ['count', 'integer'],
    ],
    answer: answers.executionList,
  },
  getPositionList: {
    method: 'Data_getPositionList_REQ',
    parameters: [
      ['fundAccounts', 'commaList'],
      ['symbol', 'text'],
    ],
    answer: answers.positions,
  },
  getAsset: { method: 'Data_getAsset_REQ', parameters: [['fundAccounts', 'commaList']], answer: answers.assets },
  getTradableQty: {
    method: 'Data_getTradableQty_REQ',
    parameters: [
      ['fundAccount', 'text'],
      ['symbol', 'text'],
      ['exchange', 'text'],
      ['side', 'text'],
      ['priceType', 'text'],
      ['price', 'text'],
      ['tag', 'text'],
    ],
    answer: answers.tradableQty,
  },
  getSetting: { method: 'Data_getSetting_REQ', parameters: [['key', 'text']], answer: answers.text },
  saveSetting: {
    method: 'Data_saveSetting_REQ',
    parameters: [
      ['key', 'text'],
      ['value', 'text'],
    ],
    answer: answers.text,
  },
  getPermission: {
    method: 'Data_getPermission_REQ',
    parameters: [
      ['fundAccount', 'text'],
      ['supportType', 'text'],
    ],
    answer: answers.permission,
  },
  openPermissionMenu: { method: 'Data_openPermissionMenu_REQ', parameters: [], answer: answers.text },
  subscribe: { method: 'Sub_subscribe_REQ', parameters: [['symbols', 'commaList']], answer: answers.nothing },
  unsubscribe: { method: 'UnSub_subscribe_REQ', parameters: [['symbols', 'commaList']], answer: answers.nothing },
  unsubscribeAll: { method: 'UnSub_subscribeAll_REQ', parameters: [], answer: answers.nothing },
  insertOrder: {
    method: 'Trade_insertOrder_REQ',
    parameters: [
      ['fundAccount', 'text'],
      ['symbol', 'text'],
      ['exchange', 'text'],
      ['orderSide', 'text'],
      ['priceType', 'text'],
      ['price', 'text'],
      ['qty', 'text'],
      ['orderTag', 'text'],
    ],
    answer: answers.placedOrder,
    hasSideEffects: true,
  },
  insertOrderList: {
    method: 'Trade_insertOrderList_REQ',
    parameters: [
      ['fundAccount', 'text'],
      ['orderTag', 'text'],
      ['orders', 'orderLines'],
    ],
    answer: answers.listedOrders,
    hasSideEffects: true,
  },
  cancelOrders: {
    method: 'Trade_reqCancelOrder_REQ',
    parameters: [['orderIds', 'commaList']],
    answer: answers.cancelledOrders,
    hasSideEffects: true,
  },
  startStrategy: {
    method: 'Vlx_startStrategy_REQ',
    parameters: [
      ['filePath', 'text'],
      ['language', 'integer'],
      ['fundAccounts', 'commaList'],
      ['basicParam', 'json'],
      ['extension', 'json'],
    ],
    answer: answers.strategyAnswer,
    deferred: true,
    hasSideEffects: true,
  },
  stopStrategy: {
    method: 'Vlx_stopStrategy_REQ',
    parameters: [
      ['strategyID', 'text'],
      ['extension', 'json'],
    ],
    answer: answers.strategyAnswer,
    deferred: true,
    hasSideEffects: true,
  },
  queryStrategyStatus: {
    method: 'Vlx_queryStrategyStatus_REQ',
    parameters: [
      ['strategyID', 'text'],
      ['extension', 'json'],
    ],
    answer: answers.strategyAnswer,
    deferred: true,
  },
} as const satisfies Record<string, Method>;

/** The calls to which the terminal never replies. */
export const oneWayMethods = {
  sendCustomInfo: {
    method: 'Vlx_sendCustomInfo_REQ',
    parameters: [
      ['customMsgID', 'text'],
      ['message', 'text'],
    ],
  },
  subStrategyMsg: {
    method: 'Vlx_subStrategyMsg_REQ',
    parameters: [
      ['customMsgID', 'text'],
      ['subscribed', 'subscription'],
    ],
  },
} as const satisfies Record<string, OneWayMethod>;

type Methods = typeof methods;
type OneWayMethods = typeof oneWayMethods;
type AllMethods = Methods & OneWayMethods;
export type Call = keyof Methods;
export type OneWayCall = keyof OneWayMethods;

export type Arguments<C extends Call | OneWayCall> = {
  [P in AllMethods[C]['parameters'][number] as P[0]]: Parameters<(typeof parameters)[P[1]]>[0];
};
export type Answer<C extends Call> = ReturnType<Methods[C]['answer']>;

const allMethods: Record<Call | OneWayCall, OneWayMethod> = { ...methods, ...oneWayMethods };

/** The argument list of a call, identifier first. Throws an error that names a parameter with an unusable value. */
export function argumentList(
  call: Call | OneWayCall,
  uuid: string,
  values: Readonly<Record<string, unknown>>,
): unknown[] {
  const written = allMethods[call].parameters.map(([name, reading]) => {
    try {
      return parameters[reading](values[name] as never);
    } catch (error) {
      const Kind = error instanceof RangeError ? RangeError : TypeError;
      throw new Kind(`${call}: ${name} ${(error as Error).message}`);
    }
  });
  return [uuid, ...written];
}

export function describe(call: Call): Method {
  return methods[call];
}
