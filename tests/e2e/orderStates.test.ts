import { orderStatuses } from '@varnel/web-client';
import { cell, openDesk, openView } from './support/desk';
import { playing, scenario } from './support/scenario';
import { expect, roots, test } from './support/test';
import { placeOrder, showOrders } from './support/tradeDesk';
import { market, orderFor, placed, pushed, reached, statusOf } from './support/trading';

/** Options for the default scenario with other order delays, each of a fixed length. */
function delayed(delays: Record<string, number>, start = scenario.start): string[] {
  const fixed = Object.entries(delays).map(([key, time]) => [key, { shortest: time, longest: time }]);
  return playing({ ...scenario, start, orderDelays: Object.fromEntries(fixed) });
}

test.describe('when the way to the exchange is slow', () => {
  // Each state lasts longer than a batch of pushes is open.
  test.use({ options: [...delayed({ send: 6000, accept: 6000, cancel: 6000 }), '--speed', '4'] });

  test('pages see an order in each of its states', async ({ recorder }) => {
    const id = await placed(recorder, orderFor(await market(recorder)));
    await reached(recorder, id, orderStatuses.reported);
    await recorder.envelope('Trade_reqCancelOrder_REQ', id);
    await reached(recorder, id, orderStatuses.cancelled);
    expect(pushed(recorder, id).map(statusOf)).toEqual([
      orderStatuses.toBeSent,
      orderStatuses.sent,
      orderStatuses.reported,
      orderStatuses.toBeCancelled,
      orderStatuses.cancelled,
    ]);
  });
});

test.describe('when a cancel is slow', { tag: '@page' }, () => {
  // Just before the market opens again, which it does while the cancel is on its way.
  const options = [...delayed({ send: 1, accept: 10, cancel: 240_000 }, '2025-03-03 12:56:30'), '--speed', '8'];
  test.use({ root: roots.workbench, options });

  test('it can come too late, and the desk says so', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const id = await placeOrder(page, frames, { price: 'highest', qty: '100' });
    await showOrders(page, 'latest');
    const status = cell(page, 'blotter-table', id, 'status');
    await expect(status).toHaveText('已报');
    await page.getByRole('button', { name: `撤单 ${id}` }).click();
    await expect(page.getByTestId('cancel-outcome')).toContainText('已提交撤单 1 笔');
    await expect(status).toHaveText('待撤');
    await expect(page.getByRole('button', { name: `撤单 ${id}` })).toHaveCount(0);
    await expect(status).toHaveText('全部成交');
    await expect(cell(page, 'blotter-table', id, 'remark')).toHaveText('撤单太晚，委托已全部成交');
    await expect(status).toHaveText('全部成交');
  });
});
