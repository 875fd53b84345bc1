import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { connect, methods, oneWayMethods, type Call, type Connection } from '../src/index.js';
import { FakeBridge } from './fakeBridge.js';
import {
  filter,
  page,
  order,
  execution,
  position,
  asset,
  detail,
  classes,
  line,
  order1,
  placed,
  strategy,
  stopped,
} from './samples.js';

let bridge: FakeBridge;
let sdk: Connection;

beforeEach(() => {
  vi.useFakeTimers();
  bridge = new FakeBridge();
  sdk = connect(bridge);
});

afterEach(() => {
  expect(vi.getTimerCount()).toBe(0); // an answered call leaves no timer behind
  vi.useRealTimers();
});

const accepted = { ...line, orderID: '1', code: '0', msg: '' };
const refused = { ...line, orderID: '2', code: '-1', msg: 'no' };

/**
 * Every call: what the page passes, what the terminal gets after the identifier, an answer, and what the page gets if
 * that is not the answer itself.
 */
const table: [Call, Record<string, unknown> | undefined, string, unknown[], string, unknown, unknown?][] = [
  ['getToken', undefined, 'Data_getToken_REQ', [], 'Data_getToken_RES', 'T'],
  ['getLoginTrader', undefined, 'Data_getLoginTrader_REQ', [], 'Data_getLoginTrader_RES', 'trader'],
  ['getTraderList', {}, 'Data_getTraderList_REQ', [], 'Data_getTraderList_RES', ['a', 'b']],
  [
    'getFundAccountList',
    { fundProp: 3 },
    'Data_getFundAccountList_REQ',
    [3],
    'Data_getFundAccountList_RES',
    [{ fundAccount: '1', fundAccountName: '一' }],
  ],
  ['getOPStation', { second: 'B', first: 'A' }, 'Data_getOPStation_REQ', ['A', 'B'], 'Data_getOPStation_RES', 'A;B'],
  [
    'getKLineData',
    { symbol: 's', startTime: 'f', stopTime: 't', period: '1' },
    'Data_getKLineData_REQ',
    ['s', 'f', 't', '1'],
    'Data_getKLineData_RES',
    [{ open: 1 }, { open: 2 }],
  ],
  [
    'getSymbolList',
    { symbolFilter: classes },
    'Data_getSymbolList_REQ',
    [JSON.stringify({ symbolFilter: classes })],
    'Data_getSymbolList_RES',
    [{ symbol: 's', displayName: '一|二', spellName: 'YE' }],
  ],
  [
    'getSymbolListWithDetail',
    { symbolFilter: [] },
    'Data_getSymbolListWithDetail_REQ',
    ['{"symbolFilter":[]}'],
    'Data_getSymbolListWithDetail_RES',
    [detail],
  ],
  [
    'getSymbolDetail',
    { symbols: ['s', '', 't'] },
    'Data_getSymbolDetail_REQ',
    ['s,,t'],
    'Data_getSymbolDetail_RES',
    [detail, { ...detail, symbol: '' }, detail],
  ],
  ['getCurrentTick', { symbol: 's' }, 'Data_getCurrentTick_REQ', ['s'], 'Data_getCurrentTick_RES', { any: [1] }],
  [
    'getUpsDownsAnalysis',
    { first: '1', second: '2', third: '3' },
    'Data_getUpsDownsAnalysis_REQ',
    ['1', '2', '3'],
    'Data_getUpsDownsAnalysis_RES',
    '',
  ],
  [
    'getEntrustList',
    page,
    'Data_getEntrustList_REQ',
    [JSON.stringify(filter), 40, 20],
    'Data_getEntrustList_RES',
    { totalSize: 41, size: 1, entrustInfoList: [order] },
  ],
  [
    'getExecutionList',
    { ...page, filter: {} },
    'Data_getExecutionList_REQ',
    ['{}', 40, 20],
    'Data_getExecutionList_RES',
    { totalSize: 41, size: 1, executionInfoList: [execution] },
  ],
  [
    'getPositionList',
    { fundAccounts: ['1', '2'], symbol: '' },
    'Data_getPositionList_REQ',
    ['1,2', ''],
    'Data_getPositionList_RES',
    [position],
  ],
  ['getAsset', { fundAccounts: ['1'] }, 'Data_getAsset_REQ', ['1'], 'Data_getAsset_RES', [asset]],
  [
    'getTradableQty',
    { tag: 'g', price: 'f', priceType: 'e', side: 'd', exchange: 'c', symbol: 'b', fundAccount: 'a' },
    'Data_getTradableQty_REQ',
    ['a', 'b', 'c', 'd', 'e', 'f', 'g'],
    'Data_getTradableQty_RES',
    { qty: '300' },
  ],
  ['getSetting', { key: 'k' }, 'Data_getSetting_REQ', ['k'], 'Data_getSetting_RES', '值'],
  ['saveSetting', { value: '', key: 'k' }, 'Data_saveSetting_REQ', ['k', ''], 'Data_saveSetting_RES', ''],
  [
    'getPermission',
    { supportType: 't', fundAccount: 'f' },
    'Data_getPermission_REQ',
    ['f', 't'],
    'Data_getPermission_RES',
    1,
  ],
  ['openPermissionMenu', undefined, 'Data_openPermissionMenu_REQ', [], 'Data_openPermissionMenu_RES', ''],
  ['subscribe', { symbols: ['a', 'A'] }, 'Sub_subscribe_REQ', ['a,A'], 'Sub_subscribe_RES', undefined],
  ['unsubscribe', { symbols: ['a'] }, 'UnSub_subscribe_REQ', ['a'], 'UnSub_subscribe_RES', undefined],
  ['unsubscribeAll', undefined, 'UnSub_subscribeAll_REQ', [], 'UnSub_subscribeAll_RES', undefined],
  [
    'insertOrder',
    order1,
    'Trade_insertOrder_REQ',
    ['f', 's', 'X', 'Buy', 'Limit', '1.50', '100', 'tag'],
    'Trade_insertOrder_RES',
    placed,
    { outcome: 'accepted', orderID: 'O1', order: placed },
  ],
  [
    'insertOrderList',
    { orders: [line, line], orderTag: 'tag', fundAccount: 'f' },
    'Trade_insertOrderList_REQ',
    ['f', 'tag', JSON.stringify([line, line])],
    'Trade_insertOrderList_RES',
    [accepted, refused],
    [
      { outcome: 'accepted', orderID: '1', order: accepted },
      { outcome: 'refused', reason: 'no', orderID: '2', order: refused },
    ],
  ],
  [
    'cancelOrders',
    { orderIds: ['1', '2'] },
    'Trade_reqCancelOrder_REQ',
    ['1,2'],
    'Trade_reqCancelOrder_RES',
    [
      { orderId: '1', code: '0', msg: '' },
      { orderId: '2', code: '-1', msg: 'no' },
    ],
  ],
  [
    'startStrategy',
    { filePath: 'p', language: 2, fundAccounts: ['1', '2'], basicParam: { step: 1 }, extension: null },
    'Vlx_startStrategy_REQ',
    ['p', 2, '1,2', { step: 1 }, null],
    'Vlx_startStrategy_RES',
    strategy,
  ],
  ['stopStrategy', stopped, 'Vlx_stopStrategy_REQ', ['S1', ['x']], 'Vlx_stopStrategy_RES', strategy],
  [
    'queryStrategyStatus',
    stopped,
    'Vlx_queryStrategyStatus_REQ',
    ['S1', ['x']],
    'Vlx_queryStrategyStatus_RES',
    strategy,
  ],
];

describe('every call', () => {
  it.each(table)(
    '%s sends its arguments in order and gets its answer',
    async (call, values, method, args, event, data, result = data) => {
      const answer = (sdk[call] as (values: unknown) => Promise<unknown>)(values);
      expect(bridge.calls).toEqual([{ method, args: [bridge.uuid(0), ...args] }]);
      bridge.reply(event, bridge.uuid(0), data);
      expect(await answer).toEqual(result);
    },
  );

  it('is in the table above', () => {
    expect(table.map(([call]) => call).sort()).toEqual(Object.keys(methods).sort());
    expect(Object.keys(sdk)).toEqual(expect.arrayContaining([...Object.keys(methods), ...Object.keys(oneWayMethods)]));
  });
});
