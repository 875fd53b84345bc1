import type { Page } from '@playwright/test';
import { orderStatuses, type Entrust, type EntrustList } from '@varnel/web-client';
import { ask } from './support/ask';
import { cell, openDesk, openView, rows, sent } from './support/desk';
import { fundAccounts, symbols } from './support/scenario';
import { expect, roots, stillMarket, test } from './support/test';
import {
  confirmButton,
  fieldOf,
  fillTicket,
  numberOf,
  outcomeOf,
  placeOrder,
  reviewButton,
  showBook,
  showOrders,
  ticketOf,
  type Typed,
} from './support/tradeDesk';

test.use({ root: roots.workbench });

const account = fundAccounts()[0]!.fundAccount;
const ownTag = /^manual-\d{17}-\d+$/;

async function openTrade(page: Page) {
  const frames = await openDesk(page);
  await openView(page, '交易');
  return frames;
}

test.describe('the ticket', { tag: '@page' }, () => {
  test('places an order after confirmation, and the order can be cancelled', async ({ page }) => {
    const frames = await openTrade(page);
    const price = await fillTicket(page, frames, { price: 'lowest', qty: '100' });
    await expect(page.getByTestId('ticket-tradable')).toHaveText(/^\d+$/);
    await reviewButton(page).click();
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
    const question = ticketOf(page).getByRole('group', { name: '确认' });
    for (const text of [account, '买入', symbols[0]!, '限价', price, '100', 'manual-'])
      await expect(question).toContainText(text);
    await question.getByRole('button', { name: '返回' }).click();
    await expect(confirmButton(page)).toHaveCount(0);

    const id = await placeOrder(page, frames, { price: 'lowest', qty: '100' });
    const calls = sent(frames, 'Trade_insertOrder_REQ').map(({ args: [, ...args] }) => args);
    expect(calls).toEqual([[account, symbols[0], 'SH', 'Buy', 'Limit', price, '100', expect.stringMatching(ownTag)]]);
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已报');
    await page.getByRole('button', { name: `撤单 ${id}` }).click();
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveCount(0); // it is no longer open
    await showOrders(page, 'latest');
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已撤');
    await expect(page.getByRole('button', { name: `撤单 ${id}` })).toHaveCount(0);
  });

  test('gives each order a tag of its own, unless the user has typed one', async ({ page }) => {
    const frames = await openTrade(page);
    for (const tag of ['', '', 'mine']) await placeOrder(page, frames, { qty: '100', tag });
    const tags = sent(frames, 'Trade_insertOrder_REQ').map(({ args }) => String(args.at(-1)));
    expect(tags).toEqual([expect.stringMatching(ownTag), expect.stringMatching(ownTag), 'mine']);
    expect(new Set(tags).size).toBe(3);
  });

  test('has its button in the same place before and after prices and the tradable quantity come', async ({ page }) => {
    const frames = await openTrade(page);
    const before = await reviewButton(page).boundingBox();
    await fillTicket(page, frames, { qty: '100' });
    await expect(page.getByTestId('ticket-tradable')).toHaveText(/^\d+$/);
    expect(await reviewButton(page).boundingBox()).toEqual(before);
  });

  test('sends an order once, even when it is confirmed several times', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await reviewButton(page).click();
    await confirmButton(page).evaluate((button: HTMLButtonElement) => {
      for (let click = 0; click < 5; ++click) button.click();
    });
    await expect(outcomeOf(page)).toContainText('已受理');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
    await page.reload();
    await openView(page, '交易');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
  });

  test('is not confirmed by the repeats of the key that opened the confirmation', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await fieldOf(page, 'qty').focus();
    for (let repeat = 0; repeat < 5; ++repeat) await page.keyboard.down('Enter');
    await page.keyboard.up('Enter');
    await expect(confirmButton(page)).toBeFocused();
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
    await page.keyboard.press('Enter');
    await expect(outcomeOf(page)).toContainText('已受理');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
  });

  test('shows a tradable quantity all the time while the account changes', async ({ page }) => {
    const frames = await openTrade(page);
    const price = await fillTicket(page, frames, { qty: '100' });
    const tradable = page.getByTestId('ticket-tradable');
    await expect(tradable).toHaveText(/^\d+$/);
    await tradable.evaluate((output) => {
      const seen = window as unknown as { quantities: string[] };
      seen.quantities = [];
      new MutationObserver(() => seen.quantities.push(output.textContent)).observe(output, {
        characterData: true,
        childList: true,
        subtree: true,
      });
    });
    // Each order reserves money; fills of earlier orders may release some meanwhile.
    const most = await tradable.innerText();
    for (let order = 0; order < 3; ++order)
      await ask(page, 'Trade_insertOrder_REQ', account, symbols[0], 'SH', 'Buy', 'Limit', price, '10000', '');
    await expect.poll(async () => Number(await tradable.innerText())).toBeLessThanOrEqual(Number(most) - 10_000);
    const quantities = await page.evaluate(() => (window as unknown as { quantities: string[] }).quantities);
    expect(quantities.filter((text) => !/^\d+$/.test(text))).toEqual([]);
  });

  test('asks for another price when the security changes', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await fieldOf(page, 'symbol').fill(symbols[1]!);
    await expect(fieldOf(page, 'price')).toHaveValue('');
    await expect(reviewButton(page)).toBeDisabled();
  });
});

test.describe('the outcome of an order', { tag: '@page' }, () => {
  const refused: [string, Typed, boolean][] = [
    ['with a part of a lot, which the books keep,', { price: 'lowest', qty: '150' }, true],
    ['with an invalid price, which the books do not keep,', { price: 'cheap', qty: '100' }, false],
  ];
  for (const [name, typed, kept] of refused) {
    test(`${name} is refused with a reason`, async ({ page }) => {
      const frames = await openTrade(page);
      await fillTicket(page, frames, typed);
      await reviewButton(page).click();
      await confirmButton(page).click();
      await expect.poll(() => frames.replies('Trade_insertOrder_RES')).toHaveLength(1);
      const [reply] = frames.replies('Trade_insertOrder_RES');
      expect(reply!.code).toBe('-1');
      await expect(outcomeOf(page).getByRole('alert')).toContainText(`被拒：${reply!.msg}`);
      const { orderID } = reply!.resultData as { orderID?: string };
      expect(orderID !== undefined).toBe(kept);
      if (!orderID) return;
      await expect(outcomeOf(page)).toContainText(orderID);
      await showOrders(page, 'latest');
      await expect(cell(page, 'blotter-table', orderID, 'remark')).toHaveText(reply!.msg);
    });
  }

  test('without an answer is unknown: it can be looked up, and is never sent again', async ({ page, simulator }) => {
    await page.clock.install();
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await reviewButton(page).click();
    simulator.freeze();
    await confirmButton(page).click();
    await expect.poll(() => sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
    await page.clock.fastForward(10_000);
    await expect(outcomeOf(page).getByRole('alert')).toContainText('结果未知');

    simulator.thaw(); // it now reads the order that it had been sent
    await expect.poll(() => frames.replies('Trade_insertOrder_RES')).toHaveLength(1);
    await outcomeOf(page).getByRole('button', { name: '按标签查找' }).click();
    const { orderID } = frames.replies('Trade_insertOrder_RES')[0]!.resultData as { orderID: string };
    await expect(page.getByTestId('look-up')).toContainText('找到 1 笔委托');
    await expect(page.getByTestId('look-up')).toContainText(`${orderID} 已报`);
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
  });

  test('that could not be sent is told, and nothing is sent', async ({ page, simulator }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await reviewButton(page).click();
    await simulator.stop();
    await expect(page.getByTestId('connection')).toContainText('已断开');
    await confirmButton(page).click();
    await expect(outcomeOf(page).getByRole('alert')).toContainText('未发送');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
  });
});

test.describe('the blotter', { tag: '@page' }, () => {
  test('cancels several orders in one call, after asking', async ({ page }) => {
    const frames = await openTrade(page);
    const ids = [await placeOrder(page, frames, { qty: '100' }), await placeOrder(page, frames, { qty: '200' })];
    for (const id of ids) await page.getByRole('checkbox', { name: `选择 ${id}` }).check();
    await page.getByTestId('cancel-picked').click();
    expect(sent(frames, 'Trade_reqCancelOrder_REQ')).toEqual([]);
    await page.getByTestId('cancel-dialog').getByRole('button', { name: '确认撤单' }).click();
    await expect(page.getByTestId('cancel-outcome')).toContainText('已提交撤单 2 笔');
    expect(sent(frames, 'Trade_reqCancelOrder_REQ').map(({ args }) => (args[1] as string).split(',').sort())).toEqual([
      [...ids].sort(),
    ]);
    for (const id of ids) await expect(cell(page, 'blotter-table', id, 'status')).toHaveCount(0);
  });

  test('shows a basket of a thousand orders without a call or a rendering for each', async ({ page }) => {
    const frames = await openTrade(page);
    const price = await fillTicket(page, frames, { qty: '100' });
    await showBook(page, 'basket');
    const basket = page.getByTestId('basket');
    await basket.locator('textarea').fill(Array<string>(1000).fill(`${symbols[0]},Buy,100,${price}`).join('\n'));
    await page.evaluate(() => {
      const counted = window as unknown as { drawings: number };
      counted.drawings = 0;
      new MutationObserver(() => (counted.drawings += 1)).observe(
        document.querySelector('[data-testid="blotter-table"] tbody')!,
        { childList: true, subtree: true },
      );
    });
    const lists = sent(frames, 'Data_getEntrustList_REQ').length;
    await basket.getByRole('button', { name: '发送篮子（1000 笔）' }).click();
    await basket.getByTestId('confirm').click();
    await expect(page.getByTestId('basket-outcome')).toContainText('已受理 1000，被拒 0');
    const last = (frames.replies('Trade_insertOrderList_RES')[0]!.resultData as { orderID: string }[]).at(-1)!;
    await expect(cell(page, 'blotter-table', last.orderID, 'status')).toHaveText('已报');
    expect(await page.evaluate(() => (window as unknown as { drawings: number }).drawings)).toBeLessThan(100);
    expect(sent(frames, 'Data_getEntrustList_REQ').length - lists).toBeLessThan(5);
    expect(await rows(page, 'blotter-table').count()).toBeLessThan(100); // only those in sight are drawn
  });

  test('shows the orders of another page', async ({ page, context }) => {
    const frames = await openTrade(page);
    const other = await context.newPage();
    const otherFrames = await openTrade(other);
    const id = await placeOrder(other, otherFrames, { qty: '100' });
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已报');
    await openView(page, '委托与成交');
    await expect(cell(page, 'order-table', id, 'status')).toHaveText('已报');
    await other.getByRole('button', { name: `撤单 ${id}` }).click();
    await expect(cell(page, 'order-table', id, 'status')).toHaveText('已撤');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
  });

  test.describe('in a still market', () => {
    test.use({ options: stillMarket });

    test('has exactly the open orders, sortable and filterable', async ({ page }) => {
      await openTrade(page);
      const states = [orderStatuses.reported, orderStatuses.partlyFilled];
      const open = await ask<EntrustList>(
        page,
        'Data_getEntrustList_REQ',
        JSON.stringify({ orderStatus: states }),
        0,
        0,
      );
      const count = page.getByTestId('blotter-table-count');
      await expect.poll(() => numberOf(count)).toBe(open.totalSize);
      const newest = String(open.entrustInfoList[0]!.entrustTime.displayRole);
      await expect(rows(page, 'blotter-table').first().locator('td[data-key="entrustTime"]')).toHaveText(newest);
      const prices = (list: readonly Entrust[]) => list.map(({ price }) => Number(price.userRole));
      await page.locator('[data-testid="blotter-table"] th[data-key="price"] button').click();
      const highest = Math.max(...prices(open.entrustInfoList));
      await expect(rows(page, 'blotter-table').first().locator('td[data-key="price"]')).toHaveText(
        String(open.entrustInfoList.find(({ price }) => price.userRole === highest)!.price.displayRole),
      );
      const { securityId } = open.entrustInfoList[0]!;
      await page.getByTestId('blotter').getByRole('searchbox').fill(String(securityId.userRole));
      const shown = page.getByTestId('blotter-table').locator('td[data-key="securityId"]');
      await expect.poll(async () => new Set(await shown.allInnerTexts())).toEqual(new Set([securityId.userRole]));
    });

    test('cancels all open orders, however many, in portions of a thousand', async ({ page }) => {
      const frames = await openTrade(page);
      const price = await fillTicket(page, frames, { qty: '100' });
      const line = { symbol: symbols[0], exchange: 'SH', orderSide: 'Buy', priceType: 'Limit', price, qty: '100' };
      for (const count of [700, 600])
        await ask(page, 'Trade_insertOrderList_REQ', account, 'many', JSON.stringify(Array(count).fill(line)));
      const all = page.getByTestId('cancel-all');
      await expect.poll(() => numberOf(all)).toBeGreaterThanOrEqual(1300);
      const open = await numberOf(all);
      await all.click();
      await expect(page.getByTestId('cancel-dialog')).toContainText(`撤销 ${open} 笔未成交委托`);
      await page.getByTestId('cancel-dialog').getByRole('button', { name: '返回' }).click();
      expect(sent(frames, 'Trade_reqCancelOrder_REQ')).toEqual([]);
      await all.click();
      await page.getByTestId('cancel-dialog').getByRole('button', { name: '确认撤单' }).click();
      await expect(page.getByTestId('cancel-outcome')).toContainText(`已提交撤单 ${open} 笔`);
      await expect.poll(() => numberOf(all)).toBe(0);
      const sizes = sent(frames, 'Trade_reqCancelOrder_REQ').map(({ args }) => String(args[1]).split(',').length);
      expect(sizes).toEqual([1000, open - 1000]);
      await expect(page.getByTestId('blotter')).toContainText('没有可撤委托');
    });
  });
});
