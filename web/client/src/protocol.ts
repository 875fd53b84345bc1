/**
 * Every name of the page protocol. A test compares these tables with the library's own constants, name by name.
 */

/** Calls that the terminal answers: method name and the event that carries the reply. */
export const answeredCalls = {
  Data_getToken_REQ: 'Data_getToken_RES',
  Data_getSymbolDetail_REQ: 'Data_getSymbolDetail_RES',
  Data_getCurrentTick_REQ: 'Data_getCurrentTick_RES',
  Data_getFundAccountList_REQ: 'Data_getFundAccountList_RES',
  Data_getTraderList_REQ: 'Data_getTraderList_RES',
  Data_getLoginTrader_REQ: 'Data_getLoginTrader_RES',
  Data_getSymbolList_REQ: 'Data_getSymbolList_RES',
  Data_getSymbolListWithDetail_REQ: 'Data_getSymbolListWithDetail_RES',
  Data_getEntrustList_REQ: 'Data_getEntrustList_RES',
  Data_getExecutionList_REQ: 'Data_getExecutionList_RES',
  Data_getPositionList_REQ: 'Data_getPositionList_RES',
  Data_getAsset_REQ: 'Data_getAsset_RES',
  Data_getTradableQty_REQ: 'Data_getTradableQty_RES',
  Data_getSetting_REQ: 'Data_getSetting_RES',
  Data_saveSetting_REQ: 'Data_saveSetting_RES',
  Data_getPermission_REQ: 'Data_getPermission_RES',
  Data_openPermissionMenu_REQ: 'Data_openPermissionMenu_RES',
  Data_getUpsDownsAnalysis_REQ: 'Data_getUpsDownsAnalysis_RES',
  Data_getKLineData_REQ: 'Data_getKLineData_RES',
  Data_getOPStation_REQ: 'Data_getOPStation_RES',
  Trade_insertOrder_REQ: 'Trade_insertOrder_RES',
  Trade_insertOrderList_REQ: 'Trade_insertOrderList_RES',
  Trade_reqCancelOrder_REQ: 'Trade_reqCancelOrder_RES',
  Sub_subscribe_REQ: 'Sub_subscribe_RES',
  UnSub_subscribe_REQ: 'UnSub_subscribe_RES',
  UnSub_subscribeAll_REQ: 'UnSub_subscribeAll_RES',
  Vlx_startStrategy_REQ: 'Vlx_startStrategy_RES',
  Vlx_stopStrategy_REQ: 'Vlx_stopStrategy_RES',
  Vlx_queryStrategyStatus_REQ: 'Vlx_queryStrategyStatus_RES',
} as const;

/** Calls without an answer: nobody handles the buffer calls. The reply names here are reserved and never sent. */
export const unansweredCalls = {
  Data_getBuffer_REQ: 'Data_getBuffer_RES',
  Data_saveBuffer_REQ: 'Data_saveBuffer_RES',
  Vlx_sendCustomInfo_REQ: 'Vlx_sendCustomInfo_RES',
  Vlx_subStrategyMsg_REQ: 'Vlx_subStrategyMsg_RES',
} as const;

/** Events without a call. */
export const pushEvents = [
  'on_tickUpdate',
  'on_AssetUpdate',
  'on_entrustUpdate',
  'on_executionUpdate',
  'on_positionUpdate',
  'on_orderLoaded',
  'on_vlxRcvCustomInfo',
  'on_vlxStrategyStatusUpdate',
] as const;

/** Reserved names, never sent. */
export const reservedEvents = ['on_callError', 'Notify_WebReady'] as const;

export type AnsweredCall = keyof typeof answeredCalls;
export type MethodName = AnsweredCall | keyof typeof unansweredCalls;
export type ReplyEvent = (typeof answeredCalls)[AnsweredCall];
export type PushEvent = (typeof pushEvents)[number];
