import type { Page } from '@playwright/test';
import type {} from '@varnel/web-client'; // window.CallBridge
import { Frames } from './support/frames';
import { login, symbols, traderIds } from './support/scenario';
import { expect, test } from './support/test';

declare global {
  interface Window {
    /** What the page has received, in order. */
    events: [event: string, ...args: unknown[]][];
  }
}

const replyEvents = ['Token', 'LoginTrader', 'TraderList', 'FundAccountList', 'OPStation', 'KLineData'].map(
  (name) => `Data_get${name}_RES`,
);

async function openBare(page: Page): Promise<void> {
  await page.goto('/bare.html');
  await record(page);
}

async function record(page: Page): Promise<void> {
  await page.evaluate((names) => {
    window.events = [];
    for (const name of names)
      window.CallBridge.addEventListener(name, (...args) => window.events.push([name, ...args]));
  }, replyEvents);
}

function call(page: Page, ...calls: [method: string, ...args: unknown[]][]): Promise<void> {
  return page.evaluate((list) => list.forEach((each) => window.CallBridge.invokeMethod(...each)), calls);
}

/** What the page has received up to the answer to one more call, without that answer. */
async function drainedEvents(page: Page) {
  await page.evaluate(
    () =>
      new Promise<void>((resolve) => {
        const listener = (...args: unknown[]) => {
          if (!String(args[0]).includes('"uuid":"the last call"')) return;
          window.CallBridge.removeEventListener('Data_getToken_RES', listener);
          resolve();
        };
        window.CallBridge.addEventListener('Data_getToken_RES', listener);
        window.CallBridge.invokeMethod('Data_getToken_REQ', 'the last call');
      }),
  );
  const all = await page.evaluate(() => window.events.splice(0));
  expect(all.pop()![0]).toBe('Data_getToken_RES');
  return all;
}

async function waitForEvents(page: Page, number: number): Promise<void> {
  await page.waitForFunction((count) => window.events.length >= count, number);
}

const uuidOf = ([, reply]: [string, ...unknown[]]) => (JSON.parse(reply as string) as { uuid: string }).uuid;

test.describe('a page', () => {
  test('gets the reply as one compact text with its keys in order', async ({ barePage: page }) => {
    await record(page);
    await call(page, ['Data_getToken_REQ', 'abc']);
    const text = `{"code":"0","msg":"","resultData":${JSON.stringify(login.token)},"uuid":"abc"}`;
    expect(await drainedEvents(page)).toEqual([['Data_getToken_RES', text]]);
  });

  const uuids: [string, unknown, string][] = [
    ['the number 7', 7, '7'],
    ['a large whole number', 9007199254740991, '9007199254740991'],
    ['a negative number', -3, '-3'],
    ['true', true, 'true'],
    ['null', null, ''],
    ['a text of several scripts', '订单 "7" \u{1f4c8}\n', '订单 "7" \u{1f4c8}\n'],
    ['an empty text', '', ''],
  ];
  for (const [name, sent, back] of uuids) {
    test(`that sends ${name} as identifier gets it back as text`, async ({ barePage: page }) => {
      await record(page);
      await call(page, ['Data_getTraderList_REQ', sent]);
      const answers = await drainedEvents(page);
      expect(answers).toHaveLength(1);
      expect(JSON.parse(answers[0]![1] as string)).toEqual({ code: '0', msg: '', resultData: traderIds, uuid: back });
    });
  }

  const short: [string, unknown[]][] = [
    ['Data_getToken_REQ', []],
    ['Data_getLoginTrader_REQ', []],
    ['Data_getTraderList_REQ', []],
    ['Data_getFundAccountList_REQ', ['u1']],
    ['Data_getOPStation_REQ', ['u1', 'A']],
  ];
  for (const [method, args] of short) {
    test(`that calls ${method} with too few arguments gets the empty text`, async ({ barePage: page }) => {
      await record(page);
      await call(page, [method, ...args]);
      expect(await drainedEvents(page)).toEqual([[method.replace('_REQ', '_RES'), '']]);
    });
  }

  test('that asks for K-lines with too few arguments gets no event', async ({ barePage: page }) => {
    await record(page);
    await call(page, ['Data_getKLineData_REQ', 'u1', symbols[0], '', '']);
    expect(await drainedEvents(page)).toEqual([]);
  });

  test('may send more arguments than a call needs', async ({ barePage: page }) => {
    await record(page);
    await call(page, ['Data_getLoginTrader_REQ', 'u1', 'more', { and: ['more'] }]);
    const answers = await drainedEvents(page);
    expect(answers).toHaveLength(1);
    expect(JSON.parse(answers[0]![1] as string)).toMatchObject({ code: '0', resultData: login.account, uuid: 'u1' });
  });

  test('gets answers in the order of its calls', async ({ barePage: page }) => {
    await record(page);
    const sent = Array.from({ length: 200 }, (_, index) => `u${index}`);
    await call(page, ...sent.map((uuid): [string, string] => ['Data_getLoginTrader_REQ', uuid]));
    expect((await drainedEvents(page)).map(uuidOf)).toEqual(sent);
  });
});

test.describe('two pages', () => {
  test('with several calls under way get only their own answers', async ({ context }) => {
    const pages = [await context.newPage(), await context.newPage()];
    for (const page of pages) await openBare(page);
    // Identifiers name their page, so that a mix-up is noticed.
    const sent = pages.map((_, index) =>
      Array.from({ length: 10 }, (_, round): [string, ...unknown[]][] => [
        ['Data_getKLineData_REQ', `page ${index} candles ${round}`, symbols[index]!, '20250101', '20250228', '2'],
        ['Data_getToken_REQ', `page ${index} token ${round}`],
        ['Data_getFundAccountList_REQ', `page ${index} accounts ${round}`, round % 3],
      ]).flat(),
    );
    await Promise.all(pages.map((page, index) => call(page, ...sent[index]!)));
    await Promise.all(pages.map((page, index) => waitForEvents(page, sent[index]!.length)));

    for (const [index, page] of pages.entries()) {
      const answers = await drainedEvents(page);
      expect(answers.map(uuidOf).sort()).toEqual(sent[index]!.map(([, uuid]) => uuid).sort());
      for (const [event, reply] of answers) {
        if (event !== 'Data_getKLineData_RES') continue;
        const { resultData } = JSON.parse(reply as string) as { resultData: { symbol: string }[] };
        expect(new Set(resultData.map(({ symbol }) => symbol))).toEqual(new Set([symbols[index]]));
      }
    }
  });

  test('may use the same identifiers', async ({ context }) => {
    const pages = [await context.newPage(), await context.newPage()];
    for (const page of pages) await openBare(page);
    await Promise.all(
      pages.map((page) => call(page, ['Data_getKLineData_REQ', 'same', symbols[0], '20250201', '', '2'])),
    );
    await Promise.all(pages.map((page) => waitForEvents(page, 1)));
    for (const page of pages) expect((await drainedEvents(page)).map(uuidOf)).toEqual(['same']);
  });
});

test.describe('a reload during calls', () => {
  test('affects no other page, and the new page gets none of the old answers', async ({ context }) => {
    const [reloading, other] = [await context.newPage(), await context.newPage()];
    await openBare(other);
    const frames = new Frames(reloading);
    const rounds = 5;
    for (let round = 0; round < rounds; ++round) {
      await openBare(reloading);
      const old = (symbol: string): [string, ...unknown[]] => ['Data_getKLineData_REQ', 'old', symbol, '', '', '1'];
      await call(reloading, old(symbols[0]!), old(symbols[1]!), ['Data_getTraderList_REQ', 'old']);
      await openBare(reloading); // the answers are still under way
      await call(reloading, ['Data_getKLineData_REQ', 'new', symbols[0], '20250201', '', '2']);
      await waitForEvents(reloading, 1);
      expect((await drainedEvents(reloading)).map(uuidOf)).toEqual(['new']);
    }
    expect(frames.connections).toBe(2 * rounds);

    await call(other, ['Data_getLoginTrader_REQ', 'other']);
    expect((await drainedEvents(other)).map(uuidOf)).toEqual(['other']);
  });

  test('does not repeat a call', async ({ page }) => {
    const frames = new Frames(page);
    await openBare(page);
    await call(page, ['Data_getKLineData_REQ', 'once', symbols[0], '', '', '1']);
    await page.reload();
    await page.evaluate(
      () =>
        new Promise<void>((resolve) => {
          window.CallBridge.addEventListener('Data_getToken_RES', () => resolve());
          window.CallBridge.invokeMethod('Data_getToken_REQ', 'drain');
        }),
    );
    expect(frames.sent.map(({ args }) => args[0])).toEqual(['once', 'drain']);
  });
});
