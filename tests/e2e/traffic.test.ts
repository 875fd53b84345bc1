import type { Page } from '@playwright/test';
import { readFileSync } from 'node:fs';
import { expectAccessible } from './support/axe';
import { expect, stillMarket, test } from './support/test';

test.use({ options: stillMarket });

/** Calls as a page does, without waiting for the answer. */
function call(page: Page, method: string, ...args: unknown[]): Promise<void> {
  return page.evaluate(([name, all]) => window.CallBridge.invokeMethod(name, ...all), [method, args] as const);
}

const row = (inspector: Page, name: string) =>
  inspector.getByTestId('row').and(inspector.locator(`[data-name="${name}"]`));

async function openInspector(page: Page, url: string): Promise<Page> {
  const inspector = await page.context().newPage();
  await inspector.goto(`${url}inspector`);
  await expect(inspector.getByTestId('connection')).toHaveText('已连接');
  return inspector;
}

test.describe('the inspector of the simulator', { tag: '@page' }, () => {
  let inspector: Page;

  test.beforeEach(async ({ barePage, url }) => {
    await call(barePage, 'Data_getLoginTrader_REQ', 'before');
    inspector = await openInspector(barePage, url);
  });

  test.afterEach(() => inspector.close());

  test('shows what came before it was opened, and a call with its host calls, its reply and their times', async ({
    barePage,
  }) => {
    await expect(row(inspector, 'Data_getLoginTrader_RES')).toBeVisible();
    await call(barePage, 'Data_getToken_REQ', 'u1');
    await row(inspector, 'Data_getToken_RES').getByRole('button').click();
    const followed = inspector.getByTestId('followed-row');
    const names = () => followed.evaluateAll((rows) => rows.map((each) => (each as HTMLElement).dataset.name));
    await expect.poll(names).toEqual(['Data_getToken_REQ', 'QvCore::getCurrentToken', 'Data_getToken_RES']);
    for (const index of [0, 2]) await expect(followed.nth(index)).toContainText(/u1.* B.*\d ms/s);
    await expect(inspector.getByTestId('row-details')).toContainText('"uuid": "u1"');
    await followed.nth(0).getByRole('button').click();
    await expect(inspector.getByTestId('operations')).toHaveText('QvCore::getCurrentToken1');
    const figures = inspector.getByTestId('methods').locator('tr[data-name="Data_getToken_REQ"] td');
    await expect(figures).toHaveText(['1', /^[\d.]+ \/ [\d.]+ \/ [\d.]+$/, /^[\d.]+ \/ [\d.]+ \/ [\d.]+$/]);
  });

  test('follows an order to its pushes', async ({ barePage }) => {
    await call(
      barePage,
      'Trade_insertOrder_REQ',
      'u1',
      '880010001',
      '609801.SH',
      '',
      'Buy',
      'Limit',
      '18.00',
      '100',
      '',
    );
    await row(inspector, 'Trade_insertOrder_REQ').getByRole('button').click();
    const followed = inspector.getByTestId('followed');
    for (const name of ['VarnelTradeLogic::orders', 'OrderEntered', 'Trade_insertOrder_RES', 'on_entrustUpdate'])
      await expect(followed.locator(`[data-name="${name}"]`).first()).toBeAttached();
  });

  test('warns of a call that nobody handles', async ({ barePage }) => {
    await expect(inspector.getByTestId('warning')).toHaveCount(0);
    await call(barePage, 'Data_nothing_REQ', 'u1');
    const warning = inspector.getByTestId('warning');
    await expect(warning).toContainText('Data_nothing_REQ');
    await expect(warning).toContainText('无人处理');
    await warning.getByRole('button').click();
    await expect(inspector.getByTestId('row-details')).toContainText('u1');
  });

  test('filters by page, kind, method and text, and rests while it is paused', async ({ barePage, recorder }) => {
    await recorder.call('Data_getTraderList_REQ', 'second');
    await call(barePage, 'Data_getTraderList_REQ', 'first');
    const tools = inspector.getByTestId('tools');
    const shown = inspector.getByTestId('row').and(inspector.locator('[data-name^="Data_getTraderList"]'));
    await expect(shown).toHaveCount(4);
    await tools.getByTestId('filter-page').selectOption('页面 2');
    await expect(shown).toHaveCount(2);
    await expect(shown.first()).toContainText('second');
    await tools.getByRole('checkbox', { name: '应答' }).uncheck();
    await expect(shown).toHaveCount(1);
    await tools.getByRole('checkbox', { name: '应答' }).check();
    await tools.getByTestId('filter-page').selectOption('所有页面');
    await tools.getByLabel('查找').fill('FIRST');
    await expect(inspector.getByTestId('row')).toHaveCount(2);
    await tools.getByLabel('查找').fill('');
    await tools.getByLabel('方法').selectOption('Data_getLoginTrader_REQ');
    await expect(inspector.getByTestId('row')).toHaveCount(2);

    await tools.getByLabel('暂停').check();
    await call(barePage, 'Data_getLoginTrader_REQ', 'while paused');
    await recorder.call('Data_getLoginTrader_REQ', 'also');
    await expect(inspector.getByTestId('row')).toHaveCount(2);
    await tools.getByLabel('暂停').uncheck();
    await expect(inspector.getByTestId('row')).toHaveCount(6);
    await tools.getByRole('button', { name: '清空' }).click();
    await expect(inspector.getByTestId('row')).toHaveCount(0);
  });

  test('saves everything as JSON Lines', async ({ barePage }) => {
    await call(barePage, 'Data_getToken_REQ', 'u1');
    await expect(row(inspector, 'Data_getToken_RES')).toContainText('ms');
    const download = inspector.waitForEvent('download');
    await inspector.getByRole('button', { name: '保存为 JSON Lines' }).click();
    const lines = readFileSync(await (await download).path(), 'utf8')
      .trimEnd()
      .split('\n');
    const entries = lines.map((line) => JSON.parse(line) as { kind: string; uuid?: string; number: number });
    expect(entries.filter(({ uuid }) => uuid === 'u1').map(({ kind }) => kind)).toEqual(
      expect.arrayContaining(['call', 'callDone', 'event', 'eventDelivered']),
    );
    const numbers = entries.map(({ number }) => number);
    expect(numbers).toEqual([...numbers].sort((a, b) => a - b));
  });

  test('draws only what is in sight of thousands of calls', async ({ barePage }) => {
    await barePage.evaluate(() => {
      for (let number = 0; number < 3000; ++number)
        window.CallBridge.invokeMethod('Data_getToken_REQ', `many ${number}`);
    });
    await expect(inspector.getByTestId('methods').locator('tr[data-name="Data_getToken_REQ"] td').first()).toHaveText(
      '3000',
    );
    expect(await inspector.getByTestId('row').count()).toBeLessThan(80);
    await expect(inspector.getByTestId('lost')).toHaveCount(0);
  });

  test('breaks no rule of accessibility, in both languages and themes', async ({ barePage }) => {
    await call(barePage, 'Data_nothing_REQ', 'u1');
    await call(barePage, 'Data_getToken_REQ', 'u1');
    await row(inspector, 'Data_getToken_REQ').getByRole('button').click();
    await expect(inspector.getByTestId('warning')).toBeVisible();
    for (const theme of ['light', 'dark']) {
      await inspector.getByTestId('theme').selectOption(theme);
      await expectAccessible(inspector, '#inspector', theme);
    }
    await inspector.getByTestId('language').selectOption('en');
    await expect(inspector.getByRole('heading', { name: 'Inspector' })).toBeVisible();
    await expectAccessible(inspector, '#inspector', 'English');
  });
});
