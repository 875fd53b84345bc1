import type { Page } from '@playwright/test';
import { entry, openDesk } from './support/desk';
import { expect, roots, stillMarket, test } from './support/test';
import { numberOf } from './support/tradeDesk';

test.use({ root: roots.workbench, options: stillMarket });

/** Of an entry of the list, as trade.css and panels.css have it. */
const rowHeight = 24;

const count = (page: Page) => page.getByTestId('inspector-count');
const bytes = (page: Page) => count(page).getAttribute('data-bytes').then(Number);
const total = async (page: Page) => Number(/\/ ([\d,]+)/.exec(await count(page).innerText())![1]!.replaceAll(',', ''));

/** Calls that the page's own parts know nothing of. Their answers are recorded all the same. */
function callMany(page: Page, method: string, calls: number, ...args: unknown[]): Promise<void> {
  return page.evaluate(
    ([name, number, all]) => {
      for (let call = 0; call < number; ++call) window.CallBridge.invokeMethod(name, `many ${call}`, ...all);
    },
    [method, calls, args] as const,
  );
}

test.describe('the inspector', { tag: '@page' }, () => {
  test('stays within its budget, draws only what is in sight, and counts everything', async ({ page }) => {
    await openDesk(page);
    const before = await total(page);
    // Some 400 KB each: more than the budget, and less than the 16 MiB that may wait for a page that reads slowly.
    await callMany(page, 'Data_getEntrustList_REQ', 30, '{}', 0, 0);
    await expect.poll(() => total(page)).toBe(before + 30);
    expect(await bytes(page)).toBeLessThanOrEqual(8 * 2 ** 20);
    await callMany(page, 'Data_getToken_REQ', 1500);
    await expect.poll(() => total(page)).toBe(before + 1530);
    await expect(count(page)).toContainText(/1,0\d\d \//);
    expect(await bytes(page)).toBeLessThanOrEqual(8 * 2 ** 20);
    expect(await page.getByTestId('entry').count()).toBeLessThan(60);
  });

  test('shows the beginning of a long text, and how long it was', async ({ page }) => {
    await openDesk(page);
    await callMany(page, 'Data_getEntrustList_REQ', 1, '{}', 0, 0);
    await entry(page, 'event', 'Data_getEntrustList_RES').first().getByRole('button').click();
    const detail = page.getByTestId('entry-detail').locator('pre');
    await expect(detail).toContainText('{"code":"0"');
    await expect(detail).toContainText(/共 [\d,]{6,} 字符，保留前 65,536 个/);
  });

  test('shows nothing new while it is paused, and everything after that', async ({ page }) => {
    await openDesk(page);
    const inspector = page.getByTestId('inspector');
    const before = await total(page);
    await inspector.getByLabel('暂停').check();
    await callMany(page, 'Data_getToken_REQ', 5);
    await page.getByTestId('free-call').getByRole('button', { name: '发送' }).click();
    await page.evaluate(
      () =>
        new Promise<void>((resolve) => {
          window.CallBridge.addEventListener('Data_getLoginTrader_RES', () => resolve());
          window.CallBridge.invokeMethod('Data_getLoginTrader_REQ', 'last');
        }),
    );
    expect(await total(page)).toBe(before);
    await inspector.getByLabel('暂停').uncheck();
    await expect.poll(() => total(page)).toBe(before + 8); // five answers, a call and its answer, the last answer
  });

  test('goes on showing the same rows to whoever has scrolled down', async ({ page }) => {
    await openDesk(page);
    await callMany(page, 'Data_getToken_REQ', 300);
    const list = page.getByTestId('inspector').locator('ol');
    await expect.poll(() => list.evaluate(({ scrollHeight }) => scrollHeight)).toBeGreaterThan(300 * rowHeight);
    await list.evaluate((element, top) => (element.scrollTop = top), 100 * rowHeight);
    const first = async () => {
      const top = (await list.boundingBox())!.y;
      for (const each of await page.getByTestId('entry').all()) {
        const box = (await each.boundingBox())!;
        if (box.y >= top) return Math.round(box.y - top);
      }
      return undefined;
    };
    const place = await first();
    const height = await list.evaluate(({ scrollHeight }) => scrollHeight);
    await callMany(page, 'Data_getToken_REQ', 10);
    await expect.poll(() => list.evaluate(({ scrollHeight }) => scrollHeight)).toBe(height + 10 * rowHeight);
    expect(await list.evaluate(({ scrollTop }) => scrollTop)).toBe(110 * rowHeight);
    expect(await first()).toBe(place);
    expect(await numberOf(page.getByTestId('unanswered'))).toBe(0);
  });
});
