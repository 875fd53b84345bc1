import { beforeEach, describe, expect, it, vi } from 'vitest';
import type { BridgeListener, CallBridge, ConnectionChange } from '@varnel/web-client';
import { envelopeOf } from '../src/envelope';
import { Journal, type CallEntry, type EventEntry } from '../src/journal';
import { CutText } from '../src/keptText';

class FakeBridge implements CallBridge {
  readonly sent: unknown[][] = [];
  private readonly listeners = new Map<string, BridgeListener[]>();

  invokeMethod(...call: unknown[]): void {
    this.sent.push(call);
  }

  addEventListener(name: string, listener: BridgeListener): void {
    this.listeners.set(name, [...(this.listeners.get(name) ?? []), listener]);
  }

  removeEventListener(name: string, listener: BridgeListener): void {
    this.listeners.set(
      name,
      (this.listeners.get(name) ?? []).filter((other) => other !== listener),
    );
  }

  emit(name: string, ...args: unknown[]): void {
    this.listeners.get(name)?.forEach((listener) => listener(...args));
  }
}

const reply = (uuid: string, code = '0') => JSON.stringify({ code, msg: '', resultData: '', uuid });

let bridge: FakeBridge;
let frames: (() => void)[];
let journal: Journal;

beforeEach(() => {
  bridge = new FakeBridge();
  frames = [];
  journal = new Journal(bridge, { entries: 4, bytes: 5000, text: 100 }, (task) => frames.push(task));
});

function drawn() {
  frames.splice(0).forEach((task) => task());
  return journal.current().entries;
}

function calls() {
  return drawn().filter((entry): entry is CallEntry => entry.kind === 'call');
}

describe('the journal', () => {
  it('passes on what the bridge tells of its connection, if it tells', () => {
    expect(journal.onConnectionChange).toBeUndefined();
    const changes: ConnectionChange[] = [];
    let tell: (change: ConnectionChange) => void = () => {};
    const onConnectionChange = (listener: typeof tell) => {
      tell = listener;
      return () => {};
    };
    const breakable = new Journal(Object.assign(new FakeBridge(), { connectionState: 'closed', onConnectionChange }));
    expect(breakable.connectionState).toBe('closed');
    breakable.onConnectionChange!((change) => changes.push(change));
    tell({ state: 'open' });
    expect(changes).toEqual([{ state: 'open' }]);
  });

  it('passes calls and events unchanged', () => {
    const heard: unknown[][] = [];
    const listener = (...args: unknown[]) => void heard.push(args);
    journal.addEventListener('Data_getToken_RES', listener);
    journal.invokeMethod('Data_getToken_REQ', 'u1', null, { a: 1 });
    bridge.emit('Data_getToken_RES', 'x', 'y');
    journal.removeEventListener('Data_getToken_RES', listener);
    bridge.emit('Data_getToken_RES', 'z');
    expect(bridge.sent).toEqual([['Data_getToken_REQ', 'u1', null, { a: 1 }]]);
    expect(heard).toEqual([['x', 'y']]);
  });

  it('records calls, answers and pushes in order', () => {
    journal.invokeMethod('Data_getToken_REQ', 'u1');
    bridge.emit('on_orderLoaded');
    bridge.emit('Data_getToken_RES', reply('u1'));
    expect(drawn().map(({ kind, name, args }) => [kind, name, args])).toEqual([
      ['call', 'Data_getToken_REQ', ['u1']],
      ['event', 'on_orderLoaded', []],
      ['event', 'Data_getToken_RES', [reply('u1')]],
    ]);
  });

  it('pairs answers by identifier in any order', () => {
    journal.invokeMethod('Data_getKLineData_REQ', 'u1');
    journal.invokeMethod('Data_getKLineData_REQ', 'u2');
    bridge.emit('Data_getKLineData_RES', reply('u2', '-1'));
    expect(calls().map(({ answer }) => answer?.outcome)).toEqual([undefined, 'failed']);
    bridge.emit('Data_getKLineData_RES', reply('u1'));
    expect(calls().map(({ answer }) => answer?.outcome)).toEqual(['ok', 'failed']);
  });

  it('pairs a number with the text that comes back', () => {
    journal.invokeMethod('Data_getToken_REQ', 7);
    bridge.emit('Data_getToken_RES', reply('7'));
    expect(calls()[0]!.answer?.outcome).toBe('ok');
  });

  it('takes an empty reply as the answer to the oldest call of the method', () => {
    journal.invokeMethod('Data_getToken_REQ');
    journal.invokeMethod('Data_getToken_REQ', 'u2');
    bridge.emit('Data_getToken_RES', '');
    expect(calls().map(({ answer }) => answer?.outcome)).toEqual(['empty', undefined]);
  });

  it('accepts the empty reply as the answer of the rise-and-fall analysis', () => {
    journal.invokeMethod('Data_getUpsDownsAnalysis_REQ', 'u1', '', '', '');
    bridge.emit('Data_getUpsDownsAnalysis_RES', '');
    expect(calls()[0]!.answer?.outcome).toBe('ok');
  });

  it('answers one call for one event, even when an identifier is used twice', () => {
    journal.invokeMethod('Data_getToken_REQ', 'same');
    journal.invokeMethod('Data_getToken_REQ', 'same');
    bridge.emit('Data_getToken_RES', reply('same'));
    expect(calls().map(({ answer }) => answer?.outcome)).toEqual(['ok', undefined]);
  });

  it('leaves a reply without a call unpaired', () => {
    journal.invokeMethod('Data_getToken_REQ', 'u1');
    bridge.emit('Data_getToken_RES', reply('u9'));
    bridge.emit('Data_getToken_RES', 'no JSON');
    bridge.emit('Data_getToken_RES', 'null');
    expect(calls()[0]!.answer).toBeUndefined();
    expect(
      drawn()
        .slice(1)
        .every((entry) => (entry as EventEntry).afterMs === undefined),
    ).toBe(true);
  });

  it('records the answer of an unknown method', () => {
    journal.invokeMethod('New_thing_REQ', 'u1');
    bridge.emit('New_thing_RES', reply('u1'));
    expect(calls()[0]!.answer?.outcome).toBe('ok');
  });

  it('keeps the latest entries only', () => {
    for (let call = 1; call <= 11; ++call) journal.invokeMethod('Data_getToken_REQ', `u${call}`);
    expect(calls().map(({ uuid }) => uuid)).toEqual(['u8', 'u9', 'u10', 'u11']);
    bridge.emit('Data_getToken_RES', reply('u1'));
    expect((drawn().at(-1) as EventEntry).afterMs).toBeUndefined();
  });

  it('keeps calls when many pushes come', () => {
    journal.invokeMethod('Data_getKLineData_REQ', 'u1');
    for (let tick = 1; tick <= 50; ++tick) bridge.emit('on_tickUpdate', `${tick}`);
    expect(drawn().map(({ args }) => args[0])).toEqual(['u1', '47', '48', '49', '50']);
    expect(drawn().map((entry) => entry.kind === 'event' && entry.isPush)).toEqual([false, true, true, true, true]);
    bridge.emit('Data_getKLineData_RES', reply('u1'));
    expect(calls()[0]!.answer?.outcome).toBe('ok');
  });

  it('does not wait for an answer to a one-way call', () => {
    journal.invokeMethod('Vlx_sendCustomInfo_REQ', 'u1', 'id', 'text');
    journal.invokeMethod('Data_getToken_REQ', 'u2');
    expect(calls().map(({ oneWay }) => oneWay)).toEqual([true, false]);
  });

  it('notifies its watchers once for a burst, and shows the same until then', () => {
    let told = 0;
    const stop = journal.watch(() => ++told);
    const before = journal.current();
    journal.invokeMethod('Data_getToken_REQ', 'u1');
    journal.noteConnection('close', 1001, 'gone');
    expect(journal.current()).toBe(before);
    expect(frames).toHaveLength(1);
    drawn();
    expect(told).toBe(1);
    stop();
    journal.clear();
    expect(drawn()).toEqual([]);
    expect(told).toBe(1);
  });

  it('schedules nothing while nobody watches, and is up to date when somebody asks', () => {
    journal.watch(() => {})();
    for (let tick = 1; tick <= 50; ++tick) bridge.emit('on_tickUpdate', `${tick}`);
    expect(frames).toEqual([]);
    expect(journal.current().entries.map(({ args }) => args[0])).toEqual(['47', '48', '49', '50']);
    expect(journal.current()).toBe(journal.current());
  });

  it('tells of changes at most four times a second', () => {
    vi.useFakeTimers();
    const usual = new Journal(bridge);
    let told = 0;
    usual.watch(() => ++told);
    for (let tick = 0; tick < 1000; ++tick) {
      bridge.emit('on_tickUpdate', '{}');
      vi.advanceTimersByTime(5);
    }
    expect(told).toBe(20);
    vi.useRealTimers();
  });

  it('counts everything, and the waiting calls that it keeps', () => {
    for (let call = 1; call <= 6; ++call) journal.invokeMethod('Data_getToken_REQ', `u${call}`);
    bridge.emit('Data_getToken_RES', reply('u6'));
    for (let tick = 1; tick <= 50; ++tick) bridge.emit('on_tickUpdate', `${tick}`);
    expect(journal.current()).toMatchObject({ total: 57, unanswered: 2 }); // u4 and u5
    journal.clear();
    expect(journal.current()).toEqual({ entries: [], total: 0, unanswered: 0, bytes: 0 });
  });

  it('cuts long texts, says how long they were, and passes them whole', () => {
    const heard: unknown[] = [];
    journal.addEventListener('on_tickUpdate', (text) => heard.push(text));
    const [long, object] = ['x'.repeat(101), { text: 'y'.repeat(200) }];
    bridge.emit('on_tickUpdate', long, 'x'.repeat(100));
    journal.invokeMethod('Vlx_startStrategy_REQ', 'u1', object);
    const [push, call] = drawn();
    expect(push!.args).toEqual([new CutText('x'.repeat(100), 101), 'x'.repeat(100)]);
    expect(call!.args[1]).toEqual(new CutText(JSON.stringify(object).slice(0, 100), JSON.stringify(object).length));
    expect(heard).toEqual([long]);
    expect(bridge.sent[0]![2]).toBe(object);
  });

  it('pairs an answer whose text is cut', () => {
    journal.invokeMethod('Data_getToken_REQ', 'u1');
    bridge.emit('Data_getToken_RES', JSON.stringify({ code: '0', msg: '', resultData: 'z'.repeat(500), uuid: 'u1' }));
    expect(calls()[0]!.answer?.outcome).toBe('ok');
  });

  it('drops the oldest entries when their texts take too much', () => {
    const roomy = new Journal(bridge, { entries: 1000, bytes: 5000, text: 100 });
    roomy.invokeMethod('Data_getToken_REQ', 'kept');
    for (let tick = 1; tick <= 50; ++tick) bridge.emit('on_tickUpdate', String(tick).padEnd(100));
    const { entries, bytes } = roomy.current();
    expect(bytes).toBeLessThanOrEqual(2 * 5000);
    expect(entries.map(({ args }) => String(args[0]).trim())).toEqual([
      'kept',
      ...Array.from({ length: 10 }, (_, at) => String(41 + at)),
    ]);
  });
});

describe('the envelope of a reply', () => {
  it.each([
    ['{"code":"0","msg":"","resultData":[],"uuid":"u1"}', '0', 'u1'],
    ['{"code":"-1","msg":"","uuid":"\\"uuid\\":\\\\"}', '-1', '"uuid":\\'],
    ['{"code":"0","resultData":{"uuid":"inner"},"uuid":"outer"}', '0', 'outer'],
    ['{"code":"0","uuid":"outer","resultData":{"uuid":"inner"}}', '0', 'outer'],
    ['{"code":"0","uuid":"outer","resultData":"\\"uuid\\":\\"inner\\"}"}', '0', 'outer'],
    ['{"uuid":"u1","code":"0"}', '0', 'u1'],
    ['{"code":"0","resultData":{"uuid":"inner"}}', '0', undefined],
  ])('%s', (text, code, uuid) => {
    expect(envelopeOf(text)).toMatchObject({ code, ...(uuid !== undefined && { uuid }) });
    expect(envelopeOf(text)?.uuid).toBe(uuid);
  });

  it.each(['', 'null', 'no JSON', 7, undefined])('%j has none', (text) => {
    expect(envelopeOf(text)).toBeUndefined();
  });
});
