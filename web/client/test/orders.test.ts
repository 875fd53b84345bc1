import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  ClosedError,
  connect,
  FailedCallError,
  OutcomeUnknownError,
  TimeoutError,
  UnexpectedReplyError,
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
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
});

const line = { symbol: 's', exchange: 'X', orderSide: 'Buy', priceType: 'Limit', price: '1.50', qty: '100' };
const order = { ...line, fundAccount: 'f', orderTag: '' };
const echo = { ...line, fundAccount: 'f' };

const commands: [string, () => Promise<unknown>, string][] = [
  ['an order', () => sdk.insertOrder(order), 'Trade_insertOrder_RES'],
  [
    'a list of orders',
    () => sdk.insertOrderList({ fundAccount: 'f', orderTag: '', orders: [line] }),
    'Trade_insertOrderList_RES',
  ],
  ['a cancel', () => sdk.cancelOrders({ orderIds: ['1'] }), 'Trade_reqCancelOrder_RES'],
  [
    'a start of a strategy',
    () => sdk.startStrategy({ filePath: 'p', language: 1, fundAccounts: ['f'], basicParam: {}, extension: '' }),
    'Vlx_startStrategy_RES',
  ],
  ['a stop of a strategy', () => sdk.stopStrategy({ strategyID: 'S', extension: '' }), 'Vlx_stopStrategy_RES'],
];

describe.each(commands)('%s', (_, send, event) => {
  it('without an answer in time has an unknown outcome, and is not sent again', async () => {
    const answer = send();
    const outcome = answer.catch((error: unknown) => error);
    await vi.advanceTimersByTimeAsync(1000);
    const error = (await outcome) as OutcomeUnknownError;
    expect(error).toBeInstanceOf(OutcomeUnknownError);
    expect(error).not.toBeInstanceOf(FailedCallError);
    expect(error.cause).toBeInstanceOf(TimeoutError);
    expect(error.uuid).toBe(bridge.uuid(0));
    expect(error.message).toContain('outcome unknown: no answer within 1000 ms');
    await vi.advanceTimersByTimeAsync(600_000);
    expect(bridge.calls).toHaveLength(1);
    bridge.reply(event, bridge.uuid(0), echo);
    expect(unpaired).toHaveLength(1); // the late answer is reported as unpaired
  });

  it('is not settled by an empty reply, which belongs to a call made elsewhere', async () => {
    let settled = false;
    const answer = send();
    const outcome = answer.catch((error: unknown) => error).finally(() => (settled = true));
    bridge.emit(event, '');
    await vi.advanceTimersByTimeAsync(999);
    expect(settled).toBe(false);
    expect(unpaired).toEqual([[event, '']]);
    bridge.reply(event, bridge.uuid(0), {}, '-1', 'its own answer');
    expect(await outcome).toMatchObject({ msg: 'its own answer' });
  });

  it('under way when the connection closes has an unknown outcome, and is not sent again', async () => {
    const answer = send();
    sdk.close();
    await expect(answer).rejects.toBeInstanceOf(OutcomeUnknownError);
    await expect(answer).rejects.toMatchObject({ cause: expect.any(ClosedError) });
    expect(bridge.calls).toHaveLength(1);
  });

  it('after the close is not sent at all, and its outcome is known', async () => {
    sdk.close();
    await expect(send()).rejects.toBeInstanceOf(ClosedError);
    expect(bridge.calls).toEqual([]);
  });
});

describe('questions', () => {
  it('that time out reject with a TimeoutError', async () => {
    const answer = sdk.queryStrategyStatus({ strategyID: 'S', extension: '' });
    const outcome = answer.catch((error: unknown) => error);
    await vi.advanceTimersByTimeAsync(1000);
    expect(await outcome).toBeInstanceOf(TimeoutError);
  });
});

describe('an order', () => {
  it('that is placed twice is sent twice, each time under an identifier of its own', async () => {
    const answers = [sdk.insertOrder(order), sdk.insertOrder(order)];
    expect(bridge.calls).toHaveLength(2);
    expect(bridge.uuid(0)).not.toBe(bridge.uuid(1));
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), { ...echo, orderID: '1' });
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(1), { ...echo, orderID: '2' });
    expect((await Promise.all(answers)).map(({ orderID }) => orderID)).toEqual(['1', '2']);
  });

  it('that is refused has the reason and its number', async () => {
    const answer = sdk.insertOrder(order);
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), { ...echo, orderID: '1' }, '-1', '资金不足');
    await expect(answer).rejects.toBeInstanceOf(FailedCallError);
    await expect(answer).rejects.toMatchObject({ msg: '资金不足', resultData: { orderID: '1' } });
  });

  it('that the terminal drops without a reason has no number', async () => {
    const answer = sdk.insertOrder(order);
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), echo);
    expect((await answer).orderID).toBeUndefined();
  });

  it('whose reply has an unexpected form may have been placed', async () => {
    const answer = sdk.insertOrder(order);
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), { orderID: 1 });
    await expect(answer).rejects.toBeInstanceOf(UnexpectedReplyError);
    expect(bridge.calls).toHaveLength(1);
  });

  it('of a list has its own outcome: the call succeeds although an order is refused', async () => {
    const answer = sdk.insertOrderList({ fundAccount: 'f', orderTag: '', orders: [line, line] });
    const outcomes = [
      { ...line, orderID: '1', code: '0', msg: '' },
      { ...line, orderID: '2', code: '-1', msg: '资金不足' },
    ];
    bridge.reply('Trade_insertOrderList_RES', bridge.uuid(0), outcomes);
    expect(await answer).toEqual(outcomes);
  });
});

describe('a permission', () => {
  it.each([
    [0, 0],
    [1, 1],
  ])('is the number %d', async (sent, got) => {
    const answer = sdk.getPermission({ fundAccount: 'f', supportType: 't' });
    bridge.reply('Data_getPermission_RES', bridge.uuid(0), sent);
    expect(await answer).toBe(got);
  });

  it.each([true, '1', 2, null])('%j is not accepted', async (sent) => {
    const answer = sdk.getPermission({ fundAccount: 'f', supportType: 't' });
    bridge.reply('Data_getPermission_RES', bridge.uuid(0), sent);
    await expect(answer).rejects.toBeInstanceOf(UnexpectedReplyError);
  });
});
