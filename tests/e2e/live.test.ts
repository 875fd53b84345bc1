import { quoteFields, type Tick } from '@varnel/web-client';
import { EventRecorder } from './support/eventRecorder';
import { symbols } from './support/scenario';
import { expect, test } from './support/test';

// Quotes change every three seconds of trading: here every 150 ms, for several minutes.
test.use({ options: ['--speed', '20'] });

const [first, second, third] = symbols as [string, string, string];
const ticks = (recorder: EventRecorder) => recorder.pushes<Tick>('on_tickUpdate');
const ticksOf = (recorder: EventRecorder, symbol: string) => ticks(recorder).filter((tick) => tick.symbol === symbol);
const symbolsOf = (recorder: EventRecorder) => [...new Set(ticks(recorder).map(({ symbol }) => symbol))].sort();
const seen = (recorder: EventRecorder, symbol: string, count: number) =>
  recorder.until(() => ticksOf(recorder, symbol).length >= count && ticksOf(recorder, symbol));

test.describe('quotes', () => {
  test('come only to the pages that subscribed to the symbol', async ({
    recorder: one,
    secondRecorder: other,
    thirdRecorder: idle,
  }) => {
    await one.envelope('Sub_subscribe_REQ', `${first},${second}`);
    await other.envelope('Sub_subscribe_REQ', `${second},${third}`);
    for (const symbol of [first, second]) await seen(one, symbol, 5);
    for (const symbol of [second, third]) await seen(other, symbol, 5);
    expect(symbolsOf(one)).toEqual([first, second].sort());
    expect(symbolsOf(other)).toEqual([second, third].sort());
    await idle.drain();
    expect(ticks(idle)).toEqual([]);
  });

  test('are complete, and each is newer than the one before', async ({ recorder }) => {
    await recorder.envelope('Sub_subscribe_REQ', first);
    const list = await seen(recorder, first, 8);
    for (const tick of list) expect(Object.keys(tick).sort()).toEqual(Object.values<string>(quoteFields).sort());
    const times = list.map(({ time }) => String(time));
    expect(times).toEqual([...new Set(times)].sort());
    expect(recorder.of('on_tickUpdate').every((args) => args.length === 1)).toBe(true);
  });

  test('come once for a symbol that was subscribed twice', async ({ recorder }) => {
    await recorder.envelope('Sub_subscribe_REQ', `${first},${first}`);
    await recorder.envelope('Sub_subscribe_REQ', first);
    await seen(recorder, first, 5); // by now each subscription has brought the current quote
    recorder.clear();
    const times = (await seen(recorder, first, 6)).map(({ time }) => String(time));
    expect(times).toEqual([...new Set(times)]);
    await recorder.envelope('UnSub_subscribe_REQ', first);
    recorder.clear();
    await recorder.envelope('Sub_subscribe_REQ', second);
    await seen(recorder, second, 4);
    expect(symbolsOf(recorder)).toEqual([second]);
  });

  test('stop only for the page that unsubscribes', async ({ recorder: one, secondRecorder: other }) => {
    for (const recorder of [one, other]) await recorder.envelope('Sub_subscribe_REQ', `${first},${second}`);
    for (const recorder of [one, other]) await seen(recorder, first, 2);
    await one.envelope('UnSub_subscribe_REQ', first);
    for (const recorder of [one, other]) recorder.clear();
    await seen(other, first, 5);
    await seen(one, second, 5);
    expect(symbolsOf(one)).toEqual([second]);
  });

  test('stop for a page that unsubscribes from all, and start again with a subscription', async ({
    recorder: one,
    secondRecorder: other,
  }) => {
    for (const recorder of [one, other]) await recorder.envelope('Sub_subscribe_REQ', `${first},${second}`);
    for (const recorder of [one, other]) await seen(recorder, second, 2);
    await one.envelope('UnSub_subscribeAll_REQ');
    for (const recorder of [one, other]) recorder.clear();
    await seen(other, first, 5);
    await one.drain();
    expect(ticks(one)).toEqual([]);
    await one.envelope('Sub_subscribe_REQ', first);
    await seen(one, first, 3);
    expect(symbolsOf(one)).toEqual([first]);
  });

  test('do not come for a misspelt or empty symbol', async ({ recorder }) => {
    await recorder.envelope('Sub_subscribe_REQ', `${first.toLowerCase()}, ${second},NOSUCH.SH,,${third}`);
    await seen(recorder, third, 6);
    expect(symbolsOf(recorder)).toEqual([third]);
  });

  const forms: [string, unknown][] = [
    ['a text with commas', `${first},${second}`],
    ['an array', [first, second]],
    ['the text of an array', JSON.stringify([first, second])],
  ];
  for (const [name, list] of forms) {
    test(`are subscribed to by ${name}`, async ({ recorder }) => {
      await recorder.envelope('Sub_subscribe_REQ', list);
      for (const symbol of [first, second]) await seen(recorder, symbol, 2);
      await recorder.envelope('UnSub_subscribe_REQ', list);
      recorder.clear();
      await recorder.envelope('Sub_subscribe_REQ', third);
      await seen(recorder, third, 3);
      expect(symbolsOf(recorder)).toEqual([third]);
    });
  }

  test('stop when the page closes, and do not reach the next page', async ({ recorder }) => {
    await recorder.envelope('Sub_subscribe_REQ', symbols.join(','));
    await seen(recorder, first, 2);
    await recorder.page.reload();
    await recorder.drain();
    recorder.clear();
    await recorder.envelope('Sub_subscribe_REQ', second);
    await seen(recorder, second, 4);
    expect(symbolsOf(recorder)).toEqual([second]);
  });

  test('equal the quote of a call', async ({ recorder }) => {
    await recorder.envelope('Sub_subscribe_REQ', first);
    await seen(recorder, first, 1);
    const { resultData } = await recorder.envelope('Data_getCurrentTick_REQ', first);
    const asked = resultData as Tick;
    const pushed = await recorder.until(() => ticksOf(recorder, first).find(({ time }) => time === asked.time));
    expect(pushed).toEqual(asked);
    expect(Object.keys(pushed)).toEqual(Object.keys(asked));
  });
});

test.describe('the replies to subscriptions', () => {
  const calls: ['Sub_subscribe_REQ' | 'UnSub_subscribe_REQ' | 'UnSub_subscribeAll_REQ', unknown[]][] = [
    ['Sub_subscribe_REQ', [first]],
    ['Sub_subscribe_REQ', ['NOSUCH.SH']],
    ['Sub_subscribe_REQ', [[]]],
    ['UnSub_subscribe_REQ', ['never subscribed']],
    ['UnSub_subscribeAll_REQ', []],
  ];
  for (const [method, args] of calls) {
    test(`${method} with ${JSON.stringify(args)} has no data`, async ({ recorder }) => {
      const envelope = await recorder.envelope(method, ...args);
      expect(envelope).toEqual({ code: '0', msg: '', uuid: envelope.uuid });
    });
  }

  test('go only to the page that called, and need an identifier', async ({ recorder: one, secondRecorder: other }) => {
    await one.envelope('Sub_subscribe_REQ', 'NOSUCH.SH');
    await one.call('Sub_subscribe_REQ');
    await one.call('UnSub_subscribe_REQ');
    await one.call('UnSub_subscribeAll_REQ');
    for (const recorder of [one, other]) await recorder.drain();
    // The market goes on meanwhile, and orders and executions are pushed to every page.
    const replies = (recorder: EventRecorder) =>
      recorder.events.map(({ event }) => event).filter((event) => event.endsWith('_RES'));
    expect(replies(one)).toEqual(['Sub_subscribe_RES']);
    expect(replies(other)).toEqual([]);
  });
});
