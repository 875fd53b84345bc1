import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { connect, type Connection } from '../src/index.js';
import { FakeBridge } from './fakeBridge.js';
import { page, line, order1 } from './samples.js';

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

describe('unusable arguments', () => {
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

  it('a missing text is refused', async () => {
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

  it('an undefined condition sets no condition', async () => {
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

  it('the largest integers are accepted', async () => {
    const answers = [-(2 ** 31) + 1, 2 ** 31 - 1].map((fundProp) => sdk.getFundAccountList({ fundProp }));
    bridge.calls.forEach((_, index) => bridge.reply('Data_getFundAccountList_RES', bridge.uuid(index), []));
    expect(await Promise.all(answers)).toEqual([[], []]);
  });
});
