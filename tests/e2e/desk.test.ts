import type { Page } from '@playwright/test';
import { orderStatuses, type Tick } from '@varnel/web-client';
import { ask } from './support/ask';
import { openDesk, openView } from './support/desk';
import type { Frames } from './support/frames';
import { fundAccounts, symbols } from './support/scenario';
import { Simulator } from './support/simulator';
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

test.describe('the watch list', { tag: '@page' }, () => {
  const symbolsShown = (page: Page) => page.getByTestId('watch-table').locator('tbody tr td:first-child');

  test.describe('at 20 times the speed', () => {
    test.use({ options: ['--speed', '20'] });
    test('shows pushed quotes', async ({ page }) => {
      const frames = await openDesk(page);
      const time = page.locator('tr[data-symbol="609801.SH"] td[data-key="time"]');
      const [before, count] = [await time.innerText(), frames.received.length];
      await expect(time).not.toHaveText(before);
      await expect
        .poll(() => frames.received.slice(count).filter(({ event }) => event === 'on_tickUpdate').length)
        .toBeGreaterThan(10);
      // A push causes no call.
      expect(sent(frames, 'Data_getCurrentTick_REQ')).toHaveLength(await rows(page, 'watch-table').count());
    });
  });

  test('survives a restart of the terminal', async ({ page, simulator, home, context }) => {
    await openDesk(page);
    const watch = page.getByTestId('watch');
    const first = await symbolsShown(page).allInnerTexts();
    await watch.getByLabel('证券标识').fill('NM2505.CF');
    await watch.getByRole('button', { name: '加自选' }).click();
    await watch.getByRole('button', { name: `移除 remove ${first[0]}` }).click();
    const changed = [...first.slice(1), 'NM2505.CF'];
    await expect(symbolsShown(page)).toHaveText(changed);
    await page.reload();
    await expect(symbolsShown(page)).toHaveText(changed);
    await page.close();
    await simulator.stop();

    const again = new Simulator(['--port', '0', '--root', roots.workbench], home.program);
    const later = await context.newPage();
    await later.goto(await again.listening());
    await expect(symbolsShown(later)).toHaveText(changed);
    await expect(later.locator('tr[data-symbol="NM2505.CF"] td[data-key="last"]')).toHaveText(/\d/);
    await later.close();
    expect(await again.stop()).toEqual({ code: 0, signal: null });
  });

  test('cannot be changed before the saved list has been read', async ({ page }) => {
    await page.addInitScript(() => {
      // Holds back the reply with the saved list until the test releases it.
      const told = WebSocket.prototype.addEventListener;
      WebSocket.prototype.addEventListener = function (this: WebSocket, name: string, hear: (event: Event) => void) {
        told.call(this, name, (event: Event) => {
          const isList = name === 'message' && String((event as MessageEvent).data).includes('Data_getSetting_RES');
          if (!isList || sessionStorage.getItem('held')) return hear(event);
          sessionStorage.setItem('held', 'once');
          window.addEventListener('release', () => hear(event));
        });
      } as typeof told;
    });
    await page.goto('/');
    await page.waitForFunction(() => sessionStorage.getItem('held'));
    const watch = page.getByTestId('watch');
    await watch.getByLabel('证券标识').fill('NM2505.CF');
    const add = watch.getByRole('button', { name: '加自选' });
    await expect(add).toBeDisabled();
    await watch.getByLabel('证券标识').press('Enter');
    await page.evaluate(() => window.dispatchEvent(new Event('release')));
    await expect(rows(page, 'watch-table')).not.toHaveCount(0);
    const saved = await rows(page, 'watch-table').count();
    await add.click();
    await expect(rows(page, 'watch-table')).toHaveCount(saved + 1);
    await page.reload();
    await expect(rows(page, 'watch-table')).toHaveCount(saved + 1);
  });

  test('subscribes to its securities, and unsubscribes from one that is removed', async ({ page }) => {
    const frames = await openDesk(page);
    const shown = await symbolsShown(page).allInnerTexts();
    expect(sent(frames, 'Sub_subscribe_REQ').map(({ args }) => args[1])).toEqual([shown.join(',')]);
    await page.getByRole('button', { name: `移除 remove ${shown[1]}` }).click();
    await expect.poll(() => sent(frames, 'UnSub_subscribe_REQ').map(({ args }) => args[1])).toEqual([shown[1]]);
  });

  test('selects the security of the chart and the ticket', async ({ page }) => {
    await openDesk(page);
    await page.getByTestId('watch-table').getByRole('button', { name: '009811.SZ', exact: true }).click();
    await expect(page.getByTestId('kline-chart')).toContainText('009811.SZ');
    await openView(page, '交易');
    await expect(page.getByTestId('ticket').getByLabel('证券标识')).toHaveValue('009811.SZ');
  });
});

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

test.describe('strategies', { tag: '@page' }, () => {
  test('can be started, messaged, queried and stopped', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '策略');
    await page.getByTestId('start-strategy').getByRole('button', { name: '启动' }).click();
    const id = await page.getByTestId('start-outcome').locator('code').innerText();
    await expect(cell(page, 'strategy-table', id, 'status')).toHaveText('Running');

    const messages = page.getByTestId('custom-messages');
    await messages.getByLabel('消息编号').fill(id);
    await messages.getByRole('button', { name: '订阅' }).click();
    await expect(page.getByTestId('custom-subscriptions')).toContainText(id);
    await messages.getByLabel('消息 message').fill('hello');
    await messages.getByRole('button', { name: '发送' }).click();
    await expect(page.getByTestId('custom-log')).toContainText('hello');

    const row = page.getByTestId('strategy-table').locator(`tr[data-id="${id}"]`);
    await row.getByRole('button', { name: '查询' }).click();
    await expect(page.getByTestId('strategy-outcome')).toContainText(`${id} Running`);
    await row.getByRole('button', { name: '停止' }).click();
    await expect(cell(page, 'strategy-table', id, 'status')).toHaveText('Stopped');
    await expect(page.getByTestId('status-log').locator('li').first()).toHaveText(`${id} Stopped`);
    // The page does not wait for replies to one-way calls.
    await expect(page.getByTestId('entry').filter({ hasText: '尚无应答' })).toHaveCount(0);
    expect(sent(frames, 'Vlx_sendCustomInfo_REQ')).toHaveLength(1);
  });

  test('show why a start was refused', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '策略');
    const panel = page.getByTestId('start-strategy');
    await panel.getByLabel('文件').fill('');
    await panel.getByRole('button', { name: '启动' }).click();
    await expect.poll(() => frames.replies('Vlx_startStrategy_RES')).toHaveLength(1);
    const { msg } = frames.replies('Vlx_startStrategy_RES')[0]!;
    await expect(page.getByTestId('start-outcome').getByRole('alert')).toHaveText(msg);
    await panel.getByLabel('基本参数').fill('{');
    await expect(panel.getByRole('button', { name: '启动' })).toBeDisabled();
  });
});

test('the permission panel shows permissions and opens the menu', { tag: '@page' }, async ({ page, simulator }) => {
  await openDesk(page);
  const panel = page.getByTestId('permission');
  await panel.getByRole('button', { name: '查询' }).click();
  await expect(page.getByTestId('permission-answer')).toContainText('有权限 held (1)');
  await panel.getByLabel('支持类型').fill('other');
  await panel.getByRole('button', { name: '查询' }).click();
  await expect(page.getByTestId('permission-answer')).toContainText('无权限 not held (0)');
  await panel.getByRole('button', { name: '权限菜单' }).click();
  await simulator.logged(/opens menu 1210/);
});
