import type { StrategyAnswer } from '@varnel/web-client';
import { EventRecorder } from './support/eventRecorder';
import type { Envelope } from './support/peer';
import { fundAccounts } from './support/scenario';
import { expect, test } from './support/test';

const [fundAccount, another] = fundAccounts().map((each) => each.fundAccount) as [string, string];
const extension = { note: '扩展', list: [1, null, true] };

const start = (recorder: EventRecorder, path = 'strategies/grid.py', language: unknown = 1, accounts = fundAccount) =>
  recorder.envelope('Vlx_startStrategy_REQ', path, language, accounts, { step: 0.01 }, extension);
const data = (envelope: Envelope) => envelope.resultData as StrategyAnswer;
const statuses = (recorder: EventRecorder, id: string) =>
  recorder
    .of('on_vlxStrategyStatusUpdate')
    .filter(([strategyID]) => strategyID === id)
    .map(([, status]) => status);
const reached = (recorder: EventRecorder, id: string, status: string) =>
  recorder.until(() => statuses(recorder, id).includes(status));
const messages = (recorder: EventRecorder, id: string) =>
  recorder
    .of('on_vlxRcvCustomInfo')
    .filter(([customMsgID]) => customMsgID === id)
    .map(([, message]) => JSON.parse(message as string) as { echo?: string; count?: number; heartbeat?: number });
const echoes = (recorder: EventRecorder, id: string) =>
  messages(recorder, id).flatMap(({ echo }) => (echo === undefined ? [] : [echo]));

async function running(recorder: EventRecorder): Promise<string> {
  const { strategyID } = data(await start(recorder));
  await reached(recorder, strategyID, 'Running');
  return strategyID;
}

test.describe('a strategy', () => {
  test('that is started answers only the caller, and pushes its statuses to all pages', async ({
    recorder: one,
    secondRecorder: other,
  }) => {
    const answer = await start(one);
    expect(answer).toMatchObject({ code: '0', msg: '' });
    const { strategyID, strategyStatus, ExtField } = data(answer);
    expect(strategyID).toMatch(/\S/);
    expect(strategyStatus).toBe('Starting');
    expect(ExtField).toEqual(extension);
    for (const recorder of [one, other]) {
      await reached(recorder, strategyID, 'Running');
      expect(statuses(recorder, strategyID)).toEqual(
        ['Starting', 'Running'].slice(-statuses(recorder, strategyID).length),
      );
      for (const args of recorder.of('on_vlxStrategyStatusUpdate')) expect(args).toHaveLength(2);
    }
    expect(other.replies('Vlx_startStrategy_REQ')).toEqual([]);
  });

  test('that is started twice runs twice', async ({ recorder }) => {
    for (let call = 0; call < 2; ++call)
      await recorder.call('Vlx_startStrategy_REQ', 'same', 'a.py', 1, fundAccount, {}, '');
    const started = await recorder.until(() => {
      const replies = recorder.replies('Vlx_startStrategy_REQ');
      return replies.length === 2 && replies;
    });
    expect(started.map(({ uuid }) => uuid)).toEqual(['same', 'same']);
    expect(new Set(started.map((reply) => data(reply).strategyID)).size).toBe(2);
  });

  const refusals: [string, Parameters<typeof start> extends [EventRecorder, ...infer Rest] ? Rest : never][] = [
    ['without a path', ['', 1, fundAccount]],
    ['in an unknown language', ['a.py', 99, fundAccount]],
    ['in a language that is no number', ['a.py', 'python', fundAccount]],
    ['for an unknown account', ['a.py', 1, 'no such account']],
    ['for a known and an unknown account', ['a.py', 1, `${fundAccount},nobody`]],
    ['for no account', ['a.py', 1, '']],
  ];
  for (const [name, args] of refusals) {
    test(`${name} is refused with a reason, and nothing starts`, async ({ recorder }) => {
      const refused = await start(recorder, ...args);
      expect(refused.code).toBe('-1');
      expect(refused.msg).toMatch(/[\u4e00-\u9fff]/);
      expect(data(refused).ExtField).toEqual(extension);
      const id = await running(recorder);
      expect(new Set(recorder.of('on_vlxStrategyStatusUpdate').map(([strategyID]) => strategyID))).toEqual(
        new Set([id]),
      );
    });
  }

  test('for two accounts is started', async ({ recorder }) => {
    expect((await start(recorder, 'a.py', 1, `${fundAccount},${another}`)).code).toBe('0');
  });

  test('can be stopped by any page, and only that page gets the answer', async ({
    recorder: one,
    secondRecorder: other,
  }) => {
    const id = await running(one);
    const stopped = await other.envelope('Vlx_stopStrategy_REQ', id, 'why');
    expect(stopped).toMatchObject({ code: '0', msg: '', resultData: { strategyID: id, ExtField: 'why' } });
    for (const recorder of [one, other]) await reached(recorder, id, 'Stopped');
    expect(one.replies('Vlx_stopStrategy_REQ')).toEqual([]);
    const again = await other.envelope('Vlx_stopStrategy_REQ', id, '');
    expect(again.code).toBe('-1');
    expect(again.msg).toContain(id);
  });

  test('answers a query with its status', async ({ recorder }) => {
    const id = await running(recorder);
    const query = () => recorder.envelope('Vlx_queryStrategyStatus_REQ', id, extension);
    const resultData = { strategyID: id, strategyStatus: 'Running', ExtField: extension };
    expect(await query()).toMatchObject({ code: '0', msg: '', resultData });
    await recorder.envelope('Vlx_stopStrategy_REQ', id, '');
    await reached(recorder, id, 'Stopped');
    expect(data(await query()).strategyStatus).toBe('Stopped');
  });

  for (const method of ['Vlx_stopStrategy_REQ', 'Vlx_queryStrategyStatus_REQ'] as const) {
    test(`with an unknown identifier refuses ${method}`, async ({ recorder }) => {
      const refused = await recorder.envelope(method, 'no such strategy', extension);
      expect(refused.code).toBe('-1');
      expect(refused.msg).toContain('no such strategy');
      expect(data(refused).ExtField).toEqual(extension);
    });
  }

  const short: [string, unknown[]][] = [
    ['Vlx_startStrategy_REQ', ['u', 'a.py', 1, fundAccount, {}]],
    ['Vlx_stopStrategy_REQ', ['u', 'id']],
    ['Vlx_queryStrategyStatus_REQ', ['u', 'id']],
    ['Vlx_sendCustomInfo_REQ', ['u', 'id']],
    ['Vlx_subStrategyMsg_REQ', ['u', 'id']],
  ];
  for (const [method, args] of short) {
    test(`call ${method} with too few arguments gets no answer`, async ({ recorder }) => {
      await recorder.call(method, ...args);
      await running(recorder); // an answer would have come earlier
      expect(recorder.events.filter(({ args: [text] }) => String(text).includes('"uuid":"u"') || text === '')).toEqual(
        [],
      );
    });
  }
});

test.describe('custom messages', () => {
  test('come once, and only to the pages that subscribed', async ({ recorder: one, secondRecorder: other }) => {
    const [mine, foreign] = [await running(one), await running(one)];
    for (let time = 0; time < 2; ++time) await one.call('Vlx_subStrategyMsg_REQ', 'u', mine, '1');
    await other.call('Vlx_subStrategyMsg_REQ', 'u', foreign, '1');
    for (const text of ['hello', '第二 "条"', ''])
      for (const id of [mine, foreign]) await one.call('Vlx_sendCustomInfo_REQ', 'u', id, text);
    await one.until(() => echoes(one, mine).length >= 3);
    await other.until(() => echoes(other, foreign).length >= 3);
    for (const recorder of [one, other]) await recorder.drain();
    expect(echoes(one, mine)).toEqual(['hello', '第二 "条"', '']);
    expect(echoes(other, foreign)).toEqual(['hello', '第二 "条"', '']);
    expect([messages(one, foreign), messages(other, mine)]).toEqual([[], []]);
    for (const args of one.of('on_vlxRcvCustomInfo')) expect(args).toHaveLength(2);
  });

  test('stop when the page unsubscribes', async ({ recorder: one, secondRecorder: other }) => {
    const id = await running(one);
    for (const recorder of [one, other]) await recorder.call('Vlx_subStrategyMsg_REQ', 'u', id, '1');
    for (const recorder of [one, other]) await recorder.drain();
    await one.call('Vlx_sendCustomInfo_REQ', 'u', id, 'first');
    for (const recorder of [one, other]) await recorder.until(() => echoes(recorder, id).length === 1);
    await one.call('Vlx_subStrategyMsg_REQ', 'u', id, '0');
    await one.call('Vlx_sendCustomInfo_REQ', 'u', id, 'second');
    await other.until(() => echoes(other, id).length === 2);
    await one.drain();
    expect(echoes(one, id)).toEqual(['first']);
  });

  test('and subscriptions get no answer', async ({ recorder }) => {
    const id = await running(recorder);
    await recorder.call('Vlx_subStrategyMsg_REQ', 'u', id, '1');
    await recorder.call('Vlx_sendCustomInfo_REQ', 'u', id, 'hello');
    await recorder.until(() => echoes(recorder, id).length === 1);
    await recorder.envelope('Vlx_queryStrategyStatus_REQ', id, '');
    expect(recorder.reservedEvents()).toEqual([]);
  });
});
