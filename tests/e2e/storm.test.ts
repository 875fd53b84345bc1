import { cell, openDesk, openView, rows } from './support/desk';
import { Storm } from './support/storm';
import { expect, roots, test } from './support/test';
import { showBook, showOrders } from './support/tradeDesk';
import { fieldOf, numberOf } from './support/tradeDesk';

test.use({ root: roots.workbench, options: ['--speed', '0.1'] });

/** As in docs/performance.md. */
const rates = { ticks: 200, orders: 1000 };

test.describe('in a storm of quotes and orders', { tag: '@page' }, () => {
  let storm: Storm;

  test.beforeEach(async ({ url }) => {
    storm = await Storm.start(url);
  });

  test.afterEach(() => storm.stop());

  test('every update arrives, and the tables show the last state', async ({ page }) => {
    const frames = await openDesk(page, storm.url);
    await openView(page, '交易');
    await fieldOf(page, 'symbol').fill('609801.SH');
    await expect(page.getByTestId('ladder').locator('tbody tr')).not.toHaveCount(0);
    const openBefore = await numberOf(page.getByTestId('cancel-all'));
    await showOrders(page, 'latest');

    const pushed = (event: string) => frames.received.filter((frame) => frame.event === event).length;
    storm.begin(rates);
    await expect.poll(() => pushed('on_tickUpdate')).toBeGreaterThan(600);
    await expect.poll(() => pushed('on_entrustUpdate')).toBeGreaterThan(15);
    const last = storm.calm();

    const updates = () =>
      frames.received
        .filter(({ event }) => event === 'on_entrustUpdate')
        .flatMap(({ args }) => JSON.parse(args[0] as string) as unknown[]).length;
    await expect.poll(updates).toBeGreaterThanOrEqual(last.pushed.orders);
    const newest = [...last.orders.keys()].at(-1)!;
    await expect(cell(page, 'blotter-table', newest, 'status')).toHaveText('全部成交');
    await expect.poll(() => numberOf(page.getByTestId('blotter-table-count'))).toBe(500);
    await expect.poll(() => numberOf(page.getByTestId('cancel-all'))).toBe(openBefore); // all are filled
    await showBook(page, 'deals');
    await expect.poll(() => numberOf(page.getByTestId('deal-table-count'))).toBe(500);
    await expect(rows(page, 'deal-table').first()).toContainText(newest);
    const tick = last.ticks.get('609801.SH') as unknown as { askPrices: number[] };
    await expect(page.getByTestId('ladder').locator('tr[data-level="ask 1"]')).toHaveAttribute(
      'data-price',
      tick.askPrices[0]!.toFixed(2),
    );
  });
});
