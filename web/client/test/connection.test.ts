import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  CallError,
  ClosedError,
  connect,
  FailedCallError,
  NotSentError,
  RejectedCallError,
  TimeoutError,
  UnexpectedReplyError,
  type Connection,
} from '../src/index.js';
import { FakeBridge } from './fakeBridge.js';
import { asset, detail, execution, order, page, position } from './samples.js';

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

describe('pairing', () => {
  it('gives each call its own answer in any order', async () => {
    const [first, second] = [sdk.getToken(), sdk.getToken()];
    expect(bridge.uuid(0)).not.toBe(bridge.uuid(1));
    bridge.reply('Data_getToken_RES', bridge.uuid(1), 'two');
    bridge.reply('Data_getToken_RES', bridge.uuid(0), 'one');
    expect(await Promise.all([first, second])).toEqual(['one', 'two']);
    expect(unpaired).toEqual([]);
  });

  it('accepts an answer that comes before the call returns', async () => {
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

  it('does not accept the answer of another method', async () => {
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

  it('reject a deferred call only when no other call waits', async () => {
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

  it('are all CallErrors with their own name', async () => {
    const answer = sdk.getToken();
    bridge.emit('Data_getToken_RES', '');
    const error = await answer.catch((reason: unknown) => reason);
    expect(error).toBeInstanceOf(CallError);
    expect((error as Error).name).toBe('RejectedCallError');
  });

  it('of the bridge itself mean that the call was not sent', async () => {
    const cause = new Error('no terminal');
    bridge.answerAtOnce = () => {
      throw cause;
    };
    const answer = sdk.getToken();
    await expect(answer).rejects.toBeInstanceOf(NotSentError);
    await expect(answer).rejects.toMatchObject({ cause, method: 'Data_getToken_REQ' });
  });
});

describe('close', () => {
  it('rejects waiting and later calls and stops listening', async () => {
    const waiting = sdk.getToken();
    sdk.close();
    await expect(waiting).rejects.toBeInstanceOf(ClosedError);
    await expect(sdk.getToken()).rejects.toBeInstanceOf(NotSentError);
    expect(sdk.state).toBe('closed');
    expect(bridge.calls).toHaveLength(1);
    expect([...bridge.listeners.values()].every((set) => set.size === 0)).toBe(true);
  });

  it('may be called twice', () => {
    sdk.close();
    sdk.close();
  });
});
