import type { Page } from '@playwright/test';
import { orderStatuses, type Tick } from '@varnel/web-client';
import { ask } from './support/ask';
import { openDesk, openView } from './support/desk';
import type { Frames } from './support/frames';
import { fundAccounts, symbols } from './support/scenario';
import { expect, roots, test } from './support/test';

test.use({ root: roots.workbench });

const rows = (page: Page, table: string) => page.getByTestId(table).locator('tbody tr');
const cell = (page: Page, table: string, row: string, key: string) =>
  page.getByTestId(table).locator(`tr[data-id="${row}"] td[data-key="${key}"]`);
const sent = (frames: Frames, method: string) => frames.sent.filter(({ invoke }) => invoke === method);

interface Typed {
  symbol?: string;
  side?: string;
  price?: 'lowest' | 'highest' | string;
  qty: string;
}

/** Fills in the ticket without sending it. */
async function fillTicket(page: Page, frames: Frames, { symbol = symbols[0]!, side, price, qty }: Typed) {
  const ticket = page.getByTestId('ticket');
  await ticket.getByLabel('证券标识').fill(symbol);
  const quote = () =>
    frames
      .replies('Data_getCurrentTick_RES')
      .map(({ resultData }) => resultData as Tick)
      .find((tick) => tick.symbol === symbol);
  await expect.poll(quote).toBeTruthy();
  const limit = (name: 'lowerLimit' | 'upperLimit') => (quote()![name] as number).toFixed(2);
  await expect(ticket.getByText('卖一')).toBeVisible();
  if (side) await ticket.getByLabel('买卖').selectOption(side);
  const text = price === 'highest' ? limit('upperLimit') : price === 'lowest' ? limit('lowerLimit') : price!;
  await ticket.getByLabel('价格 price', { exact: true }).fill(text);
  await ticket.getByLabel('数量').fill(qty);
  await expect(ticket.getByRole('button', { name: '下单' })).toBeEnabled();
  return { ticket, price: text };
}

const confirm = (page: Page, panel: string) => page.getByTestId(panel).getByRole('button', { name: '确认发送' });

async function place(page: Page, frames: Frames, typed: Typed): Promise<string> {
  const { ticket } = await fillTicket(page, frames, typed);
  await ticket.getByRole('button', { name: '下单' }).click();
  await confirm(page, 'ticket').click();
  await expect(page.getByTestId('ticket-outcome')).toContainText('已受理');
  return page.getByTestId('ticket-outcome').locator('code').innerText();
}

test.describe('the ticket', { tag: '@page' }, () => {
  test('places an order after confirmation, and the order can be cancelled', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const { ticket, price } = await fillTicket(page, frames, { price: 'lowest', qty: '100' });
    await expect(page.getByTestId('ticket-tradable')).toHaveText(/^\d+$/);
    await ticket.getByRole('button', { name: '下单' }).click();
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
    const question = ticket.getByRole('group', { name: '确认' });
    for (const text of [fundAccounts()[0]!.fundAccount, '买入', symbols[0]!, '限价', price, '100', 'manual'])
      await expect(question).toContainText(text);
    await ticket.getByRole('button', { name: '返回' }).click();
    await expect(confirm(page, 'ticket')).toHaveCount(0);

    const id = await place(page, frames, { price: 'lowest', qty: '100' });
    expect(sent(frames, 'Trade_insertOrder_REQ').map(({ args: [, ...args] }) => args)).toEqual([
      [fundAccounts()[0]!.fundAccount, symbols[0], 'SH', 'Buy', 'Limit', price, '100', 'manual'],
    ]);
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已报');
    await page.getByRole('button', { name: `撤单 cancel ${id}` }).click();
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已撤');
    await expect(page.getByRole('button', { name: `撤单 cancel ${id}` })).toHaveCount(0);
  });

  test('sends an order once, even when it is confirmed several times', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const { ticket } = await fillTicket(page, frames, { price: 'lowest', qty: '100' });
    await ticket.getByRole('button', { name: '下单' }).click();
    await confirm(page, 'ticket').evaluate((button: HTMLButtonElement) => {
      for (let click = 0; click < 5; ++click) button.click();
    });
    await expect(page.getByTestId('ticket-outcome')).toContainText('已受理');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
    await page.reload();
    await openView(page, '交易');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
  });

  test('is not confirmed by the repeats of the key that opened the confirmation', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const { ticket } = await fillTicket(page, frames, { price: 'lowest', qty: '100' });
    await ticket.getByLabel('数量').focus();
    for (let repeat = 0; repeat < 5; ++repeat) await page.keyboard.down('Enter');
    await page.keyboard.up('Enter');
    await expect(confirm(page, 'ticket')).toBeFocused();
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
    await page.keyboard.press('Enter');
    await expect(page.getByTestId('ticket-outcome')).toContainText('已受理');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
  });

  test('shows a tradable quantity all the time while the account changes', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const { price } = await fillTicket(page, frames, { price: 'lowest', qty: '100' });
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
    const { fundAccount } = fundAccounts()[0]!;
    const most = await tradable.innerText();
    for (let order = 0; order < 3; ++order)
      await ask(page, 'Trade_insertOrder_REQ', fundAccount, symbols[0], 'SH', 'Buy', 'Limit', price, '10000', '');
    await expect.poll(async () => Number(await tradable.innerText())).toBeLessThanOrEqual(Number(most) - 10_000);
    const quantities = await page.evaluate(() => (window as unknown as { quantities: string[] }).quantities);
    expect(quantities.filter((text) => !/^\d+$/.test(text))).toEqual([]);
  });

  const refused: [string, Typed, boolean][] = [
    ['with a part of a lot, which the books keep,', { price: 'lowest', qty: '150' }, true],
    ['with an invalid price, which the books do not keep,', { price: 'cheap', qty: '100' }, false],
  ];
  for (const [name, typed, kept] of refused) {
    test(`shows why an order ${name} was refused`, async ({ page }) => {
      const frames = await openDesk(page);
      await openView(page, '交易');
      const { ticket } = await fillTicket(page, frames, typed);
      await ticket.getByRole('button', { name: '下单' }).click();
      await confirm(page, 'ticket').click();
      const [reply] = await expect
        .poll(() => frames.replies('Trade_insertOrder_RES'))
        .toHaveLength(1)
        .then(() => frames.replies('Trade_insertOrder_RES'));
      expect(reply!.code).toBe('-1');
      await expect(page.getByTestId('ticket-outcome').getByRole('alert')).toHaveText(reply!.msg);
      const { orderID } = reply!.resultData as { orderID?: string };
      expect(orderID !== undefined).toBe(kept);
      if (orderID) await expect(cell(page, 'blotter-table', orderID, 'remark')).toHaveText(reply!.msg);
    });
  }

  test('shows that the outcome is unknown when no answer comes, and sends nothing again', async ({
    page,
    simulator,
  }) => {
    await page.clock.install();
    const frames = await openDesk(page);
    await openView(page, '交易');
    const { ticket } = await fillTicket(page, frames, { price: 'lowest', qty: '100' });
    await ticket.getByRole('button', { name: '下单' }).click();
    await simulator.stop();
    await expect(page.getByTestId('connection')).toContainText('已断开');
    await confirm(page, 'ticket').click();
    await expect(ticket.getByRole('button', { name: '发送中' })).toBeDisabled();
    await page.clock.fastForward(10_000);
    await expect(page.getByTestId('ticket-outcome').getByRole('alert')).toContainText('结果未知');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]); // the connection was closed
  });
});

test.describe('the blotter', { tag: '@page' }, () => {
  test('cancels several orders in one call', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const ids = [
      await place(page, frames, { price: 'lowest', qty: '100' }),
      await place(page, frames, { price: 'lowest', qty: '200' }),
    ];
    for (const id of ids) await page.getByRole('checkbox', { name: `选择 pick ${id}` }).check();
    await page.getByRole('button', { name: '撤所选' }).click();
    for (const id of ids) await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已撤');
    expect(sent(frames, 'Trade_reqCancelOrder_REQ').map(({ args }) => (args[1] as string).split(',').sort())).toEqual([
      [...ids].sort(),
    ]);
    await expect(page.getByTestId('cancel-outcome')).toContainText('已撤 2 笔');
  });

  test('shows a basket of a thousand orders without a call or a rendering for each', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    await fillTicket(page, frames, { price: 'lowest', qty: '100' }).then(async ({ price }) => {
      const line = `${symbols[0]},Buy,100,${price}`;
      await page.getByTestId('basket').getByLabel('委托').fill(Array<string>(1000).fill(line).join('\n'));
    });
    await page.evaluate(() => {
      const counted = window as unknown as { drawings: number };
      counted.drawings = 0;
      new MutationObserver(() => (counted.drawings += 1)).observe(
        document.querySelector('[data-testid="blotter-table"] tbody')!,
        { childList: true, subtree: true },
      );
    });
    const lists = sent(frames, 'Data_getEntrustList_REQ').length;
    await page.getByRole('button', { name: '发送篮子 Place 1000' }).click();
    await confirm(page, 'basket').click();
    await expect(page.getByTestId('basket-outcome')).toContainText('已受理 1000，被拒 0');
    const last = (frames.replies('Trade_insertOrderList_RES')[0]!.resultData as { orderID: string }[]).at(-1)!;
    await expect(cell(page, 'blotter-table', last.orderID, 'status')).toHaveText('已报');
    await expect(rows(page, 'blotter-table')).toHaveCount(200);
    expect(await page.evaluate(() => (window as unknown as { drawings: number }).drawings)).toBeLessThan(100);
    expect(sent(frames, 'Data_getEntrustList_REQ').length - lists).toBeLessThan(5);
  });

  test('shows the orders of another page', async ({ page, context }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    const other = await context.newPage();
    const otherFrames = await openDesk(other);
    await openView(other, '交易');
    const id = await place(other, otherFrames, { price: 'lowest', qty: '100' });
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('已报');
    await openView(page, '委托与成交');
    await expect(page.getByTestId('order-table')).toContainText(id);
    await other.getByRole('button', { name: `撤单 cancel ${id}` }).click();
    await expect(page.getByTestId('order-table').locator('tr', { hasText: id })).toContainText('已撤');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
  });

  test.describe('at 20 times the speed', () => {
    test.use({ options: ['--speed', '20'] });
    test('shows executions and the new position', async ({ page }) => {
      const frames = await openDesk(page);
      await openView(page, '资产与持仓');
      await openView(page, '交易');
      const id = await place(page, frames, { price: 'highest', qty: '300' });
      await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('全部成交');
      await expect(page.getByTestId('deal-table')).toContainText(id);
      await openView(page, '资产与持仓');
      const security = symbols[0]!.slice(0, 6);
      const account = fundAccounts()[0]!.fundAccount;
      await expect(
        page.getByTestId('position-table').locator('tr', { hasText: account }).filter({ hasText: security }),
      ).toHaveCount(1);
    });
  });

  test('filters open orders', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    await page.getByLabel('只看可撤').check();
    const open = [orderStatuses.reported, orderStatuses.partlyFilled] as string[];
    const listed = frames.replies('Data_getEntrustList_RES')[0]!.resultData as {
      entrustInfoList: { status: { userRole: string } }[];
    };
    expect(listed.entrustInfoList.some(({ status }) => !open.includes(status.userRole))).toBe(true);
    const texts = await page.getByTestId('blotter-table').locator('td[data-key="status"]').allInnerTexts();
    expect(texts.length).toBeGreaterThan(0);
    expect(texts.filter((text) => !['已报', '部分成交'].includes(text))).toEqual([]);
  });
});
