import type { Page } from '@playwright/test';
import { candleFields, klinePeriods } from '@varnel/web-client';
import { openDesk, openView, sent, views } from './support/desk';
import { fundAccounts, login, scenario, symbols, traderIds } from './support/scenario';
import { expect, roots, stillMarket, test } from './support/test';

// Calls and events are counted, so the market must not cause any.
test.use({ root: roots.workbench, options: stillMarket });

async function sendFreely(page: Page, method: string, args: string) {
  const form = page.getByTestId('free-call');
  await form.getByLabel('方法').fill(method);
  await form.getByLabel('参数').fill(args);
  await form.getByRole('button', { name: '发送' }).click();
}

function accountRows(page: Page) {
  return page.getByTestId('accounts').locator('tbody tr');
}

const rowTexts = (accounts: ReturnType<typeof fundAccounts>) =>
  accounts.map(({ fundAccount, fundAccountName }) => `${fundAccount}${fundAccountName}`);

test.describe('the desk', () => {
  test('opens with a few calls and shows the answers', async ({ page }) => {
    const faults: string[] = [];
    page.on('pageerror', (error) => faults.push(error.message));
    page.on('console', (message) => message.type() === 'error' && faults.push(message.text()));
    const frames = await openDesk(page);

    await expect(page.getByTestId('login-trader')).toHaveText(login.account);
    await expect(page.getByTestId('token')).toHaveText(login.token);
    await expect(page.getByTestId('traders').locator('li')).toHaveText(traderIds);
    await expect(accountRows(page)).toHaveText(rowTexts(fundAccounts()));
    await expect(page.getByTestId('station-answer')).toHaveText(scenario.station);

    const watched = await page.getByTestId('watch-table').locator('tbody tr').count();
    expect(watched).toBeGreaterThan(3);
    const methods = {
      Data_getToken: 1,
      Data_getLoginTrader: 1,
      Data_getTraderList: 1,
      Data_getFundAccountList: 1,
      Data_getOPStation: 1,
      Data_getKLineData: 1,
      Data_getSetting: 6, // language, theme, layout, the watch list, its columns and those of the candles
      Data_getSymbolListWithDetail: 1, // the first watch list is made of these
      Data_getSymbolDetail: 1,
      Data_getCurrentTick: watched,
      Sub_subscribe: 1,
    };
    for (const [method, count] of Object.entries(methods)) {
      const calls = frames.sent.filter(({ invoke }) => invoke === `${method}_REQ`);
      const replies = frames.replies(`${method}_RES`);
      expect(calls, method).toHaveLength(count);
      expect(replies.map(({ code, uuid }) => [code, uuid])).toEqual(calls.map(({ args: [uuid] }) => ['0', uuid]));
    }
    expect(
      frames.sent.map(({ invoke }) => invoke.replace('_REQ', '')).filter((method) => !(method in methods)),
    ).toEqual([]);
    expect(faults).toEqual([]);
  });

  test('shows that it is a simulation', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    await expect(page.getByRole('banner')).toContainText('模拟环境');
  });

  test('shows the fund accounts of the chosen property', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    for (const property of ['stock', 'futures'] as const) {
      const expected = fundAccounts(property);
      expect(expected.length).toBeGreaterThan(0);
      await page.getByLabel('属性').selectOption(property === 'stock' ? '股票' : '期货');
      await expect(accountRows(page)).toHaveText(rowTexts(expected));
    }
  });

  const stations: [string, string, string][] = [
    ['A', 'B', ';A;B'],
    ['A', '', ';A'],
    ['', 'B', ';B'],
    ['', '', ''],
    ['站点"一"', '\\', ';站点"一";\\'],
  ];
  test('asks for the operator station with both inputs', async ({ page }) => {
    await openDesk(page);
    const panel = page.getByTestId('station');
    for (const [first, second, added] of stations) {
      await panel.getByLabel('站点信息一').fill(first);
      await panel.getByLabel('站点信息二').fill(second);
      await panel.getByRole('button', { name: '查询' }).click();
      await expect(page.getByTestId('station-answer')).toHaveText(scenario.station + added);
    }
  });

  test('labels every control', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    for (const view of views) {
      await openView(page, view);
      // One snapshot of all names is much faster than a question for each control.
      const snapshot = (await page.locator('body').ariaSnapshot()).split('\n');
      const controls = snapshot.filter((line) =>
        /^\s*- (button|textbox|combobox|checkbox|radio|spinbutton|tab)\b/.test(line),
      );
      expect(controls.length, view).toBeGreaterThan(10);
      expect(
        controls.filter((line) => !/^\s*- \w+ "\s*\S/.test(line)),
        view,
      ).toEqual([]);
      const areas = await page.locator('[tabindex="0"]:not([role="tab"])').filter({ visible: true }).all();
      await Promise.all(areas.map((area) => expect(area).toHaveAccessibleName(/\S/)));
    }
  });

  test('fits windows of 1280, 1000 and 600 pixels', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    for (const view of views) {
      await page.setViewportSize({ width: 1280, height: 800 });
      await openView(page, view);
      for (const width of [1280, 1000, 600]) {
        await page.setViewportSize({ width, height: 800 });
        const overflow = () => page.evaluate(() => document.documentElement.scrollWidth - window.innerWidth);
        await expect.poll(overflow, `${view} at ${width}`).toBeLessThanOrEqual(0);
      }
    }
  });

  test('shows when the connection has ended', { tag: '@page' }, async ({ page, simulator }) => {
    await openDesk(page);
    await simulator.stop();
    await expect(page.getByTestId('connection')).toContainText('已断开');
    await expect(page.getByTestId('connection')).toContainText('1001');
  });
});

test.describe('K-lines', { tag: '@page' }, () => {
  async function ask(page: Page, symbol: string, start: string, stop: string, period: '1' | '2') {
    const panel = page.getByTestId('klines');
    await panel.getByLabel('证券标识').fill(symbol);
    await panel.getByLabel('开始').fill(start);
    await panel.getByLabel('结束').fill(stop);
    await panel.getByLabel('周期').selectOption(period);
    await panel.getByRole('button', { name: '查询' }).click();
  }

  const queries: [string, '1' | '2', string, string][] = [
    ['the days of February', '2', '20250201', '20250228'],
    ['the minutes of a morning', '1', '20250228093000', '20250228113000'],
    ['the longest answer', '1', '', '20250303093000'],
  ];
  for (const [name, period, start, stop] of queries) {
    test(`${name}: chart and table show all candles of the reply`, async ({ page }) => {
      const frames = await openDesk(page);
      const symbol = symbols[1]!;
      await ask(page, symbol, start, stop, period);
      await expect(page.getByTestId('kline-chart')).toContainText(
        `${symbol} ${period === klinePeriods.minute ? '分钟线' : '日线'}`,
      );

      await expect.poll(() => frames.replies('Data_getKLineData_RES').length).toBe(2); // the one on opening, and this
      const replies = frames.replies('Data_getKLineData_RES');
      const candles = replies[1]!.resultData as { close: number; symbol: string }[];
      expect(candles.length).toBeGreaterThan(10);
      expect(Object.keys(candles[0]!).sort()).toEqual(Object.values(candleFields).sort());
      expect(new Set(candles.map((candle) => candle.symbol))).toEqual(new Set([symbol]));

      await expect(page.getByTestId('kline-chart')).toHaveAttribute('data-candles', String(candles.length));
      await expect(page.getByTestId('kline-table-count')).toHaveText(`${candles.length.toLocaleString('zh-CN')} 条`);
      // Newest first: the closing prices of the ends are those of the reply.
      const close = page.getByTestId('kline-table').locator('td[data-key="close"]');
      await expect(close.first()).toHaveText(candles[candles.length - 1]!.close.toFixed(2));
      await page.getByRole('region', { name: /明细$/ }).evaluate((list) => list.scrollTo(0, list.scrollHeight));
      await expect(close.last()).toHaveText(candles[0]!.close.toFixed(2));
    });
  }

  test('are drawn as rising and falling candles', async ({ page }) => {
    await openDesk(page);
    const colours = () =>
      page.getByTestId('kline-chart').evaluate((chart) => {
        const seen = { up: 0, down: 0 };
        const style = getComputedStyle(chart);
        const colourOf = (name: string) => parseInt(style.getPropertyValue(name).trim().slice(1), 16);
        const colours = { up: colourOf('--chart-up'), down: colourOf('--chart-down') };
        for (const canvas of chart.querySelectorAll('canvas')) {
          // Rises are hollow, so that few pixels are red.
          const { data } = canvas.getContext('2d')!.getImageData(0, 0, canvas.width, canvas.height);
          for (let at = 0; at < data.length; at += 4) {
            const colour = (data[at]! << 16) | (data[at + 1]! << 8) | data[at + 2]!;
            if (data[at + 3] === 255 && colour === colours.up) seen.up += 1;
            if (data[at + 3] === 255 && colour === colours.down) seen.down += 1;
          }
        }
        return Math.min(seen.up, seen.down);
      });
    await expect.poll(colours).toBeGreaterThan(100);
  });

  test('that do not exist get no answer, and the next call does', async ({ page }) => {
    const frames = await openDesk(page);
    await ask(page, 'NOSUCH.SH', '', '', '2');
    // Another call after it is answered, this one is not.
    await ask(page, symbols[0]!, '20250201', '20250228', '2');
    await expect.poll(() => frames.replies('Data_getKLineData_RES').length).toBe(2);
    const calls = frames.sent.filter(({ invoke }) => invoke === 'Data_getKLineData_REQ');
    expect(calls).toHaveLength(3);
  });

  test('without an answer end in a time-out', async ({ page }) => {
    await page.clock.install();
    const frames = await openDesk(page);
    await ask(page, 'NOSUCH.SH', '', '', '2');
    await expect.poll(() => sent(frames, 'Data_getKLineData_REQ').length).toBe(2);
    await page.clock.fastForward(10_000);
    await expect(page.getByTestId('klines').getByRole('alert')).toHaveText('10 秒内无应答');
  });
});

test.describe('a call by hand', () => {
  const answer = (page: Page) => page.getByTestId('free-answer');

  test('shows its answer, formatted', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    await expect(answer(page)).toHaveCount(0);
    await sendFreely(page, 'Data_getFundAccountList_REQ', '["mine", 2]');
    const envelope = { code: '0', msg: '', resultData: fundAccounts('futures'), uuid: 'mine' };
    await expect(answer(page)).toHaveText(JSON.stringify(envelope, null, 2));
  });

  for (const method of ['Data_getBuffer_REQ', 'Data_saveBuffer_REQ', 'Data_getTOKEN_REQ', 'NoSuch_call_REQ']) {
    test(`gets no answer to ${method}, because nobody handles it`, async ({ page }) => {
      const frames = await openDesk(page);
      await sendFreely(page, method, '["u1"]');
      await expect(answer(page)).toHaveText('尚无应答');
      await page.evaluate(() => window.CallBridge.invokeMethod('Data_getToken_REQ', 'later'));
      await expect.poll(() => frames.replies('Data_getToken_RES').some(({ uuid }) => uuid === 'later')).toBe(true);
      await expect(answer(page)).toHaveText('尚无应答');
      expect(frames.received.map(({ event }) => event)).not.toContain(method.replace('_REQ', '_RES'));
      expect(sent(frames, method)).toEqual([{ invoke: method, args: ['u1'] }]);
    });
  }

  test('shows the empty reply to too few arguments', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    await sendFreely(page, 'Data_getOPStation_REQ', '["u1", "A"]');
    await expect(answer(page)).toContainText('（空）');
  });

  test('shows the beginning of a long answer, and how long it was', { tag: '@page' }, async ({ page }) => {
    await openDesk(page);
    await sendFreely(page, 'Data_getEntrustList_REQ', '["u1", "{}", 0, 0]');
    await expect(answer(page)).toContainText('{"code":"0"');
    await expect(answer(page)).toContainText(/共 [\d,]{6,} 字符，显示前 65,536 个/);
  });

  test('can be followed in the inspector, to which the panel links', { tag: '@page' }, async ({ page, context }) => {
    await openDesk(page);
    await sendFreely(page, 'Data_getFundAccountList_REQ', '["mine", 2]');
    const opened = context.waitForEvent('page');
    await page.getByTestId('free-call').getByRole('link', { name: '调用记录' }).click();
    const inspector = await opened;
    await inspector.getByTestId('tools').getByLabel('查找').fill('mine');
    await expect(inspector.getByTestId('row').and(inspector.locator('[data-kind="call"]'))).toHaveCount(1);
  });

  test('refuses a text that is not an argument list, and shows why', { tag: '@page' }, async ({ page }) => {
    const frames = await openDesk(page);
    const tokens = () => sent(frames, 'Data_getToken_REQ').length;
    const before = tokens();
    const form = page.getByTestId('free-call').locator('form'); // the answer stands below it
    for (const bad of ['', '["u1"', '{"0":"u1"}', '"u1"']) {
      await form.getByLabel('参数').fill(bad);
      await expect(form.getByRole('button', { name: '发送' })).toBeDisabled();
      await expect(form.getByRole('status')).not.toBeEmpty();
      await form.getByLabel('方法').press('Enter');
    }
    await sendFreely(page, 'Data_getToken_REQ', '["u1"]');
    await expect(form.getByRole('status')).toBeEmpty();
    await expect.poll(tokens).toBe(before + 1);
  });
});
