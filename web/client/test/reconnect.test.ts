import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  ClosedError,
  connect,
  NoBridgeError,
  NotSentError,
  OutcomeUnknownError,
  type CallBridge,
  type Connection,
} from '../src/index.js';
import { ScriptedBridge } from '../src/testing/index.js';
import { order1 } from './samples.js';

let bridge: ScriptedBridge;
let sdk: Connection;

beforeEach(() => {
  vi.useFakeTimers();
  bridge = new ScriptedBridge('connecting').answer('getToken', 'T').answer('getLoginTrader', 'trader');
  sdk = connect(bridge, { timeoutMs: 1000 });
});

afterEach(() => {
  sdk.close();
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
});

const made = () => bridge.calls.map(({ call }) => call);

describe('without a bridge', () => {
  it('there is one clear error', () => {
    expect(() => connect()).toThrow(NoBridgeError);
    expect(() => connect({} as CallBridge)).toThrow('There is no window.CallBridge here');
  });

  it('given, that of the window is used', () => {
    vi.stubGlobal('window', { CallBridge: new ScriptedBridge() });
    expect(connect().state).toBe('open');
    vi.unstubAllGlobals();
  });
});

describe('while connecting', () => {
  it('calls are held back, and sent in order when the connection opens', async () => {
    const answers = [sdk.getLoginTrader(), sdk.getToken(), sdk.sendCustomInfo({ customMsgID: 'S', message: 'm' })];
    expect([sdk.state, made()]).toEqual(['connecting', []]);
    bridge.open();
    expect([sdk.state, made()]).toEqual(['open', ['getLoginTrader', 'getToken', 'sendCustomInfo']]);
    expect(await Promise.all(answers)).toEqual(['trader', 'T', undefined]);
  });

  it('a call whose time is over is never sent, an order too', async () => {
    const answers = [sdk.getToken({}, { timeoutMs: 10 }), sdk.insertOrder(order1, { timeoutMs: 10 })];
    const refused = answers.map((answer) => expect(answer).rejects.toBeInstanceOf(NotSentError));
    await vi.advanceTimersByTimeAsync(10);
    await Promise.all(refused);
    bridge.open();
    expect(bridge.calls).toEqual([]);
  });

  it('a call whose time is over is not sent either when its timer is late', async () => {
    const answer = sdk.insertOrder(order1, { timeoutMs: 10 });
    const refused = expect(answer).rejects.toThrow('not sent: not connected within 10 ms');
    vi.spyOn(performance, 'now').mockReturnValue(performance.now() + 10); // the machine slept
    bridge.open();
    vi.restoreAllMocks();
    await refused;
    expect(bridge.calls).toEqual([]);
  });

  it('a call that is aborted is never sent, and rejects with the reason', async () => {
    const [reason, leaving] = [new Error('left'), new AbortController()];
    const answers = [sdk.getToken({}, leaving), sdk.insertOrder(order1, leaving)];
    leaving.abort(reason);
    for (const answer of answers) await expect(answer).rejects.toBe(reason);
    bridge.open();
    expect(bridge.calls).toEqual([]);
  });

  it('calls wait on when an attempt fails and another one follows', async () => {
    const answer = sdk.getToken();
    bridge.close({ willReconnect: true });
    bridge.open();
    expect(await answer).toBe('T');
  });

  it('calls are rejected when the bridge gives up', async () => {
    const answers = [sdk.getToken(), sdk.insertOrder(order1)];
    bridge.close();
    for (const answer of answers) await expect(answer).rejects.toBeInstanceOf(NotSentError);
    expect(sdk.state).toBe('closed');
  });
});

describe('a break', () => {
  beforeEach(() => bridge.open());

  it.each([true, false])('rejects at once what was sent (will reconnect: %s)', async (willReconnect) => {
    bridge.ignore('getToken').ignore('cancelOrders').ignore('insertOrder');
    const [question, cancel] = [sdk.getToken(), sdk.cancelOrders({ orderIds: ['1'] })];
    const order = sdk.insertOrder(order1);
    bridge.close({ willReconnect });
    await expect(question).rejects.toBeInstanceOf(ClosedError);
    await expect(cancel).rejects.toBeInstanceOf(OutcomeUnknownError);
    expect(await order).toMatchObject({
      outcome: 'unknown',
      orderTag: 'tag',
      error: { cause: expect.any(ClosedError) },
    });
  });

  it('for good lets every new call fail at once', async () => {
    bridge.close();
    await expect(sdk.getToken()).rejects.toBeInstanceOf(NotSentError);
    await expect(sdk.insertOrder(order1)).rejects.toBeInstanceOf(NotSentError);
    await expect(sdk.subscribe({ symbols: ['a'] })).rejects.toBeInstanceOf(NotSentError);
    expect(bridge.calls).toEqual([]);
  });

  it('holds new calls back until the next connection, and repeats none of the old ones', async () => {
    bridge.ignore('insertOrder');
    const order = sdk.insertOrder(order1);
    bridge.close({ willReconnect: true });
    const answer = sdk.getToken();
    bridge.open();
    expect(await answer).toBe('T');
    expect(await order).toMatchObject({ outcome: 'unknown' });
    expect(made()).toEqual(['insertOrder', 'getToken']);
  });

  it('is told to the page, and so is each opening', () => {
    const [onOpen, onClose] = [vi.fn(), vi.fn()];
    const [stopOpen, stopClose] = [sdk.onOpen(onOpen), sdk.onClose(onClose)];
    bridge.close({ code: 1001, reason: 'going away', willReconnect: true });
    bridge.open();
    expect(onClose.mock.calls).toEqual([[{ code: 1001, reason: 'going away', willReconnect: true }]]);
    expect(onOpen.mock.calls).toEqual([[{ again: true, resubscribed: [] }]]);
    stopOpen();
    stopClose();
    bridge.close();
    expect([onOpen, onClose].map(({ mock }) => mock.calls.length)).toEqual([1, 1]);
  });
});

describe('the first opening', () => {
  it('is told as such', () => {
    const onOpen = vi.fn();
    sdk.onOpen(onOpen);
    bridge.open();
    bridge.open(); // told twice by the bridge
    expect(onOpen.mock.calls).toEqual([[{ again: false, resubscribed: [] }]]);
  });
});

describe('a question', () => {
  it('that is aborted rejects with the reason of its signal, and its answer is unpaired', async () => {
    bridge.open();
    const later = bridge.defer('getToken');
    const leaving = new AbortController();
    const answer = sdk.getToken({}, { signal: leaving.signal });
    leaving.abort();
    await expect(answer).rejects.toBe(leaving.signal.reason);
    later.answer('T');
  });

  it('leaves nothing behind at a signal that lives longer', async () => {
    bridge.open();
    const { signal } = new AbortController();
    const listeners = new Set<unknown>();
    vi.spyOn(signal, 'addEventListener').mockImplementation((_, listener) => void listeners.add(listener));
    vi.spyOn(signal, 'removeEventListener').mockImplementation((_, listener) => void listeners.delete(listener));
    const answer = sdk.getToken({}, { signal });
    await answer;
    const watch = sdk.watchQuotes([], undefined, { signal });
    expect(listeners.size).toBe(1);
    watch.stop();
    expect(listeners.size).toBe(0);
  });

  it('may wait without an end', async () => {
    bridge.open();
    const later = bridge.defer('getToken');
    const answer = sdk.getToken({}, { timeoutMs: Infinity });
    await vi.advanceTimersByTimeAsync(2 ** 32);
    later.answer('T');
    expect(await answer).toBe('T');
  });

  it.each([-1, NaN, 'soon' as never])('cannot wait for %s ms', async (timeoutMs) => {
    await expect(sdk.getToken({}, { timeoutMs })).rejects.toBeInstanceOf(RangeError);
  });
});
