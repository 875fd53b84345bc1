import type { Page } from '@playwright/test';
import { klinePeriods, type Candle } from '@varnel/web-client';
import { openDesk, sent } from './support/desk';
import { expect, roots, test } from './support/test';
import { numberOf } from './support/tradeDesk';

// A minute of the market takes three seconds.
test.use({ root: roots.workbench, options: ['--speed', '20'] });

const chart = (page: Page) => page.getByTestId('kline-chart');
const newest = (page: Page, key: string) =>
  page.getByTestId('kline-table').locator('tbody tr').first().locator(`td[data-key="${key}"]`);

async function ask(page: Page, period: string, start: string) {
  const panel = page.getByTestId('klines');
  await panel.locator('[name="startTime"]').fill(start);
  await panel.locator('[name="period"]').selectOption(period);
  await panel.locator('button[type="submit"]').click();
}

test.describe('candles that follow the market', { tag: '@page' }, () => {
  test('of minutes: the last one moves with the quotes, and a new minute begins a new one', async ({ page }) => {
    const frames = await openDesk(page);
    await ask(page, klinePeriods.minute, '20250228');
    const answers = () => frames.replies('Data_getKLineData_RES').map(({ resultData }) => resultData as Candle[]);
    await expect.poll(() => answers().length).toBeGreaterThanOrEqual(2);
    const answered = answers()[1]!;
    const symbol = String(answered[0]!.symbol);
    await expect(chart(page)).toContainText(symbol);

    // The candle of the current minute is not in the answer.
    const count = () => chart(page).getAttribute('data-candles').then(Number);
    await expect.poll(count).toBeGreaterThan(answered.length);
    const volume = await numberOf(newest(page, 'volume'));
    await expect.poll(() => numberOf(newest(page, 'volume'))).not.toBe(volume);
    await expect.poll(count).toBeGreaterThanOrEqual(answered.length + 3);

    // Every finished candle is the terminal's own.
    const last = answers().at(-1)!.at(-1)!;
    const time = String(last.time).replace(/^(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)\d\d$/, '$1-$2-$3 $4:$5');
    const row = page.getByTestId('kline-table').locator('tbody tr').filter({ hasText: time });
    await expect.poll(() => numberOf(row.locator('td[data-key="volume"]'))).toBe(last.volume);
    // Later questions are only about the candles that have ended since.
    const questions = sent(frames, 'Data_getKLineData_REQ').slice(2);
    expect(questions.length).toBeGreaterThan(0);
    for (const { args } of questions) expect(String(args[2]) >= String(answered.at(-1)!.time)).toBe(true);
  });

  test('of days: the candle of today has the figures of the quote', async ({ page }) => {
    const frames = await openDesk(page);
    const symbol = await page.getByTestId('klines').locator('[name="symbol"]').inputValue();
    const quotes = () =>
      frames.received
        .filter(({ event }) => event === 'on_tickUpdate')
        .map(({ args }) => JSON.parse(args[0] as string) as Record<string, number | string>)
        .filter((tick) => tick.symbol === symbol);
    await expect(newest(page, 'time')).toHaveText('2025-03-03');
    const volume = await numberOf(newest(page, 'volume'));
    await expect.poll(() => numberOf(newest(page, 'volume'))).toBeGreaterThan(volume);
    const shown = await numberOf(newest(page, 'volume'));
    expect(quotes().map((tick) => tick.volume)).toContain(shown);
    expect(sent(frames, 'Data_getKLineData_REQ')).toHaveLength(1);
  });

  test('not when the range has an end', async ({ page }) => {
    const frames = await openDesk(page);
    await page.getByTestId('klines').locator('[name="stopTime"]').fill('20250228');
    await ask(page, klinePeriods.day, '20250201');
    await expect.poll(() => frames.replies('Data_getKLineData_RES').length).toBe(2);
    const candles = frames.replies('Data_getKLineData_RES')[1]!.resultData as Candle[];
    await expect(chart(page)).toHaveAttribute('data-candles', String(candles.length));
    const ticks = () => frames.received.filter(({ event }) => event === 'on_tickUpdate').length;
    const before = ticks();
    await expect.poll(ticks).toBeGreaterThan(before + 30);
    await expect(chart(page)).toHaveAttribute('data-candles', String(candles.length));
    await expect(newest(page, 'time')).toHaveText('2025-02-28');
  });
});
