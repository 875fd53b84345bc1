import type { Page } from '@playwright/test';
import axe from 'axe-core';
import type { Asset, Position, SecurityDetail } from '@varnel/web-client';
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
  quoteOf,
  reviewButton,
  showBook,
  showOrders,
  ticketOf,
} from './support/tradeDesk';

test.use({ root: roots.workbench });

const symbol = symbols[0]!;
const stockAccount = fundAccounts('stock')[0]!.fundAccount;
const futuresAccount = fundAccounts('futures')[0]!.fundAccount;

async function openTrade(page: Page) {
  const frames = await openDesk(page);
  await openView(page, '交易');
  return frames;
}

const checkedSide = (page: Page) => ticketOf(page).locator('[name="orderSide"]:checked');

test.describe('a future traded by keyboard only', { tag: '@page' }, () => {
  test.use({ options: ['--speed', '20'] });

  test('fills, is seen everywhere, and its position is closed', async ({ page }) => {
    const frames = await openDesk(page);
    const held = async () => {
      const list = await ask<Position[]>(page, 'Data_getPositionList_REQ', futuresAccount, '');
      return new Set(list.map(({ securityId, securityName }) => `${securityId} ${securityName}`));
    };
    const already = await held();
    const futures = await ask<SecurityDetail[]>(
      page,
      'Data_getSymbolListWithDetail_REQ',
      '{"symbolFilter":[{"securityType":"Future","securitySubType":["CommodityFuture"]}]}',
    );
    const free = futures.find(({ securityId, displayName }) => !already.has(`${securityId} ${displayName}`))!;

    await page.getByRole('tab', { name: '总览' }).focus();
    await page.keyboard.press('ArrowRight');
    await expect(page.getByRole('tabpanel', { name: '交易' })).toBeVisible();
    await page.keyboard.press('Alt+t');
    await expect(fieldOf(page, 'symbol')).toBeFocused();
    await page.keyboard.type(free.spellName.toLowerCase());
    await expect(ticketOf(page).locator('[role="option"]').first()).toContainText(free.displayName);
    await page.keyboard.press('Enter');
    await expect(fieldOf(page, 'symbol')).toHaveValue(free.symbol);
    await expect(ticketOf(page).getByLabel('资产账号')).toHaveValue(futuresAccount); // the first that trades futures
    await quoteOf(frames, free.symbol);
    await expect(page.getByTestId('ladder').locator('tbody tr')).not.toHaveCount(0);

    await page.keyboard.press('Alt+s');
    await expect(checkedSide(page)).toHaveValue('SellOpen');
    await page.keyboard.press('Alt+b');
    await expect(checkedSide(page)).toHaveValue('BuyOpen');
    await page.keyboard.press('Alt+p');
    await page.keyboard.press('ArrowUp'); // the best ask
    const first = Number(await fieldOf(page, 'price').inputValue());
    await page.keyboard.press('PageUp');
    expect(Number(await fieldOf(page, 'price').inputValue())).toBeCloseTo(first + 10 * free.priceUnit, 6);
    await page.keyboard.press('Alt+q');
    await page.keyboard.press('ArrowUp');
    await expect(fieldOf(page, 'qty')).toHaveValue(free.minQty);
    await page.keyboard.press('Enter');
    await expect(confirmButton(page)).toBeFocused();
    await page.keyboard.press('Enter');
    const id = await outcomeOf(page).locator('[data-outcome="accepted"] code').innerText();

    await showOrders(page, 'latest');
    await expect(cell(page, 'blotter-table', id, 'status')).toHaveText('全部成交');
    await showBook(page, 'deals');
    await expect(page.getByTestId('deal-table')).toContainText(id);
    await showBook(page, 'positions');
    const position = rows(page, 'trade-positions')
      .filter({ hasText: free.securityId })
      .filter({ hasText: futuresAccount });
    await expect(position.locator('td[data-key="currentQty"]')).toHaveText(free.minQty);
    const [asset] = await ask<Asset[]>(page, 'Data_getAsset_REQ', futuresAccount);
    expect(Number(asset!.marketValue)).toBeGreaterThan(0);

    await position.getByRole('button', { name: '平仓' }).focus();
    await page.keyboard.press('Enter');
    await expect(checkedSide(page)).toHaveValue('SellClose');
    await expect(fieldOf(page, 'symbol')).toHaveValue(free.symbol);
    await expect(fieldOf(page, 'qty')).toHaveValue(free.minQty);
    await expect(reviewButton(page)).toBeFocused();
    await page.keyboard.press('Alt+p');
    await page.keyboard.press('PageDown'); // the market may have moved away from the best bid
    await page.keyboard.press('Enter');
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
    await expect(confirmButton(page)).toBeFocused();
    await page.keyboard.press('Enter');
    await expect(position).toHaveCount(0);
    expect(sent(frames, 'Trade_insertOrder_REQ').map(({ args }) => args[4])).toEqual(['BuyOpen', 'SellClose']);
  });
});

test.describe('a position in the holdings', { tag: '@page' }, () => {
  test.use({ options: stillMarket });

  test('is closed by an order that the ticket then shows, and that waits to be confirmed', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '资产与持仓');
    const row = rows(page, 'position-table')
      .filter({ has: page.getByRole('button', { name: '平仓' }) })
      .first();
    const code = await row.locator('td[data-key="securityId"]').innerText();
    const tradable = (await row.locator('td[data-key="tradableQty"]').innerText()).replace(/\D/g, '');
    await row.getByRole('button', { name: '平仓' }).click();
    await expect(page.getByTestId('view-trade')).toBeVisible();
    await expect(fieldOf(page, 'symbol')).toHaveValue(new RegExp(`^${code}\\.`));
    await expect(fieldOf(page, 'qty')).toHaveValue(tradable);
    await expect(fieldOf(page, 'price')).not.toHaveValue('');
    await expect(reviewButton(page)).toBeEnabled();
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);

    // What another view chooses later is filled in as well.
    await openView(page, '总览');
    const chosen = rows(page, 'watch-table').nth(1).getByRole('button').first();
    const symbolChosen = await chosen.innerText();
    await chosen.click();
    await openView(page, '交易');
    await expect(fieldOf(page, 'symbol')).toHaveValue(symbolChosen);
  });
});

test.describe('hot keys', { tag: '@page' }, () => {
  test.use({ options: stillMarket });

  test('cancel the last order of this page and all open orders, after asking', async ({ page }) => {
    const frames = await openTrade(page);
    await page.keyboard.press('Alt+c');
    await expect(page.getByTestId('notice')).toHaveText('本页没有可撤的委托');
    const ids = [await placeOrder(page, frames, { qty: '100' }), await placeOrder(page, frames, { qty: '200' })];
    await expect(cell(page, 'blotter-table', ids[1]!, 'status')).toHaveText('已报');
    await page.keyboard.press('Alt+c');
    const dialog = page.getByTestId('cancel-dialog');
    await expect(dialog).toContainText(ids[1]!);
    await page.keyboard.press('Escape');
    await expect(dialog).toHaveCount(0);
    expect(sent(frames, 'Trade_reqCancelOrder_REQ')).toEqual([]);
    await page.keyboard.press('Alt+c');
    await expect(dialog.getByRole('button', { name: '确认撤单' })).toBeFocused();
    await page.keyboard.press('Enter');
    await expect(cell(page, 'blotter-table', ids[1]!, 'status')).toHaveCount(0);
    expect(sent(frames, 'Trade_reqCancelOrder_REQ').map(({ args }) => args[1])).toEqual([ids[1]]);

    await page.keyboard.press('Alt+Shift+C');
    await expect(dialog.getByRole('button', { name: '确认撤单' })).toBeFocused();
    await page.keyboard.press('Enter');
    await expect.poll(() => numberOf(page.getByTestId('cancel-all'))).toBe(0);
  });

  test('act on the orders that are shown, even when an order has appeared just before the key', async ({ page }) => {
    const frames = await openTrade(page);
    const first = await placeOrder(page, frames, { qty: '100' });
    await expect(cell(page, 'blotter-table', first, 'status')).toHaveText('已报');
    await page.evaluate(() => {
      const newest = () => document.querySelector<HTMLElement>('[data-testid="blotter-table"] tr[data-id]')?.dataset.id;
      const before = newest();
      const observer = new MutationObserver(() => {
        if (newest() === before) return;
        observer.disconnect();
        window.dispatchEvent(new KeyboardEvent('keydown', { code: 'KeyC', altKey: true, cancelable: true }));
      });
      observer.observe(document.querySelector('[data-testid="blotter"]')!, { subtree: true, childList: true });
    });
    const second = await placeOrder(page, frames, { qty: '200' });
    await expect(page.getByTestId('cancel-dialog')).toContainText(second);
  });

  test('are explained in a dialog, and do nothing while one is open', async ({ page }) => {
    await openTrade(page);
    await page.keyboard.press('Alt+k');
    const help = page.getByTestId('hot-keys');
    for (const text of ['Alt+T', 'Alt+Shift+C', 'Esc']) await expect(help).toContainText(text);
    await page.keyboard.press('Alt+t');
    await expect(fieldOf(page, 'symbol')).not.toBeFocused();
    await page.keyboard.press('Escape');
    await expect(help).toHaveCount(0);
    await page.keyboard.press('Alt+t');
    await expect(fieldOf(page, 'symbol')).toBeFocused();
  });

  test('held down open one dialog, whose buttons they do not press', async ({ page }) => {
    const frames = await openTrade(page);
    await page.keyboard.down('Alt');
    await page.keyboard.down('Shift');
    for (let repeat = 0; repeat < 5; ++repeat) await page.keyboard.down('C');
    await page.keyboard.up('Shift');
    await page.keyboard.up('Alt');
    const dialog = page.getByTestId('cancel-dialog');
    await expect(dialog).toBeVisible();
    await page.keyboard.press('Escape');
    await page.getByTestId('cancel-all').focus();
    for (let repeat = 0; repeat < 5; ++repeat) await page.keyboard.down('Enter');
    await page.keyboard.up('Enter');
    await expect(dialog).toBeVisible();
    expect(sent(frames, 'Trade_reqCancelOrder_REQ')).toEqual([]);
  });
});

test.describe('the ladder', { tag: '@page' }, () => {
  test.use({ options: stillMarket });

  const level = (page: Page, name: string) => page.getByTestId('ladder').locator(`tr[data-level="${name}"]`);
  const preset = (page: Page) => page.getByTestId('ladder').locator('[name="preset"]');

  test('fills in side and price, and sends nothing', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    const quote = (await quoteOf(frames, symbol)) as unknown as { askPrices: number[]; bidPrices: number[] };
    await expect(level(page, 'ask 1')).toHaveAttribute('data-price', quote.askPrices[0]!.toFixed(2));
    await level(page, 'bid 2').getByRole('button').nth(1).click();
    await expect(checkedSide(page)).toHaveValue('Sell');
    await expect(fieldOf(page, 'price')).toHaveValue(quote.bidPrices[1]!.toFixed(2));
    await level(page, 'ask 3').getByRole('button').nth(0).click();
    await expect(checkedSide(page)).toHaveValue('Buy');
    await expect(fieldOf(page, 'price')).toHaveValue(quote.askPrices[2]!.toFixed(2));
    expect(sent(frames, 'Trade_insertOrder_REQ')).toEqual([]);
  });

  test('is used by keyboard: one stop of Tab, arrows between the levels', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await expect(level(page, 'ask 1')).toBeVisible();
    await page.keyboard.press('Alt+l');
    await expect(level(page, 'ask 1').getByRole('button').nth(0)).toBeFocused();
    await page.keyboard.press('ArrowDown');
    await page.keyboard.press('ArrowRight');
    await expect(level(page, 'bid 1').getByRole('button').nth(1)).toBeFocused();
    for (let repeat = 0; repeat < 3; ++repeat) await page.keyboard.down('Enter');
    await page.keyboard.up('Enter');
    await expect(checkedSide(page)).toHaveValue('Sell');
    await expect(page.getByTestId('ladder').locator('tbody button[tabindex="0"]')).toHaveCount(1);
    await page.keyboard.press('Tab');
    await expect(page.getByTestId('one-click')).toBeFocused();
  });

  test('shows own open orders at their price', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    const quote = (await quoteOf(frames, symbol)) as unknown as { bidPrices: number[] };
    const price = quote.bidPrices[1]!.toFixed(2);
    const others = level(page, 'bid 2').getByTestId('own-buy');
    await expect(others).toHaveCount(0);
    await placeOrder(page, frames, { price, qty: '300' });
    await placeOrder(page, frames, { price, qty: '200' });
    await expect(level(page, 'bid 2').getByTestId('own-buy')).toHaveText('500');
    await expect(level(page, 'bid 2').getByTestId('own-sell')).toHaveCount(0);
  });

  test('sends at once only with the switch on, with the quantity that it shows', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await expect(page.getByTestId('one-click')).not.toBeChecked();
    await page.getByTestId('one-click').check();
    await preset(page).fill('300');
    await expect(page.getByTestId('ladder').getByText('点击价位立即发送限价单，数量 300')).toBeVisible();
    const quote = (await quoteOf(frames, symbol)) as unknown as { bidPrices: number[] };
    await level(page, 'bid 3').getByRole('button').nth(0).click();
    await expect(outcomeOf(page)).toContainText('已受理');
    expect(sent(frames, 'Trade_insertOrder_REQ').map(({ args: [, ...args] }) => args)).toEqual([
      [
        stockAccount,
        symbol,
        'SH',
        'Buy',
        'Limit',
        quote.bidPrices[2]!.toFixed(2),
        '300',
        expect.stringMatching(/^manual-/),
      ],
    ]);
    await page.getByTestId('one-click').uncheck();
    await level(page, 'bid 3').getByRole('button').nth(0).click();
    expect(sent(frames, 'Trade_insertOrder_REQ')).toHaveLength(1);
    await page.reload();
    await openView(page, '交易');
    await expect(page.getByTestId('one-click')).not.toBeChecked();
  });
});

test.describe('the trade view', { tag: '@page' }, () => {
  test.use({ options: stillMarket });

  test("has no Chinese in English but the terminal's own texts", async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '150' });
    await page.getByTestId('language').selectOption('en');
    await expect(reviewButton(page)).toHaveText('Review the order');
    await reviewButton(page).click();
    await expect(confirmButton(page)).toHaveText('Send the order');
    const labels = await page.getByTestId('view-trade').evaluate((view) => {
      const texts = [...view.querySelectorAll('label, legend, th, button, h2, [role="tab"]')].map((element) => {
        const own = element.cloneNode(true) as HTMLElement;
        own.querySelectorAll('option').forEach((option) => option.remove()); // names of accounts
        return own.textContent ?? '';
      });
      const named = [...view.querySelectorAll('[aria-label], [placeholder]')].flatMap((element) => [
        element.getAttribute('aria-label') ?? '',
        element.getAttribute('placeholder') ?? '',
      ]);
      return [...texts, ...named];
    });
    expect(labels.length).toBeGreaterThan(60);
    // The buttons that close a position name the security.
    expect(labels.filter((text) => /[\u4e00-\u9fff]/.test(text) && !text.startsWith('Close '))).toEqual([]);
    await confirmButton(page).click();
    await expect(outcomeOf(page).getByRole('alert')).toContainText('Refused: 委托数量不符合交易单位');
    await expect(rows(page, 'blotter-table').first().locator('td[data-key="status"]')).toHaveText(
      /Reported|Partly filled/,
    );
  });

  test('keeps what was typed while another view is shown', async ({ page }) => {
    const frames = await openTrade(page);
    const price = await fillTicket(page, frames, { qty: '300', tag: 'mine' });
    await openView(page, '总览');
    await openView(page, '交易');
    await expect(fieldOf(page, 'price')).toHaveValue(price);
    await expect(fieldOf(page, 'qty')).toHaveValue('300');
    await expect(fieldOf(page, 'tag')).toHaveValue('mine');
  });

  test('has labels for everything, and a sensible order of focus', async ({ page }) => {
    const frames = await openTrade(page);
    await fillTicket(page, frames, { qty: '100' });
    await fieldOf(page, 'symbol').focus();
    const names: (string | null)[] = [];
    for (let tab = 0; tab < 9; ++tab) {
      await page.keyboard.press('Tab');
      names.push(
        await page.evaluate(() => document.activeElement?.getAttribute('name') ?? document.activeElement!.tagName),
      );
    }
    expect(names).toEqual(['BUTTON', 'BUTTON', 'BUTTON', 'orderSide', 'priceType', 'price', 'qty', 'tag', 'BUTTON']);
    await expect(reviewButton(page)).toBeFocused();
  });

  for (const theme of ['light', 'dark']) {
    for (const language of ['zh', 'en']) {
      test(`has no fault that axe finds, ${theme}, in ${language}`, async ({ page }) => {
        const frames = await openTrade(page);
        await page.getByTestId('theme').selectOption(theme);
        await page.getByTestId('language').selectOption(language);
        await fillTicket(page, frames, { qty: '100' });
        await expect(page.getByTestId('ladder').locator('tbody tr')).not.toHaveCount(0);
        await reviewButton(page).click();
        await expect(confirmButton(page)).toBeVisible();
        await page.evaluate(axe.source);
        const faults = await page.evaluate(async () => {
          const { axe } = window as unknown as { axe: typeof import('axe-core') };
          const tags = ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa'];
          const { violations } = await axe.run('[data-testid="view-trade"]', { runOnly: tags });
          return violations.map(({ id, nodes }) => `${id}: ${nodes.map(({ html }) => html).join(' ')}`);
        });
        expect(faults).toEqual([]);
      });
    }
  }
});
