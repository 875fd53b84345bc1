import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  ClosedError,
  connect,
  FailedCallError,
  NotSentError,
  RejectedCallError,
  TimeoutError,
  type Connection,
} from '../src/index.js';
import { ScriptedBridge } from '../src/testing/index.js';
import { asset, classes, filter, line, order, order1, placed, strategy } from './samples.js';

let bridge: ScriptedBridge;
let sdk: Connection;

beforeEach(() => {
  vi.useFakeTimers();
  bridge = new ScriptedBridge();
  sdk = connect(bridge, { timeoutMs: 1000 });
});

afterEach(() => {
  sdk.close();
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
});

describe('an answer', () => {
  it('is a value, under the name of the client or of the wire', async () => {
    bridge.answer('getToken', 'T').answer('Data_getTraderList_REQ', ['a']);
    expect(await Promise.all([sdk.getToken(), sdk.getToken(), sdk.getTraderList()])).toEqual(['T', 'T', ['a']]);
  });

  it('may depend on the arguments, by their names', async () => {
    bridge.answer('getSetting', ({ key }) => `value of ${key}`);
    expect(await sdk.getSetting({ key: 'k' })).toBe('value of k');
  });

  it('may come later', async () => {
    bridge.answer('getToken', 'T', { afterMs: 500 });
    const heard = vi.fn();
    void sdk.getToken().then(heard);
    await vi.advanceTimersByTimeAsync(499);
    expect(heard).not.toHaveBeenCalled();
    await vi.advanceTimersByTimeAsync(1);
    expect(heard).toHaveBeenCalledWith('T');
  });

  it('may be given by the test, and then belongs to the next call only', async () => {
    bridge.answer('getToken', 'the others');
    const [one, two] = [bridge.defer('getToken'), bridge.defer('getToken')];
    const answers = [sdk.getToken(), sdk.getToken(), sdk.getToken()];
    expect((await one.called).uuid).not.toBe((await two.called).uuid);
    two.answer('two');
    one.answer('one');
    expect(await Promise.all(answers)).toEqual(['one', 'two', 'the others']);
  });

  it('cannot be given before the call', () => {
    expect(() => bridge.defer('getToken').answer('T')).toThrow('the page has not called getToken yet');
  });

  it('may be a refusal, with the terminal’s reason and data', async () => {
    bridge.refuse('getToken', { msg: 'no', resultData: [1] });
    const answer = sdk.getToken();
    await expect(answer).rejects.toBeInstanceOf(FailedCallError);
    await expect(answer).rejects.toMatchObject({ code: '-1', msg: 'no', resultData: [1] });
    bridge.refuse('insertOrder', ({ args }) => ({ msg: '资金不足', resultData: { ...placed, ...args } }));
    expect(await sdk.insertOrder(order1)).toMatchObject({ outcome: 'refused', reason: '资金不足', orderID: 'O1' });
    const later = bridge.defer('getLoginTrader');
    const other = sdk.getLoginTrader();
    later.refuse({ msg: 'no' });
    await expect(other).rejects.toBeInstanceOf(FailedCallError);
  });

  it('may be the empty reply', async () => {
    bridge.answerEmpty('getToken');
    await expect(sdk.getToken()).rejects.toBeInstanceOf(RejectedCallError);
    const later = bridge.defer('getLoginTrader');
    const answer = sdk.getLoginTrader();
    later.answerEmpty();
    await expect(answer).rejects.toBeInstanceOf(RejectedCallError);
  });

  it('may be missing', async () => {
    bridge.ignore('getToken');
    const late = expect(sdk.getToken()).rejects.toBeInstanceOf(TimeoutError);
    await vi.advanceTimersByTimeAsync(1000);
    await late;
  });

  it('that the test forgot lets the call fail at once', async () => {
    await expect(sdk.getToken()).rejects.toThrow('the test says nothing about getToken');
    await expect(sdk.getToken()).rejects.toBeInstanceOf(NotSentError);
  });

  it('to a subscription is there without a word of the test', async () => {
    await sdk.subscribe({ symbols: ['s'] });
    await sdk.unsubscribe({ symbols: ['s'] });
    await sdk.unsubscribeAll();
    await sdk.subStrategyMsg({ customMsgID: 'S1', subscribed: true });
    await sdk.sendCustomInfo({ customMsgID: 'S1', message: 'm' });
    expect(bridge.calls).toHaveLength(5);
  });

  it('must be of a call that there is', () => {
    expect(() => bridge.ignore('getEverything')).toThrow('there is no call "getEverything"');
  });
});

describe('a recorded call', () => {
  it('has the arguments as the page passed them', async () => {
    const calls: [string, Record<string, unknown>][] = [
      ['getToken', {}],
      ['getAsset', { fundAccounts: ['1', '2'] }],
      ['getSymbolList', { symbolFilter: classes }],
      ['getEntrustList', { filter, start: 0, count: 20 }],
      ['insertOrderList', { fundAccount: 'f', orderTag: 't', orders: [line, line] }],
      ['stopStrategy', { strategyID: 'S1', extension: { a: 1 } }],
      ['subStrategyMsg', { customMsgID: 'S1', subscribed: false }],
    ];
    for (const [call, args] of calls) {
      bridge.ignore(call);
      void (sdk[call as 'getToken'] as (values: unknown) => Promise<unknown>)(args).catch(() => {});
    }
    expect(bridge.calls.map(({ call, args }) => [call, args])).toEqual(calls);
    expect(bridge.callsOf('Data_getAsset_REQ')).toEqual([bridge.calls[1]]);
  });
});

describe('a push', () => {
  it('is heard under the name of the client or of the wire, as on the wire', () => {
    const heard = vi.fn();
    bridge.addEventListener('on_entrustUpdate', heard);
    bridge.push('orders', [order]);
    bridge.push('on_entrustUpdate', JSON.stringify([order]));
    expect(heard.mock.calls).toEqual([[JSON.stringify([order])], [JSON.stringify([order])]]);
  });

  it('can be of every kind', () => {
    const heard = vi.fn();
    for (const push of ['asset', 'ordersLoaded', 'strategyMessage', 'strategyStatus'] as const)
      sdk.on(push, (...args: unknown[]) => heard(push, ...args));
    bridge.push('asset', asset);
    bridge.push('asset');
    bridge.push('ordersLoaded');
    bridge.push('strategyMessage', 'S1', 'm');
    bridge.push('strategyStatus', 'S1', 'Running');
    expect(heard.mock.calls).toEqual([
      ['asset', asset],
      ['asset', undefined],
      ['ordersLoaded'],
      ['strategyMessage', 'S1', 'm'],
      ['strategyStatus', 'S1', 'Running'],
    ]);
    expect(() => bridge.push('nothing' as 'tick')).toThrow('there is no push "nothing"');
  });
});

describe('a connection', () => {
  it('can break, and open again', async () => {
    bridge.answer('getToken', 'T');
    const late = bridge.defer('queryStrategyStatus');
    const waiting = sdk.queryStrategyStatus({ strategyID: 'S1', extension: '' });
    bridge.close({ willReconnect: true });
    await expect(waiting).rejects.toBeInstanceOf(ClosedError);
    const held = sdk.getToken();
    bridge.open();
    expect(await held).toBe('T');
    const again = bridge.defer('queryStrategyStatus');
    const answer = sdk.queryStrategyStatus({ strategyID: 'S1', extension: '' });
    late.answer({ ...strategy, strategyID: 'of the old connection' });
    again.answer(strategy);
    expect(await answer).toEqual(strategy);
  });

  it('takes no calls while it is not open', () => {
    bridge.close();
    expect(() => bridge.invokeMethod('Data_getToken_REQ', 'u')).toThrow('the connection is closed');
    expect(bridge.calls).toEqual([]);
  });
});
