import {
  entrustKeys,
  executionKeys,
  orderStatuses,
  assetKeys,
  type Asset,
  type EntrustList,
  type ExecutionList,
  type SecurityDetail,
  type SecurityEntry,
  type Tick,
} from '@varnel/web-client';
import type { Page } from '@playwright/test';
import { openDesk, openView, rows, sent } from './support/desk';
import type { Frames } from './support/frames';
import { fundAccounts, scenario } from './support/scenario';
import { expect, roots, stillMarket, test } from './support/test';

// What is shown is compared with the latest answer, so the market must not move in between.
test.use({ root: roots.workbench, options: stillMarket });

/** The result of the latest reply. */
function latest<Result>(frames: Frames, event: string): Result {
  return frames.replies(event).at(-1)!.resultData as Result;
}

/** Arguments of the latest call, without its identifier. */
function argsOf(frames: Frames, method: string): unknown[] {
  return frames.sent
    .filter(({ invoke }) => invoke === method)
    .at(-1)!
    .args.slice(1);
}

const filterOf = (page: Page) => page.getByTestId('securities').getByRole('searchbox');
const cells = (page: Page, table: string, key: string) => page.getByTestId(table).locator(`td[data-key="${key}"]`);

test.describe('the views', { tag: '@page' }, () => {
  test('make their calls when they are first opened, and keep their state', async ({ page }) => {
    const frames = await openDesk(page);
    const before = frames.sent.length;
    await openView(page, '证券');
    const after = frames.sent.length;
    expect(after).toBeGreaterThan(before);
    await filterOf(page).fill('DLZG');
    await openView(page, '总览');
    await openView(page, '证券');
    await expect(filterOf(page)).toHaveValue('DLZG');
    expect(sent(frames, 'Data_getSymbolList_REQ')).toHaveLength(1); // securities stay as they are
  });

  test('can be reached by keyboard', async ({ page }) => {
    await openDesk(page);
    await page.getByRole('tab', { name: '总览' }).focus();
    await page.keyboard.press('ArrowRight');
    await expect(page.getByRole('tab', { name: '交易' })).toBeFocused();
    await expect(page.getByRole('tabpanel', { name: '交易' })).toBeVisible();
    await expect(page.getByRole('tabpanel', { name: '总览' })).toBeHidden();
    await page.keyboard.press('ArrowLeft');
    await expect(page.getByRole('tab', { name: '总览' })).toBeFocused();
    await page.keyboard.press('ArrowLeft');
    await expect(page.getByRole('tab', { name: '策略' })).toHaveAttribute('aria-selected', 'true');
    await page.keyboard.press('Home');
    await expect(page.getByRole('tabpanel', { name: '总览' })).toBeVisible();
  });
});

test.describe('a view that fails', { tag: '@page' }, () => {
  test('says so, and leaves the others alone', async ({ page }) => {
    await page.addInitScript(() => {
      // No chart can be made without a canvas.
      const create = document.createElement.bind(document);
      document.createElement = ((name: string) => {
        if (name === 'canvas') throw new Error('no canvas');
        return create(name);
      }) as typeof document.createElement;
    });
    await page.goto('/');
    await expect(page.getByRole('tabpanel', { name: '总览' }).getByRole('alert')).toContainText('此视图出错');
    await page.getByRole('tab', { name: '交易' }).click();
    await expect(rows(page, 'blotter-table')).not.toHaveCount(0);
  });
});

test.describe('securities', { tag: '@page' }, () => {
  async function choose(page: Page, symbol: string) {
    await page.getByTestId('security-list').getByRole('button', { name: symbol }).click();
    await expect(page.getByTestId('security-detail').locator('[data-key="symbol"] dd')).toHaveText(symbol);
  }

  test('are listed as in the reply, and found by code, name and spelling', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '证券');
    const list = latest<SecurityEntry[]>(frames, 'Data_getSymbolList_RES');
    // Only the rows in sight are drawn.
    const texts = list.map(({ symbol, displayName, spellName }) => symbol + displayName + spellName);
    await expect(rows(page, 'security-list').first()).toHaveText(texts[0]!);
    const drawn = await rows(page, 'security-list').allInnerTexts();
    expect(drawn.length).toBeLessThan(list.length);
    expect(drawn.map((text) => text.replace(/\s/g, ''))).toEqual(
      texts.slice(0, drawn.length).map((text) => text.replace(/\s/g, '')),
    );
    const { symbol, name, spellCode } = scenario.securities[0]!;
    for (const typed of [symbol.toLowerCase(), name, spellCode.toLowerCase()]) {
      await filterOf(page).fill(typed);
      await expect(rows(page, 'security-list').filter({ hasText: symbol })).toHaveCount(1);
      await expect(page.getByTestId('security-list-count')).toHaveText(/^\d\d? \/ 310 条$/);
    }
    await filterOf(page).fill('no such security');
    await expect(page.getByTestId('security-list-count')).toHaveText(`0 / ${list.length} 条`);
  });

  test('can be listed by class', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '证券');
    const all = latest<SecurityEntry[]>(frames, 'Data_getSymbolList_RES').length;
    const panel = page.getByTestId('securities');
    await panel.getByRole('combobox', { name: '类别' }).selectOption('Bond');
    await panel.getByRole('button', { name: '查询' }).click();
    await expect.poll(() => frames.replies('Data_getSymbolList_RES').length).toBe(2);
    expect(argsOf(frames, 'Data_getSymbolList_REQ')).toEqual([
      JSON.stringify({ symbolFilter: [{ securityType: 'Bond', securitySubType: [], securityPost: [] }] }),
    ]);
    const bonds = latest<SecurityEntry[]>(frames, 'Data_getSymbolList_RES').length;
    expect(bonds).toBeGreaterThan(0);
    expect(bonds).toBeLessThan(all);
    await expect(page.getByTestId('security-list-count')).toHaveText(`${bonds} 条`);
  });

  test('show details and five levels of the chosen security', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '证券');
    for (const { symbol } of scenario.securities.slice(0, 3)) {
      await choose(page, symbol);
      await expect.poll(() => latest<Tick>(frames, 'Data_getCurrentTick_RES').symbol).toBe(symbol);
      const [detail] = latest<[SecurityDetail]>(frames, 'Data_getSymbolDetail_RES');
      const shown = page.getByTestId('security-detail');
      await expect(shown.locator('[data-key="displayName"] dd')).toHaveText(detail.displayName);
      await expect(shown.locator('[data-key="minQty"] dd')).toHaveText(detail.minQty);

      const tick = latest<Record<string, number[]>>(frames, 'Data_getCurrentTick_RES');
      const prices = [...[...tick.askPrices!].reverse(), ...tick.bidPrices!];
      await expect(page.getByTestId('levels').locator('td:nth-child(2)')).toHaveText(
        prices.map((price) => (price > 0 ? price.toFixed(detail.precision) : '—')),
      );
    }
  });

  test('show the tradable quantity', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '证券');
    const { symbol } = scenario.securities[0]!;
    await choose(page, symbol);
    await expect.poll(() => latest<Tick>(frames, 'Data_getCurrentTick_RES').symbol).toBe(symbol);
    await expect(page.getByTestId('entry').filter({ hasText: '尚无应答' })).toHaveCount(0);
    const [detail] = latest<[SecurityDetail]>(frames, 'Data_getSymbolDetail_RES');
    const price = String(latest<{ last: number }>(frames, 'Data_getCurrentTick_RES').last);
    const panel = page.getByTestId('tradable');
    await panel.getByLabel('价格', { exact: true }).fill(price);
    await panel.getByRole('button', { name: '查询' }).click();
    await expect.poll(() => frames.replies('Data_getTradableQty_RES').length).toBe(1);
    const [first] = fundAccounts();
    const expected = [first!.fundAccount, symbol, detail.exchange, 'Buy', 'Limit', price, ''];
    expect(argsOf(frames, 'Data_getTradableQty_REQ')).toEqual(expected);
    const { qty } = latest<{ qty: string }>(frames, 'Data_getTradableQty_RES');
    await expect(page.getByTestId('tradable-answer')).toHaveText(qty);
    await choose(page, scenario.securities[1]!.symbol);
    await expect(page.getByTestId('tradable-answer')).toHaveCount(0); // it was another security's
  });
});

test.describe('orders and executions', { tag: '@page' }, () => {
  const ask = (page: Page) => page.getByTestId('orders').getByRole('button', { name: '查询' }).click();

  test('show the texts of the terminal', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '委托与成交');
    expect(argsOf(frames, 'Data_getEntrustList_REQ')).toEqual(['{}', 0, 100]);
    const orders = latest<EntrustList>(frames, 'Data_getEntrustList_RES').entrustInfoList;
    await expect(rows(page, 'order-table')).toHaveCount(orders.length);
    for (const key of entrustKeys)
      await expect(cells(page, 'order-table', key)).toHaveText(
        orders.map((order) => String(order[key].displayRole ?? '—')),
      );

    await page.getByRole('radio', { name: '成交' }).check();
    await expect.poll(() => frames.replies('Data_getExecutionList_RES').length).toBe(1);
    const executions = latest<ExecutionList>(frames, 'Data_getExecutionList_RES').executionInfoList;
    await expect(page.getByTestId('order-table').locator('th')).toHaveCount(executionKeys.length);
    for (const key of executionKeys)
      await expect(cells(page, 'order-table', key)).toHaveText(
        executions.map((execution) => String(execution[key].displayRole ?? '—')),
      );
  });

  test('can be paged to the end and back', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '委托与成交');
    const range = page.getByTestId('range');
    const { totalSize } = latest<EntrustList>(frames, 'Data_getEntrustList_RES');
    await expect(range).toHaveText(`第 1–100 笔，共 ${totalSize} 笔`);
    await expect(page.getByRole('button', { name: '上页' })).toBeDisabled();
    await page.getByRole('button', { name: '下页' }).click();
    await expect(range).toContainText('第 101–200 笔');
    expect(argsOf(frames, 'Data_getEntrustList_REQ')).toEqual(['{}', 100, 100]);
    await page.getByRole('button', { name: '末页' }).click();
    await expect(range).toContainText(`–${totalSize} 笔，`);
    await expect(page.getByRole('button', { name: '下页' })).toBeDisabled();
    await expect(rows(page, 'order-table')).toHaveCount(((totalSize - 1) % 100) + 1);
    await page.getByLabel('每页').selectOption('500');
    await expect(range).toHaveText(`第 1–${totalSize} 笔，共 ${totalSize} 笔`);
    await expect(page.getByRole('button', { name: '首页' })).toBeDisabled();
  });

  test('are filtered by account, status and symbol', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '委托与成交');
    const panel = page.getByTestId('orders');
    const all = latest<EntrustList>(frames, 'Data_getEntrustList_RES').totalSize;
    const { fundAccount } = fundAccounts()[0]!;
    await panel.getByLabel('资产账号').selectOption(fundAccount);
    await panel.getByLabel('状态').selectOption(orderStatuses.filled);
    await ask(page);
    await expect.poll(() => frames.replies('Data_getEntrustList_RES').length).toBe(2);
    const filter = { fundAccount: [fundAccount], orderStatus: [orderStatuses.filled] };
    expect(argsOf(frames, 'Data_getEntrustList_REQ')).toEqual([JSON.stringify(filter), 0, 100]);
    const { totalSize, size } = latest<EntrustList>(frames, 'Data_getEntrustList_RES');
    expect(totalSize).toBeLessThan(all);
    await expect(page.getByTestId('range')).toContainText(`共 ${totalSize} 笔`);
    const chosen = await panel.getByLabel('状态').locator('option:checked').textContent();
    await expect(cells(page, 'order-table', 'status')).toHaveText(Array(size).fill(chosen));
    await expect(cells(page, 'order-table', 'fundAccount')).toHaveText(Array(size).fill(fundAccount));

    await panel.getByLabel('证券标识').fill('NOSUCH.SH, NONE.SZ');
    await ask(page);
    await expect(page.getByTestId('range')).toHaveText('无记录，共 0 笔');
    const none = JSON.stringify({
      fundAccount: [fundAccount],
      symbol: ['NOSUCH.SH', 'NONE.SZ'],
      orderStatus: ['Filled'],
    });
    expect(argsOf(frames, 'Data_getEntrustList_REQ')[0]).toBe(none);
    for (const name of ['首页', '上页', '下页', '末页'])
      await expect(page.getByRole('button', { name })).toBeDisabled();
  });
});

test.describe('holdings', { tag: '@page' }, () => {
  const written = (key: string, text: string) =>
    key.startsWith('fundAccount')
      ? text
      : Number(text).toLocaleString('zh-CN', { minimumFractionDigits: 2, maximumFractionDigits: 2 });

  test('show assets and positions of all accounts or of the chosen one', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '资产与持仓');
    const all = fundAccounts().map(({ fundAccount }) => fundAccount);
    expect(argsOf(frames, 'Data_getAsset_REQ')).toEqual([all.join(',')]);
    expect(argsOf(frames, 'Data_getPositionList_REQ')).toEqual([all.join(','), '']);
    const assets = latest<Asset[]>(frames, 'Data_getAsset_RES');
    const shownAssetKeys = await page
      .getByTestId('asset-table')
      .locator('th')
      .evaluateAll((headings) => headings.map((heading) => (heading as HTMLElement).dataset.key));
    expect(shownAssetKeys.length).toBeGreaterThan(5);
    for (const key of assetKeys)
      if (shownAssetKeys.includes(key))
        await expect(cells(page, 'asset-table', key)).toHaveText(assets.map((asset) => written(key, asset[key])));
    const positions = latest<unknown[]>(frames, 'Data_getPositionList_RES');
    await expect(rows(page, 'position-table')).toHaveCount(positions.length);

    const panel = page.getByTestId('positions');
    await panel.getByLabel('资产账号').selectOption(all[1]!);
    await panel.getByRole('button', { name: '查询' }).click();
    await expect(cells(page, 'asset-table', 'fundAccount')).toHaveText([all[1]!]);
    await expect.poll(() => frames.replies('Data_getPositionList_RES').length).toBe(2);
    const own = latest<unknown[]>(frames, 'Data_getPositionList_RES');
    expect(own.length).toBeLessThan(positions.length);
    await expect(cells(page, 'position-table', 'fundAccount')).toHaveText(own.map(() => all[1]!));
  });
});
