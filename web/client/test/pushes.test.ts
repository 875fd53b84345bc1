import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import {
  assetKeys,
  connect,
  entrustKeys,
  executionKeys,
  NotSentError,
  positionKeys,
  pushes,
  pushEvents,
  type Connection,
  type PushEvent,
  type PushName,
} from '../src/index.js';
import { FakeBridge } from './fakeBridge.js';

let bridge: FakeBridge;
let unreadable: unknown[][];
let sdk: Connection;

beforeEach(() => {
  vi.useFakeTimers();
  bridge = new FakeBridge();
  unreadable = [];
  sdk = connect(bridge, { onUnreadable: (event, args, { message }) => unreadable.push([event, args, message]) });
});

afterEach(() => {
  vi.useRealTimers();
});

const cells = (keys: readonly string[]) =>
  Object.fromEntries(keys.map((key) => [key, { displayRole: '', userRole: 1 }]));
const order = cells(entrustKeys);
const execution = cells(executionKeys);
const position = { ...Object.fromEntries(positionKeys.map((key) => [key, null])), stockInterest: 0 };
const asset = Object.fromEntries(assetKeys.map((key) => [key, '0.00']));

function hear(push: PushEvent | PushName): unknown[][] {
  const heard: unknown[][] = [];
  sdk.on(push, (...args: unknown[]) => void heard.push(args));
  return heard;
}

/** Every push: the arguments of its event, and what the listener gets. */
const table: [PushEvent, unknown[], unknown[]][] = [
  ['on_tickUpdate', ['{"symbol":"s","last":1.5}'], [{ symbol: 's', last: 1.5 }]],
  ['on_AssetUpdate', [JSON.stringify(asset)], [asset]],
  ['on_AssetUpdate', [''], [undefined]],
  ['on_AssetUpdate', ['{}'], [undefined]],
  ['on_entrustUpdate', [JSON.stringify([order, order])], [[order, order]]],
  ['on_entrustUpdate', ['[]'], [[]]],
  ['on_executionUpdate', [JSON.stringify([execution])], [[execution]]],
  ['on_positionUpdate', [JSON.stringify(position)], [position]],
  ['on_orderLoaded', [], []],
  ['on_vlxRcvCustomInfo', ['id', '{"not":"read"}'], ['id', '{"not":"read"}']],
  ['on_vlxStrategyStatusUpdate', ['S1', 'running'], ['S1', 'running']],
];

describe('every push', () => {
  it.each(table)('%s with %j is heard as %j', (push, args, expected) => {
    const heard = hear(push);
    bridge.emit(push, ...args);
    expect(heard).toEqual([expected]);
    expect(unreadable).toEqual([]);
  });

  it('is in the table above', () => {
    expect(new Set(table.map(([push]) => push))).toEqual(new Set(pushEvents));
  });

  const broken: [PushEvent, unknown[], string | RegExp][] = [
    ['on_tickUpdate', [''], /JSON/],
    ['on_tickUpdate', ['[]'], ' is no object'],
    ['on_AssetUpdate', ['{"fundAccount":"f"}'], '.fundAccountName is no text'],
    ['on_AssetUpdate', [], ' is no text'],
    ['on_entrustUpdate', [JSON.stringify(order)], ' is no list'],
    ['on_entrustUpdate', ['[{}]'], '[0].entrustTime is no object'],
    ['on_executionUpdate', [JSON.stringify([order])], '[0].dealTime is no object'],
    ['on_positionUpdate', [''], /JSON/],
    ['on_vlxRcvCustomInfo', ['id'], ' is no text'],
    ['on_vlxStrategyStatusUpdate', ['S1', 1], ' is no text'],
  ];
  it.each(broken)('%s with %j is reported, and not heard', (push, args, reason) => {
    const heard = hear(push);
    bridge.emit(push, ...args);
    expect(heard).toEqual([]);
    expect(unreadable).toEqual([[push, args, typeof reason === 'string' ? reason : expect.stringMatching(reason)]]);
  });

  it('that cannot be read goes to the console without onUnreadable', () => {
    const complain = vi.spyOn(console, 'error').mockImplementation(() => {});
    connect(bridge).on('on_tickUpdate', () => {});
    bridge.emit('on_tickUpdate', '[]');
    expect(complain).toHaveBeenCalledOnce();
    complain.mockRestore();
  });
});

describe('listening', () => {
  it('adds no listener to the bridge while nobody listens', () => {
    expect(bridge.listeners.get('on_tickUpdate')).toBeUndefined();
    const stops = [sdk.on('on_tickUpdate', () => {}), sdk.on('on_tickUpdate', () => {})];
    expect(bridge.listeners.get('on_tickUpdate')!.size).toBe(1);
    stops.forEach((stop) => stop());
    expect(bridge.listeners.get('on_tickUpdate')!.size).toBe(0);
    stops.forEach((stop) => stop()); // again does no harm
    sdk.on('on_tickUpdate', () => {});
    expect(bridge.listeners.get('on_tickUpdate')!.size).toBe(1);
  });

  it('twice with one function calls it twice', () => {
    let heard = 0;
    const listener = () => void ++heard;
    const stop = sdk.on('on_orderLoaded', listener);
    sdk.on('on_orderLoaded', listener);
    bridge.emit('on_orderLoaded');
    expect(heard).toBe(2);
    stop();
    bridge.emit('on_orderLoaded');
    expect(heard).toBe(3);
  });

  it('gives all listeners the same record, read once', () => {
    const heard = [hear('on_tickUpdate'), hear('on_tickUpdate')];
    bridge.emit('on_tickUpdate', '{}');
    expect(heard[0]![0]![0]).toBe(heard[1]![0]![0]);
  });

  it('goes on when another listener throws, and the error is uncaught', () => {
    sdk.on('on_orderLoaded', () => {
      throw new Error('of the page');
    });
    const heard = hear('on_orderLoaded');
    bridge.emit('on_orderLoaded');
    expect(heard).toHaveLength(1);
    expect(() => vi.runAllTimers()).toThrow('of the page');
  });

  it('ended by another listener ends at once', () => {
    let stop = () => {};
    sdk.on('on_orderLoaded', () => stop());
    const heard: unknown[] = [];
    stop = sdk.on('on_orderLoaded', () => void heard.push(1));
    bridge.emit('on_orderLoaded');
    expect(heard).toEqual([]);
  });

  it('ends with the connection, and does not begin after it', () => {
    const before = hear('on_orderLoaded');
    sdk.close();
    const after = hear('on_orderLoaded');
    bridge.emit('on_orderLoaded');
    expect([before, after]).toEqual([[], []]);
    expect(bridge.listeners.get('on_orderLoaded')!.size).toBe(0);
  });

  it('to a push that does not exist throws', () => {
    expect(() => sdk.on('on_callError' as never, () => {})).toThrow('there is no push "on_callError"');
  });
});

describe('calls without reply', () => {
  it('are sent without waiting for a reply', async () => {
    await sdk.sendCustomInfo({ message: 'm', customMsgID: 'id' });
    await sdk.subStrategyMsg({ customMsgID: 'id', subscribed: true });
    await sdk.subStrategyMsg({ customMsgID: 'id', subscribed: false });
    expect(bridge.calls.map(({ method, args: [, ...args] }) => [method, ...args])).toEqual([
      ['Vlx_sendCustomInfo_REQ', 'id', 'm'],
      ['Vlx_subStrategyMsg_REQ', 'id', '1'],
      ['Vlx_subStrategyMsg_REQ', 'id', '0'],
    ]);
    expect(new Set(bridge.calls.map(({ args: [uuid] }) => uuid)).size).toBe(3);
    expect(vi.getTimerCount()).toBe(0);
    expect([...bridge.listeners.keys()].filter((event) => event.includes('CustomInfo'))).toEqual([]);
  });

  it('with unusable arguments are not sent', async () => {
    const unusable = [
      sdk.sendCustomInfo({ customMsgID: 'id', message: 1 as never }),
      sdk.subStrategyMsg({ customMsgID: 'id', subscribed: '1' as never }),
    ];
    await expect(unusable[0]).rejects.toThrow('message must be a string');
    await expect(unusable[1]).rejects.toThrow('subscribed must be');
    expect(bridge.calls).toEqual([]);
  });

  it('are not sent after the close', async () => {
    sdk.close();
    await expect(sdk.sendCustomInfo({ customMsgID: 'id', message: '' })).rejects.toThrow(NotSentError);
    expect(bridge.calls).toEqual([]);
  });
});

describe('the name of a push', () => {
  it.each(Object.entries(pushes))('%s stands for its event', (name, { event }) => {
    const [args, expected] = table.find(([push]) => push === event)!.slice(1) as [unknown[], unknown[]];
    const heard = hear(name as PushName);
    const heardByEvent = hear(event);
    bridge.emit(event, ...args);
    expect(heard).toEqual([expected]);
    expect(heardByEvent).toEqual([expected]);
    expect(bridge.listeners.get(event)!.size).toBe(1);
  });
});
