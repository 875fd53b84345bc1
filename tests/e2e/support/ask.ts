import { expect, type Page } from '@playwright/test';
import type { AnsweredCall } from '@varnel/web-client'; // and window.CallBridge
import { answeredCalls } from '@varnel/web-client';
import type { Envelope } from './peer';

let calls = 0;

/** Makes a call in the page and gives the argument of its reply: the text with its identifier, or the empty text. */
export function replyTo(page: Page, method: AnsweredCall, uuid: string, ...args: unknown[]): Promise<unknown> {
  return page.evaluate(
    ([name, event, all]) =>
      new Promise((resolve) => {
        const end = `"uuid":${JSON.stringify(all[0])}}`;
        const listener = (reply: unknown) => {
          if (reply !== '' && !String(reply).endsWith(end)) return;
          window.CallBridge.removeEventListener(event, listener);
          resolve(reply);
        };
        window.CallBridge.addEventListener(event, listener);
        window.CallBridge.invokeMethod(name, ...all);
      }),
    [method, answeredCalls[method], [uuid, ...args]] as const,
  );
}

export async function envelopeOf(page: Page, method: AnsweredCall, ...args: unknown[]): Promise<Envelope> {
  const uuid = `call ${++calls}`;
  const envelope = JSON.parse((await replyTo(page, method, uuid, ...args)) as string) as Envelope;
  expect(envelope.uuid).toBe(uuid);
  return envelope;
}

/** Makes a call that must succeed, and gives its result. */
export async function ask<Result>(page: Page, method: AnsweredCall, ...args: unknown[]): Promise<Result> {
  const { code, msg, resultData } = await envelopeOf(page, method, ...args);
  expect({ code, msg }).toEqual({ code: '0', msg: '' });
  return resultData as Result;
}

/** Makes a call whose JSON argument the terminal must refuse. */
export async function expectRefused(page: Page, method: AnsweredCall, ...args: unknown[]): Promise<void> {
  const envelope = await envelopeOf(page, method, ...args);
  expect(envelope).toEqual({ code: '-1', msg: '过滤条件参数转换错误', uuid: envelope.uuid });
}

/** Arguments that are not the text of a JSON document. */
export const refusedFilters: [name: string, filter: unknown][] = [
  ['a word', 'abc'],
  ['the empty text', ''],
  ['JSON cut short', '{"symbol":["'],
  ['an object instead of its text', { symbol: [] }],
  ['a number', 7],
  ['null', null],
];
