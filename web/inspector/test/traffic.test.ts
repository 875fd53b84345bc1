import { afterEach, describe, expect, it } from 'vitest';
import { answerTime, type Entry, type EntryKind } from '../src/entry';
import { filtered, type Filter } from '../src/filter';
import { follow } from '../src/follow';
import { exchangeClock, laidOut } from '../src/format';
import { jsonLines } from '../src/save';
import { Measure, Rate } from '../src/statistics';
import { TrafficStore } from '../src/TrafficStore';
import { warningOf } from '../src/warnings';

let last = 0;

function entry(kind: EntryKind, more: Partial<Entry> = {}): Entry {
  return { kind, number: ++last, time: last * 1000, ...more };
}

/** A call on page 1, its end and its reply with that result. */
function answeredCall(method: string, uuid: string, result: unknown, { page = 1, held = 100 } = {}): Entry[] {
  const call = entry('call', { name: method, uuid, page });
  const number = call.number;
  const reply = entry('event', {
    name: method.replace('_REQ', '_RES'),
    uuid,
    page,
    isReply: true,
    call: number,
    args: [JSON.stringify({ code: '0', msg: '', resultData: result, uuid })],
  });
  const done = entry('callDone', { name: method, page, call: number, of: number, duration: held, isHandled: true });
  const delivered = entry('eventDelivered', { page, call: number, of: reply.number, duration: 50, size: 80 });
  return [{ ...call, call: number }, reply, done, delivered];
}

function storeOf(...entries: Entry[]): TrafficStore {
  const store = new TrafficStore(undefined, () => 0);
  store.add(entries);
  return store;
}

const all: Filter = {
  page: 0,
  kinds: new Set(['page', 'call', 'reply', 'push', 'command', 'host', 'bus', 'quote']),
  method: '',
  text: '',
};

describe('the store', () => {
  it('joins a call with its end and its reply', () => {
    const entries = answeredCall('Data_getToken_REQ', 'u1', 't');
    const { rows, methods, total } = storeOf(...entries).snapshot();
    expect(rows.map(({ kind }) => kind)).toEqual(['call', 'reply']);
    expect(total).toBe(2);
    expect(rows[0]!.end).toBe(entries[2]);
    expect(rows[0]!.reply).toBe(rows[1]);
    expect(rows[1]!.end).toBe(entries[3]);
    expect(answerTime(rows[0]!)).toBe(3000);
    expect(methods).toMatchObject([{ name: 'Data_getToken_REQ', calls: 1 }]);
    expect(methods[0]!.held.quantile(0.5)).toBe(100);
    expect(methods[0]!.answered.quantile(0.5)).toBe(3000);
  });

  it('shows the commands that people give', () => {
    const { rows } = storeOf(entry('command', { name: 'halt 609801.SH' })).snapshot();
    expect(rows).toMatchObject([{ kind: 'command', entry: { name: 'halt 609801.SH' } }]);
  });

  it('keeps the latest rows within its bounds', () => {
    const store = new TrafficStore({ rows: 100, text: 10_000 });
    for (let count = 0; count < 1000; ++count) store.add([entry('quote', { name: 'A' })]);
    const few = store.snapshot();
    expect(few.rows.length).toBeGreaterThanOrEqual(90);
    expect(few.rows.length).toBeLessThanOrEqual(100);
    expect(few.rows.at(-1)!.entry.number).toBe(last);
    expect(few.total).toBe(1000);
    for (let count = 0; count < 20; ++count) store.add([entry('event', { args: ['x'.repeat(2000)] })]);
    expect(store.snapshot().rows.length).toBeLessThanOrEqual(5);
    store.add([entry('eventDelivered', { of: 1 })]); // of a row that is gone
  });

  it('counts what is lost, and forgets everything with a new connection', () => {
    const store = storeOf(...answeredCall('Data_getToken_REQ', 'u1', 't'));
    store.add([{ kind: 'lost', count: 3 }]);
    store.add([{ kind: 'lost', count: 4 }]);
    expect(store.snapshot()).toMatchObject({ lost: 7, pages: [1] });
    store.restart();
    expect(store.snapshot()).toMatchObject({ lost: 0, pages: [], rows: [], methods: [], total: 0 });
  });

  it('counts the methods above a number together', () => {
    const store = storeOf();
    for (let count = 0; count < 600; ++count) store.add([entry('call', { name: `Data_${count}` })]);
    const { methods } = store.snapshot();
    expect(methods).toHaveLength(501);
    expect(methods.at(-1)).toMatchObject({ name: '…', calls: 100 });
  });
});

describe('statistics', () => {
  it('tells quantiles of the latest values and the largest of all', () => {
    const measure = new Measure();
    expect(measure.quantile(0.5)).toBeUndefined();
    for (let value = 1; value <= 100; ++value) measure.add(value);
    expect([0, 0.5, 0.99, 1].map((share) => measure.quantile(share))).toEqual([1, 50, 99, 100]);
    for (let count = 0; count < 1000; ++count) measure.add(7);
    expect([measure.quantile(0.99), measure.max, measure.count]).toEqual([7, 100, 1100]);
  });

  it('tells how many came each second, until they are five seconds ago', () => {
    const rate = new Rate();
    for (let count = 0; count < 10; ++count) rate.add(1_000_000 + count);
    expect(rate.at(1_500_000)).toBe(0); // this second is not over
    expect(rate.at(2_000_000)).toBe(2);
    expect(rate.at(6_999_999)).toBe(2);
    expect(rate.at(7_000_000)).toBe(0);
  });
});

describe('warnings', () => {
  const call = entry('call', { name: 'Data_getToken_REQ', time: 0 });
  const done = (more: Partial<Entry>) => entry('callDone', { of: call.number, isHandled: true, duration: 1, ...more });

  it.each([
    ['a call that nobody handles', { entry: call, end: done({ isHandled: false }) }, 0, 'unhandled'],
    ['a handler longer than a frame', { entry: call, end: done({ duration: 16_701 }) }, 0, 'slow'],
    ['a handler of a frame', { entry: call, end: done({ duration: 16_700 }) }, 0, undefined],
    ['a call that waits', { entry: call, end: done({}) }, 5_000_000, undefined],
    ['a call that has waited too long', { entry: call, end: done({}) }, 5_000_001, 'unanswered'],
    [
      'an old call with its reply',
      { entry: call, end: done({}), reply: { kind: 'reply', entry: entry('event') } },
      9_000_000,
      undefined,
    ],
    [
      'a call without reply',
      { entry: entry('call', { name: 'Vlx_sendCustomInfo_REQ', time: 0 }), end: done({}) },
      9_000_000,
      undefined,
    ],
  ] as const)('%s', (_, row, now, warning) => {
    expect(warningOf({ kind: 'call', ...row }, now)).toBe(warning);
  });
});

describe('following', () => {
  it('shows all of a call in order, from each of its rows', () => {
    const [call, reply, done, delivered] = answeredCall('Data_getKLineData_REQ', 'u1', []);
    const request = entry('hostRequest', { call: call!.number });
    const { rows } = storeOf(
      entry('quote'),
      call!,
      reply!,
      done!,
      delivered!,
      request,
      ...answeredCall('Data_getToken_REQ', 'u1', ''),
    ).snapshot();
    const numbers = [call!.number, reply!.number, request.number];
    for (const number of numbers) {
      const row = rows.find((each) => each.entry.number === number)!;
      expect(follow(row, rows).map((each) => each.entry.number)).toEqual(numbers);
    }
    expect(follow(rows[0]!, rows)).toEqual([rows[0]]);
  });

  it('adds the later pushes and bus events of the orders that a trade call placed', () => {
    const before = entry('hostEvent', { args: [{ orderID: 'O-1' }] });
    const placed = answeredCall('Trade_insertOrder_REQ', 'u1', { orderID: 'O-1' });
    const changed = entry('hostEvent', { args: [{ orderID: 'O-1' }] });
    const other = entry('hostEvent', { args: [{ orderID: 'O-10' }] });
    const push = entry('event', { name: 'on_entrustUpdate', page: 1, args: ['[{"order_id":"O-1"}]'] });
    const ofOtherPage = entry('event', { name: 'on_entrustUpdate', page: 2, args: ['[{"order_id":"O-1"}]'] });
    const { rows } = storeOf(before, ...placed, changed, other, push, ofOtherPage).snapshot();
    const call = rows.find(({ kind }) => kind === 'call')!;
    expect(follow(call, rows).map((each) => each.entry.number)).toEqual([
      placed[0]!.number,
      placed[1]!.number,
      changed.number,
      push.number,
    ]);
  });
});

describe('filters', () => {
  const { rows } = storeOf(
    ...answeredCall('Data_getToken_REQ', 'First', 'token'),
    ...answeredCall('Data_getAsset_REQ', 'second', 'money', { page: 2 }),
    entry('event', { name: 'on_tickUpdate', page: 1, args: ['{"symbol":"609801.SH"}', { deep: ['Blue'] }] }),
    entry('quote', { name: '609801.SH' }),
  ).snapshot();

  it.each([
    ['nothing', {}, 6],
    ['a page', { page: 2 }, 2],
    ['kinds', { kinds: new Set(['push', 'quote'] as const) }, 2],
    ['a method with its replies', { method: 'Data_getToken_REQ' }, 2],
    ['a text in a uuid, of any case', { text: ' FIRST ' }, 2],
    ['a text in arguments', { text: '609801.sh' }, 2],
    ['a text deep in arguments', { text: 'blue' }, 1],
    ['several at once', { page: 1, text: 'token', kinds: new Set(['reply'] as const) }, 1],
  ])('%s', (_, filter, count) => {
    expect(filtered(rows, { ...all, ...filter })).toHaveLength(count);
  });
});

it('saves the entries of the rows with their ends, one a line, in order', () => {
  const entries = answeredCall('Data_getToken_REQ', 'u\n1', 't');
  const lines = jsonLines(storeOf(...entries).snapshot().rows).split('\n');
  expect(lines.pop()).toBe('');
  expect(lines.map((line) => JSON.parse(line))).toEqual(entries);
});

it('lays out JSON, and leaves other texts as they are', () => {
  expect(laidOut('{"a":1}')).toBe('{\n  "a": 1\n}');
  expect(laidOut('{"a":')).toBe('{"a":');
  expect(laidOut('[3')).toBe('[3');
  expect(laidOut('880010001')).toBe('880010001');
  expect(laidOut('')).toBe('""');
  expect(laidOut(7)).toBe('7');
});

describe('exchange time', () => {
  const zone = process.env.TZ;
  afterEach(() => {
    if (zone === undefined) delete process.env.TZ;
    else process.env.TZ = zone;
  });

  it.each(['UTC', 'Asia/Shanghai', 'America/New_York'])('is the same for a browser in %s', (place) => {
    process.env.TZ = place;
    expect(exchangeClock(1740996001000)).toBe('2025-03-03 10:00:01');
  });
});
