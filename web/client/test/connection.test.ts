import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  CallError,
  ClosedError,
  connect,
  FailedCallError,
  RejectedCallError,
  TimeoutError,
  UnexpectedReplyError,
  assetKeys,
  entrustKeys,
  executionKeys,
  oneWayMethods,
  positionKeys,
  type Call,
  type Connection,
} from '../src/index.js';
import { FakeBridge } from './fakeBridge.js';

let bridge: FakeBridge;
let unpaired: unknown[][];
let sdk: Connection;

beforeEach(() => {
  vi.useFakeTimers();
  bridge = new FakeBridge();
  unpaired = [];
  sdk = connect(bridge, { timeoutMs: 1000, onUnpaired: (event, reply) => unpaired.push([event, reply]) });
});

afterEach(() => {
  expect(vi.getTimerCount()).toBe(0); // an answered call leaves no timer behind
  vi.useRealTimers();
});

const filter = { symbol: ['s'], orderStatus: ['1', '2'] };
const page = { filter, start: 40, count: 20 };
const order = Object.fromEntries(entrustKeys.map((key) => [key, { displayRole: key, userRole: 1 }]));
const execution = Object.fromEntries(executionKeys.map((key) => [key, { displayRole: null, userRole: null }]));
const position = { ...Object.fromEntries(positionKeys.map((key) => [key, 1.5])), stockInterest: 0 };
const asset = Object.fromEntries(assetKeys.map((key) => [key, '0.00']));
const detail = {
  symbol: 's',
  securityId: '1',
  exchange: 'X',
  displayName: '一',
  spellName: 'Y',
  qtyUnit: 100,
  precision: 2,
  priceUnit: 0.01,
  qtyStep: 100,
  qtyPrecision: 1,
  minQty: '100',
  maxQty: '1000000',
  securityType: 'a',
  securitySubType: 'b',
  priceLimitType: false,
  stockInterest: 1.25,
};
const classes = [{ securityType: 'a', securitySubType: ['b'], securityPost: [] }];

const line = { symbol: 's', exchange: 'X', orderSide: 'Buy', priceType: 'Limit', price: '1.50', qty: '100' };
const order1 = { ...line, fundAccount: 'f', orderTag: 'tag' };
const placed = { ...line, fundAccount: 'f', orderID: 'O1' };
const strategy = { strategyID: 'S1', strategyStatus: 'running', ExtField: ['x'] };
const stopped = { strategyID: 'S1', extension: ['x'] };

/** Every call: what the page passes, what the terminal gets after the identifier, an answer. */
const table: [Call, Record<string, unknown> | undefined, string, unknown[], string, unknown][] = [
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
  ],
  [
    'insertOrderList',
    { orders: [line, line], orderTag: 'tag', fundAccount: 'f' },
    'Trade_insertOrderList_REQ',
    ['f', 'tag', JSON.stringify([line, line])],
    'Trade_insertOrderList_RES',
    [{ ...line, orderID: '1', code: '-1', msg: 'no' }],
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
    async (call, values, method, args, event, data) => {
      const answer = (sdk[call] as (values: unknown) => Promise<unknown>)(values);
      expect(bridge.calls).toEqual([{ method, args: [bridge.uuid(0), ...args] }]);
      bridge.reply(event, bridge.uuid(0), data);
      expect(await answer).toEqual(data);
    },
  );

  it('is in the table above', () => {
    expect(table.map(([call]) => call).sort()).toEqual(
      Object.keys(sdk)
        .filter((name) => !['close', 'on', ...Object.keys(oneWayMethods)].includes(name))
        .sort(),
    );
  });
});

describe('pairing', () => {
  it('gives each call its own answer, whatever the order', async () => {
    const [first, second] = [sdk.getToken(), sdk.getToken()];
    expect(bridge.uuid(0)).not.toBe(bridge.uuid(1));
    bridge.reply('Data_getToken_RES', bridge.uuid(1), 'two');
    bridge.reply('Data_getToken_RES', bridge.uuid(0), 'one');
    expect(await Promise.all([first, second])).toEqual(['one', 'two']);
    expect(unpaired).toEqual([]);
  });

  it('takes an answer that comes before the call returns', async () => {
    bridge.answerAtOnce = (_, [uuid]) => bridge.reply('Data_getToken_RES', uuid, 'at once');
    expect(await sdk.getToken()).toBe('at once');
  });

  it.each([
    ['of another call', JSON.stringify({ code: '0', msg: '', resultData: '', uuid: 'stranger' })],
    ['with a number for an identifier', JSON.stringify({ code: '0', msg: '', resultData: '', uuid: 1 })],
    ['that is no JSON', '{'],
    ['that is no object', 'null'],
    ['that is no text', 7],
    ['without argument', undefined],
  ])('leaves a reply %s alone', async (_, reply) => {
    const answer = sdk.getToken();
    bridge.emit('Data_getToken_RES', reply);
    expect(unpaired).toEqual([['Data_getToken_RES', reply]]);
    bridge.reply('Data_getToken_RES', bridge.uuid(0), 'T');
    expect(await answer).toBe('T');
  });

  it('does not take the answer of another method for its own', async () => {
    const answer = sdk.getToken();
    bridge.reply('Data_getLoginTrader_RES', bridge.uuid(0), 'not a token');
    expect(unpaired).toHaveLength(1);
    bridge.reply('Data_getToken_RES', bridge.uuid(0), 'T');
    expect(await answer).toBe('T');
  });

  it('uses identifiers that no other connection uses', async () => {
    const other = connect(bridge);
    const answers = [sdk.getToken(), other.getToken()];
    expect(new Set([bridge.uuid(0), bridge.uuid(1)]).size).toBe(2);
    bridge.reply('Data_getToken_RES', bridge.uuid(0), 'T');
    bridge.reply('Data_getToken_RES', bridge.uuid(1), 'T');
    await Promise.all(answers);
  });
});

describe('empty replies', () => {
  it('reject the oldest waiting call of the method', async () => {
    const [first, second, station] = [sdk.getToken(), sdk.getToken(), sdk.getOPStation({ first: '', second: '' })];
    bridge.emit('Data_getToken_RES', '');
    await expect(first).rejects.toBeInstanceOf(RejectedCallError);
    await expect(first).rejects.toMatchObject({ method: 'Data_getToken_REQ', uuid: bridge.uuid(0) });
    bridge.reply('Data_getToken_RES', bridge.uuid(1), 'T');
    bridge.reply('Data_getOPStation_RES', bridge.uuid(2), 'S');
    expect(await Promise.all([second, station])).toEqual(['T', 'S']);
  });

  it('reject a deferred call only when it waits alone', async () => {
    const range = { symbol: 's', startTime: '', stopTime: '', period: '2' };
    const [first, second] = [sdk.getKLineData(range), sdk.getKLineData(range)];
    bridge.emit('Data_getKLineData_RES', '');
    expect(unpaired).toEqual([['Data_getKLineData_RES', '']]);
    bridge.reply('Data_getKLineData_RES', bridge.uuid(0), []);
    expect(await first).toEqual([]);
    bridge.emit('Data_getKLineData_RES', '');
    await expect(second).rejects.toBeInstanceOf(RejectedCallError);
  });

  it('are reported when no call waits', () => {
    bridge.emit('Data_getToken_RES', '');
    expect(unpaired).toEqual([['Data_getToken_RES', '']]);
  });

  it('are the answer of the rise-and-fall analysis', async () => {
    const asked = { first: '', second: '', third: '' };
    const [first, second] = [sdk.getUpsDownsAnalysis(asked), sdk.getUpsDownsAnalysis(asked)];
    bridge.emit('Data_getUpsDownsAnalysis_RES', '');
    expect(await first).toBe('');
    bridge.emit('Data_getUpsDownsAnalysis_RES', '');
    expect(await second).toBe('');
    bridge.emit('Data_getUpsDownsAnalysis_RES', '');
    expect(unpaired).toEqual([['Data_getUpsDownsAnalysis_RES', '']]);
  });
});

describe('a tradable quantity', () => {
  it('of an account that the terminal does not know is undefined', async () => {
    const asked = { fundAccount: '', symbol: '', exchange: '', side: '', priceType: '', price: '', tag: '' };
    const answer = sdk.getTradableQty(asked);
    bridge.reply('Data_getTradableQty_RES', bridge.uuid(0), undefined);
    expect(await answer).toBeUndefined();
  });
});

describe('failures', () => {
  it('carry code, message and data', async () => {
    const answer = sdk.getToken();
    bridge.reply('Data_getToken_RES', bridge.uuid(0), { detail: 1 }, '-1', '资产账号获取错误');
    await expect(answer).rejects.toBeInstanceOf(FailedCallError);
    await expect(answer).rejects.toMatchObject({ code: '-1', msg: '资产账号获取错误', resultData: { detail: 1 } });
    await expect(answer).rejects.toThrow('Data_getToken_REQ: 资产账号获取错误');
  });

  it('time out, and a late answer is reported', async () => {
    const answer = sdk.getToken();
    vi.advanceTimersByTime(999);
    expect(vi.getTimerCount()).toBe(1);
    vi.advanceTimersByTime(1);
    await expect(answer).rejects.toBeInstanceOf(TimeoutError);
    await expect(answer).rejects.toMatchObject({ timeoutMs: 1000 });
    bridge.reply('Data_getToken_RES', bridge.uuid(0), 'late');
    expect(unpaired).toHaveLength(1);
  });

  it('lets a single call choose its timeout', async () => {
    const answer = sdk.getToken({}, { timeoutMs: 5 });
    vi.advanceTimersByTime(5);
    await expect(answer).rejects.toMatchObject({ timeoutMs: 5 });
  });

  it.each([
    ['a token that is no text', () => sdk.getToken(), 'Data_getToken_RES', { a: 1 }, '0'],
    ['traders that are no list', () => sdk.getTraderList(), 'Data_getTraderList_RES', 'a', '0'],
    ['traders that are no texts', () => sdk.getTraderList(), 'Data_getTraderList_RES', ['a', 1], '0'],
    [
      'an account that is no object',
      () => sdk.getFundAccountList({ fundProp: 0 }),
      'Data_getFundAccountList_RES',
      ['1'],
      '0',
    ],
    [
      'an account without name',
      () => sdk.getFundAccountList({ fundProp: 0 }),
      'Data_getFundAccountList_RES',
      [{ fundAccount: '1' }],
      '0',
    ],
    ['a code that is no text', () => sdk.getToken(), 'Data_getToken_RES', 'T', 0],
    ['a quote that is a list', () => sdk.getCurrentTick({ symbol: 's' }), 'Data_getCurrentTick_RES', [], '0'],
  ])('reject %s', async (_, call, event, data, code) => {
    const answer = call();
    bridge.reply(event, bridge.uuid(0), data, code as string);
    await expect(answer).rejects.toBeInstanceOf(UnexpectedReplyError);
  });

  const without = (record: object, key: string) =>
    Object.fromEntries(Object.entries(record).filter(([k]) => k !== key));
  it.each([
    [
      'resultData.entrustInfoList[1].side is no object',
      () => sdk.getEntrustList(page),
      'Data_getEntrustList_RES',
      { totalSize: 2, size: 2, entrustInfoList: [order, { ...order, side: '买入' }] },
    ],
    [
      'resultData.executionInfoList[0].execId.userRole is missing',
      () => sdk.getExecutionList(page),
      'Data_getExecutionList_RES',
      { totalSize: 1, size: 1, executionInfoList: [{ ...execution, execId: { displayRole: '' } }] },
    ],
    [
      'resultData.totalSize is no number',
      () => sdk.getEntrustList(page),
      'Data_getEntrustList_RES',
      { totalSize: '2', size: 0, entrustInfoList: [] },
    ],
    [
      'resultData[0].cost is missing',
      () => sdk.getPositionList({ fundAccounts: ['1'], symbol: '' }),
      'Data_getPositionList_RES',
      [without(position, 'cost')],
    ],
    [
      'resultData[0].minQty is no text',
      () => sdk.getSymbolDetail({ symbols: ['s'] }),
      'Data_getSymbolDetail_RES',
      [{ ...detail, minQty: 100 }],
    ],
    [
      'resultData[0].priceLimitType is neither true nor false',
      () => sdk.getSymbolDetail({ symbols: ['s'] }),
      'Data_getSymbolDetail_RES',
      [{ ...detail, priceLimitType: 0 }],
    ],
    [
      'resultData[0].profit is no text',
      () => sdk.getAsset({ fundAccounts: ['1'] }),
      'Data_getAsset_RES',
      [{ ...asset, profit: 0 }],
    ],
    ['resultData is no list', () => sdk.getSymbolList({ symbolFilter: [] }), 'Data_getSymbolList_RES', { symbol: 's' }],
  ])('say where the answer differs: %s', async (message, call, event, data) => {
    const answer = call();
    bridge.reply(event, bridge.uuid(0), data);
    await expect(answer).rejects.toThrow(`unexpected reply: ${message}`);
  });

  it('are all call errors with their own name', async () => {
    const answer = sdk.getToken();
    bridge.emit('Data_getToken_RES', '');
    const error = await answer.catch((reason: unknown) => reason);
    expect(error).toBeInstanceOf(CallError);
    expect((error as Error).name).toBe('RejectedCallError');
  });

  it('of the bridge itself reject the call', async () => {
    bridge.answerAtOnce = () => {
      throw new Error('no terminal');
    };
    await expect(sdk.getToken()).rejects.toThrow('no terminal');
  });
});

describe('arguments that would not arrive', () => {
  it.each([
    [1.5, 'getFundAccountList: fundProp must be an integer'],
    [Number.NaN, 'getFundAccountList: fundProp must be an integer'],
    ['1', 'getFundAccountList: fundProp must be an integer'],
    [undefined, 'getFundAccountList: fundProp must be an integer'],
    [2 ** 31, 'getFundAccountList: fundProp must fit 32 bits'],
  ])('%s is refused before anything is sent', async (fundProp, message) => {
    await expect(sdk.getFundAccountList({ fundProp: fundProp as number })).rejects.toThrow(message);
    expect(bridge.calls).toEqual([]);
  });

  it('a text that is missing is refused', async () => {
    await expect(sdk.getOPStation({ first: 'A' } as never)).rejects.toThrow('getOPStation: second must be a string');
    expect(bridge.calls).toEqual([]);
  });

  const lists: [string, () => Promise<unknown>][] = [
    ['getAsset: fundAccounts must be a list of strings', () => sdk.getAsset({ fundAccounts: '1' as never })],
    ['getAsset: fundAccounts must be a list of strings', () => sdk.getAsset({ fundAccounts: [1] as never })],
    ['getAsset: fundAccounts must not be empty', () => sdk.getAsset({ fundAccounts: [] })],
    ['getSymbolDetail: symbols must have no comma in an entry', () => sdk.getSymbolDetail({ symbols: ['a,b'] })],
    ['getEntrustList: filter must be an object', () => sdk.getEntrustList({ ...page, filter: '{}' as never })],
    ['getEntrustList: filter must be an object', () => sdk.getEntrustList({ ...page, filter: [] as never })],
    ['getEntrustList: filter must be an object', () => sdk.getEntrustList({ ...page, filter: null as never })],
    [
      'getEntrustList: filter has the unknown key "account"',
      () => sdk.getEntrustList({ ...page, filter: { account: ['1'] } as never }),
    ],
    [
      'getExecutionList: filter has the unknown key "constructor"',
      () => sdk.getExecutionList({ ...page, filter: { constructor: ['1'] } as never }),
    ],
    [
      'getEntrustList: filter "symbol" must be a list of strings',
      () => sdk.getEntrustList({ ...page, filter: { symbol: 's' } as never }),
    ],
    ['getSymbolList: symbolFilter must be a list', () => sdk.getSymbolList({ symbolFilter: {} as never })],
    [
      'getSymbolList: symbolFilter "securityType" must be a string',
      () => sdk.getSymbolList({ symbolFilter: [{ securityType: ['a'] as never }] }),
    ],
    ['subscribe: symbols must not be empty', () => sdk.subscribe({ symbols: [] })],
    ['cancelOrders: orderIds must have no comma in an entry', () => sdk.cancelOrders({ orderIds: ['1,2'] })],
    [
      'insertOrderList: orders must be a list',
      () => sdk.insertOrderList({ fundAccount: '', orderTag: '', orders: '[]' as never }),
    ],
    [
      'insertOrderList: orders has the unknown key "side"',
      () => sdk.insertOrderList({ fundAccount: '', orderTag: '', orders: [{ ...line, side: 'Buy' } as never] }),
    ],
    [
      'insertOrderList: orders "qty" must be a string',
      () => sdk.insertOrderList({ fundAccount: '', orderTag: '', orders: [line, { ...line, qty: 100 } as never] }),
    ],
    [
      'insertOrderList: orders "price" must be a string',
      () => sdk.insertOrderList({ fundAccount: '', orderTag: '', orders: [{ ...line, price: undefined } as never] }),
    ],
    [
      'stopStrategy: extension must be JSON',
      () => sdk.stopStrategy({ strategyID: 'S1', extension: undefined as never }),
    ],
    [
      'getSymbolListWithDetail: symbolFilter "securityPost" must be a list of strings',
      () => sdk.getSymbolListWithDetail({ symbolFilter: [{ securityPost: 'a' as never }] }),
    ],
  ];
  it.each(lists)('%s', async (message, call) => {
    await expect(call()).rejects.toThrow(message);
    expect(bridge.calls).toEqual([]);
  });

  it('a condition that is undefined is none', async () => {
    const answer = sdk.getEntrustList({ ...page, filter: { symbol: undefined, trader: ['t'] } as never });
    expect(bridge.calls[0]!.args[1]).toBe('{"trader":["t"]}');
    bridge.reply('Data_getEntrustList_RES', bridge.uuid(0), { totalSize: 0, size: 0, entrustInfoList: [] });
    await answer;
  });

  // Never run: the type checker is the test.
  void (() => {
    // @ts-expect-error there is no such condition
    void sdk.getEntrustList({ ...page, filter: { status: ['1'] } });
    // @ts-expect-error an order has no execution identifier
    void sdk.getEntrustList(page).then(({ entrustInfoList }) => entrustInfoList[0]!.execId);
    // @ts-expect-error an argument is needed
    void sdk.getFundAccountList();
    // @ts-expect-error the reading is integer
    void sdk.getFundAccountList({ fundProp: '1' });
    // @ts-expect-error quantities travel as texts
    void sdk.insertOrder({ ...order1, qty: 100 });
    // @ts-expect-error an order may have no number
    void sdk.insertOrder(order1).then(({ orderID }) => orderID.length);
    // @ts-expect-error cancels spell it orderId
    void sdk.cancelOrders({ orderIds: ['1'] }).then(([first]) => first!.orderID);
    // @ts-expect-error there is no such parameter
    void sdk.getToken({ first: 'A' });
    // @ts-expect-error the answer is a text
    void sdk.getToken().then((token: number) => token);
  });

  it('the largest integers pass', async () => {
    const answers = [-(2 ** 31) + 1, 2 ** 31 - 1].map((fundProp) => sdk.getFundAccountList({ fundProp }));
    bridge.calls.forEach((_, index) => bridge.reply('Data_getFundAccountList_RES', bridge.uuid(index), []));
    expect(await Promise.all(answers)).toEqual([[], []]);
  });
});

describe('close', () => {
  it('rejects what waits, refuses what comes and stops listening', async () => {
    const waiting = sdk.getToken();
    sdk.close();
    await expect(waiting).rejects.toBeInstanceOf(ClosedError);
    await expect(sdk.getToken()).rejects.toBeInstanceOf(ClosedError);
    expect(bridge.calls).toHaveLength(1);
    expect([...bridge.listeners.values()].every((set) => set.size === 0)).toBe(true);
  });

  it('may be called twice', () => {
    sdk.close();
    sdk.close();
  });
});
