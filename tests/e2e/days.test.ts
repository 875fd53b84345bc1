import type { Page } from '@playwright/test';
import type { Position } from '@varnel/web-client';
import { ask } from './support/ask';
import { command } from './support/control';
import { openDesk, openView, rows } from './support/desk';
import { fundAccounts, symbols } from './support/scenario';
import { expect, roots, stillMarket, test } from './support/test';
import { fieldOf, numberOf, showOrders } from './support/tradeDesk';

test.use({ root: roots.workbench, options: stillMarket });

const symbol = symbols[0]!;
const candle = (page: Page, row: number, key: string) =>
  rows(page, 'kline-table').nth(row).locator(`td[data-key="${key}"]`);
const quoteTime = (page: Page) => rows(page, 'watch-table').first().locator('td[data-key="time"]');
const ladder = (page: Page) => page.getByTestId('ladder');

test.describe('the desk over a day', { tag: '@page' }, () => {
  test('has no candle of a day before its opening', async ({ page, url }) => {
    await openDesk(page);
    await expect(candle(page, 0, 'time')).toHaveText('2025-03-03');
    for (const time of ['09:00:00', '09:16:00']) {
      await command(url, `jump 2025-03-04 ${time}`);
      await expect(quoteTime(page)).toHaveText(time);
      await expect(candle(page, 0, 'time')).toHaveText('2025-03-03');
    }
    await command(url, 'jump 09:25:00');
    await expect(candle(page, 0, 'time')).toHaveText('2025-03-04');
    for (const key of ['open', 'high', 'low', 'volume'])
      expect(await numberOf(candle(page, 0, key)), key).toBeGreaterThan(0);
  });

  test('has all candles when they are shown again on a later day', async ({ page, url }) => {
    await openDesk(page);
    await expect(candle(page, 0, 'time')).toHaveText('2025-03-03');
    await openView(page, '交易');
    await command(url, 'jump 2025-03-05 10:00:00');
    await openView(page, '总览');
    for (const [row, day] of ['2025-03-05', '2025-03-04', '2025-03-03', '2025-02-28'].entries())
      await expect(candle(page, row, 'time')).toHaveText(day);
  });

  test('says what the market does', async ({ page, url }) => {
    await openDesk(page);
    await openView(page, '交易');
    await fieldOf(page, 'symbol').fill(symbol);
    await expect(ladder(page).locator('tbody tr')).toHaveCount(10);
    const phase = ladder(page).getByTestId('market-phase');
    await expect(phase).toHaveCount(0);
    await command(url, 'jump 12:00:00');
    await expect(phase).toHaveText('午间休市');
    await command(url, 'jump close');
    await expect(phase).toHaveText('已收盘');
    await command(url, 'jump 2025-03-04 09:00:00');
    await expect(phase).toHaveText('今日尚无成交');
    await expect(ladder(page)).toContainText('暂无买卖盘');
    await command(url, 'jump 09:16:00');
    await expect(phase).toContainText('集合竞价');
    await expect(ladder(page).locator('tbody tr')).toHaveCount(1);
    await command(url, 'jump 09:25:00');
    await expect(phase).toHaveText('已开盘，连续竞价 09:30 开始');
    await command(url, 'jump 09:31:00');
    await expect(phase).toHaveCount(0);
    await command(url, `halt ${symbol}`);
    await command(url, 'jump 09:33:00');
    await expect(phase).toHaveText('行情停在 09:31:00，可能停牌');
    await command(url, 'jump 12:00:00');
    await expect(phase).toHaveText('行情停在 09:31:00，可能停牌');
  });

  test('has the orders of the new day only, in lists that were open over night', async ({ page, url }) => {
    await openDesk(page);
    await openView(page, '委托与成交');
    // A jump over the settlement and the morning at once could bring the pushes of the one after the other.
    const open = page.getByTestId('order-table').locator('td[data-key="status"]', { hasText: /^(已报|部分成交)$/ });
    await command(url, 'jump 2025-03-03 16:05:00');
    await expect(open).toHaveCount(0);
    await command(url, 'jump 2025-03-04 09:00:00');
    await expect(rows(page, 'order-table')).toHaveCount(0);
    await openView(page, '资产与持仓');
    await page.getByRole('tab', { name: '交易' }).click();
    await showOrders(page, 'latest');
    await expect(page.getByTestId('blotter')).toContainText('无记录');
    const [account] = fundAccounts();
    await ask(page, 'Trade_insertOrder_REQ', account!.fundAccount, symbol, 'SH', 'Buy', 'Limit', '18.00', '100', 'new');
    await expect(rows(page, 'blotter-table')).toHaveCount(1);
    await command(url, 'jump 2025-03-04 16:05:00');
    await expect(rows(page, 'blotter-table')).toContainText('已撤');
    await command(url, 'jump 2025-03-05 09:00:00');
    await expect(page.getByTestId('blotter')).toContainText('无记录');
  });

  test('shows positions with the prices of now, also beside the ticket', async ({ page, url }) => {
    await openDesk(page);
    await openView(page, '交易');
    await command(url, 'jump 11:00:00');
    const accounts = fundAccounts().map(({ fundAccount }) => fundAccount);
    const held = await ask<Position[]>(page, 'Data_getPositionList_REQ', accounts.join(','), '');
    const last = rows(page, 'trade-positions').locator('td[data-key="lastPrice"]');
    const shown = async () => (await last.allInnerTexts()).map((text) => Number(text.replaceAll(',', '')));
    await expect.poll(shown).toEqual(held.map(({ lastPrice }) => lastPrice));
  });
});

test.describe('without a connection the desk', { tag: '@page' }, () => {
  test('says that it shows what was before, and offers to begin again', async ({ page, url }) => {
    await openDesk(page);
    await expect(page.getByTestId('lost')).toHaveCount(0);
    await command(url, 'drop');
    await expect(page.getByTestId('lost')).toContainText('不再更新');
    await page.getByRole('button', { name: '刷新页面' }).click();
    await expect(page.getByTestId('connection')).toHaveText('已连接');
    await expect(page.getByTestId('lost')).toHaveCount(0);
    await openView(page, '交易');
  });
});

test.describe('while candles are not answered the desk', { tag: '@page' }, () => {
  test('says for which security it waits, and then that there was no answer', async ({ page, url }) => {
    await page.clock.install();
    await openDesk(page);
    await command(url, 'fault silent-klines');
    await page.getByTestId('watch-table').getByRole('button', { name: symbols[1]!, exact: true }).click();
    const chart = page.getByTestId('kline-chart');
    await expect(chart.getByRole('status')).toHaveText(`等待 ${symbols[1]} 的K线…`);
    await page.clock.fastForward(10_000);
    await expect(page.getByTestId('klines').getByRole('alert')).toHaveText('10 秒内无应答');
  });
});
