import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  ClosedError,
  connect,
  FailedCallError,
  NotSentError,
  OutcomeUnknownError,
  TimeoutError,
  UnexpectedReplyError,
  type CallOptions,
  type Connection,
  type OrderOutcome,
  type PlacedOrder,
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

const strategy = { filePath: 'p', language: 1, fundAccounts: ['f'], basicParam: {}, extension: '' };
const list = { fundAccount: 'f', orderTag: '', orders: [line] };

const commands: [string, (options?: CallOptions) => Promise<unknown>, string][] = [
  ['an order', (options) => sdk.insertOrder(order, options), 'Trade_insertOrder_RES'],
  ['a list of orders', (options) => sdk.insertOrderList(list, options), 'Trade_insertOrderList_RES'],
  ['a cancel', (options) => sdk.cancelOrders({ orderIds: ['1'] }, options), 'Trade_reqCancelOrder_RES'],
  ['a start of a strategy', (options) => sdk.startStrategy(strategy, options), 'Vlx_startStrategy_RES'],
  [
    'a stop of a strategy',
    (options) => sdk.stopStrategy({ strategyID: 'S', extension: '' }, options),
    'Vlx_stopStrategy_RES',
  ],
];

/** The error that says that nobody knows what became of the call: of an outcome, or of a rejected promise. */
async function unknownError(answer: Promise<unknown>): Promise<OutcomeUnknownError> {
  const settled = await answer.catch((error: unknown) => error);
  if (settled instanceof OutcomeUnknownError) return settled;
  const [outcome] = [settled].flat() as OrderOutcome[];
  if (outcome?.outcome !== 'unknown') throw new Error(`no unknown outcome: ${JSON.stringify(settled)}`);
  return outcome.error as OutcomeUnknownError;
}

describe.each(commands)('%s', (_, send, event) => {
  it('without an answer in time has an unknown outcome, and is not sent again', async () => {
    const outcome = unknownError(send());
    await vi.advanceTimersByTimeAsync(1000);
    const error = await outcome;
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
    const outcome = unknownError(send()).finally(() => (settled = true));
    bridge.emit(event, '');
    await vi.advanceTimersByTimeAsync(999);
    expect(settled).toBe(false);
    expect(unpaired).toEqual([[event, '']]);
    await vi.advanceTimersByTimeAsync(1);
    expect((await outcome).cause).toBeInstanceOf(TimeoutError);
  });

  it('under way when the connection closes has an unknown outcome, and is not sent again', async () => {
    const outcome = unknownError(send());
    sdk.close();
    expect(await outcome).toBeInstanceOf(OutcomeUnknownError);
    expect((await outcome).cause).toBeInstanceOf(ClosedError);
    expect(bridge.calls).toHaveLength(1);
  });

  it('whose page stops waiting has an unknown outcome, and is not sent again', async () => {
    const waiting = new AbortController();
    const outcome = unknownError(send({ signal: waiting.signal }));
    const reason = new Error('the user went elsewhere');
    waiting.abort(reason);
    expect((await outcome).cause).toBe(reason);
    expect((await outcome).message).toContain('the page stopped waiting');
    expect(bridge.calls).toHaveLength(1);
  });

  it('is not sent when its signal is aborted already, and rejects with the reason', async () => {
    const reason = new Error('too late');
    await expect(send({ signal: AbortSignal.abort(reason) })).rejects.toBe(reason);
    expect(bridge.calls).toEqual([]);
  });

  it('after the close is not sent at all, and says so', async () => {
    sdk.close();
    await expect(send()).rejects.toBeInstanceOf(NotSentError);
    expect(bridge.calls).toEqual([]);
  });

  it('that the bridge does not take says that it was not sent', async () => {
    bridge.answerAtOnce = () => {
      throw new Error('no terminal');
    };
    await expect(send()).rejects.toBeInstanceOf(NotSentError);
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
  const placed = { ...echo, orderID: '1' };

  it('that is placed twice is sent twice, each time under an identifier of its own', async () => {
    const answers = [sdk.insertOrder(order), sdk.insertOrder(order)];
    expect(bridge.calls).toHaveLength(2);
    expect(bridge.uuid(0)).not.toBe(bridge.uuid(1));
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), { ...echo, orderID: '1' });
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(1), { ...echo, orderID: '2' });
    expect(await Promise.all(answers)).toMatchObject([{ orderID: '1' }, { orderID: '2' }]);
  });

  /** The reply, and what it says about the order. */
  const replies: [string, [resultData: unknown, code?: string, msg?: string], OrderOutcome][] = [
    ['accepted', [placed], { outcome: 'accepted', orderID: '1', order: placed }],
    [
      'refused, and the refusal is kept',
      [placed, '-1', '资金不足'],
      { outcome: 'refused', reason: '资金不足', orderID: '1', order: placed },
    ],
    [
      'refused as a request',
      [echo, '-1', '证券代码不存在'],
      { outcome: 'refused', reason: '证券代码不存在', order: echo as PlacedOrder },
    ],
    [
      'refused for an unknown account',
      [undefined, '-1', '资产账号获取错误'],
      { outcome: 'refused', reason: '资产账号获取错误' },
    ],
    ['refused without a reason', [echo], { outcome: 'refusedWithoutReason', order: echo as PlacedOrder }],
    [
      'refused with a number, but without a reason',
      [placed, '-1', ''],
      { outcome: 'refusedWithoutReason', order: placed },
    ],
  ];
  it.each(replies)('can be %s', async (_, reply, outcome) => {
    const answer = sdk.insertOrder(order);
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), ...reply);
    expect(await answer).toEqual(outcome);
  });

  const doubtful: [string, [resultData: unknown, code?: string, msg?: string], RegExp][] = [
    ['an unexpected form', [{ orderID: 1 }], /orderID is no text/],
    ['success, and an empty number', [{ ...echo, orderID: '' }], /no number/],
    ['a code that is neither success nor failure', [placed, '7', '待报'], /待报/],
  ];
  it.each(doubtful)('may have been placed when the reply has %s', async (_, reply, message) => {
    const answer = sdk.insertOrder({ ...order, orderTag: 'mine' });
    bridge.reply('Trade_insertOrder_RES', bridge.uuid(0), ...reply);
    const error = expect.objectContaining({ message: expect.stringMatching(message) });
    expect(await answer).toEqual({ outcome: 'unknown', orderTag: 'mine', error });
    expect(bridge.calls).toHaveLength(1);
  });
});

describe('a list of orders', () => {
  const send = () => sdk.insertOrderList({ fundAccount: 'f', orderTag: 'mine', orders: [line, line] });
  const listed = (orderID: string, code: string, msg: string) => ({ ...line, orderID, code, msg });

  it('gives each order its own outcome', async () => {
    const answer = send();
    const orders = [listed('1', '0', ''), listed('2', '-1', '资金不足')];
    bridge.reply('Trade_insertOrderList_RES', bridge.uuid(0), orders);
    expect(await answer).toEqual([
      { outcome: 'accepted', orderID: '1', order: orders[0] },
      { outcome: 'refused', reason: '资金不足', orderID: '2', order: orders[1] },
    ]);
  });

  it('has unknown outcomes for the orders whose code is neither success nor failure', async () => {
    const answer = send();
    const orders = [listed('1', '0', ''), listed('2', '', '')];
    bridge.reply('Trade_insertOrderList_RES', bridge.uuid(0), orders);
    expect(await answer).toEqual([
      { outcome: 'accepted', orderID: '1', order: orders[0] },
      { outcome: 'unknown', orderTag: 'mine', error: expect.any(UnexpectedReplyError) },
    ]);
  });

  it.each([
    ['资产账号获取错误', { outcome: 'refused', reason: '资产账号获取错误' }],
    ['', { outcome: 'refusedWithoutReason' }],
  ])('that is refused as a whole with the reason "%s" has no order', async (msg, outcome) => {
    const answer = send();
    bridge.reply('Trade_insertOrderList_RES', bridge.uuid(0), [], '-1', msg);
    expect(await answer).toEqual([outcome, outcome]);
  });

  it('with fewer outcomes than orders has unknown outcomes, because nobody knows which is whose', async () => {
    const answer = send();
    bridge.reply('Trade_insertOrderList_RES', bridge.uuid(0), [listed('1', '0', '')]);
    const unknown = { outcome: 'unknown', orderTag: 'mine', error: expect.any(UnexpectedReplyError) };
    expect(await answer).toEqual([unknown, unknown]);
  });

  it('without an answer has unknown outcomes only', async () => {
    const answer = send();
    await vi.advanceTimersByTimeAsync(1000);
    const unknown = { outcome: 'unknown', orderTag: 'mine', error: expect.any(OutcomeUnknownError) };
    expect(await answer).toEqual([unknown, unknown]);
  });

  it('is the list at the time of the call', async () => {
    const orders = [line, line];
    const answer = sdk.insertOrderList({ fundAccount: 'f', orderTag: 'mine', orders });
    orders.pop();
    bridge.reply('Trade_insertOrderList_RES', bridge.uuid(0), [listed('1', '0', ''), listed('2', '0', '')]);
    expect(await answer).toHaveLength(2);
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
