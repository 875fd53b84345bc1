import type { Locator, Page } from '@playwright/test';
import type { Tick } from '@varnel/web-client';
import { expect } from '@playwright/test';
import type { Frames } from './frames';
import { symbols } from './scenario';

/** Parts of the trade view, by what does not depend on the language. */
export const ticketOf = (page: Page) => page.getByTestId('ticket');
export const fieldOf = (page: Page, name: 'symbol' | 'price' | 'qty' | 'tag' | 'priceType') =>
  ticketOf(page).locator(`[name="${name}"]`);
export const reviewButton = (page: Page) => ticketOf(page).locator('button[type="submit"]');
export const confirmButton = (page: Page) => ticketOf(page).getByTestId('confirm');
export const outcomeOf = (page: Page) => page.getByTestId('ticket-outcome');
export const numberOf = async (locator: Locator) => Number((await locator.innerText()).replace(/[^\d.-]/g, ''));

export interface Typed {
  symbol?: string;
  side?: string;
  /** The day's limits, or a text. */
  price?: 'lowest' | 'highest' | (string & {});
  qty: string;
  tag?: string;
}

/** The current quote of a symbol, once the page has it. */
export async function quoteOf(frames: Frames, symbol: string): Promise<Record<string, number>> {
  const quote = () =>
    frames
      .replies('Data_getCurrentTick_RES')
      .map(({ resultData }) => resultData as Tick)
      .find((tick) => tick.symbol === symbol);
  await expect.poll(quote).toBeTruthy();
  return quote() as unknown as Record<string, number>;
}

/** Fills in the ticket without reviewing it. Gives the price. */
export async function fillTicket(page: Page, frames: Frames, typed: Typed): Promise<string> {
  const { symbol = symbols[0]!, side, price = 'lowest', qty, tag } = typed;
  await fieldOf(page, 'symbol').fill(symbol);
  const quote = await quoteOf(frames, symbol);
  const limits: Readonly<Record<string, number>> = { lowest: quote.lowerLimit!, highest: quote.upperLimit! };
  const text = limits[price]?.toFixed(2) ?? price;
  if (side) await ticketOf(page).locator(`[name="orderSide"][value="${side}"]`).check();
  await fieldOf(page, 'price').fill(text);
  await fieldOf(page, 'qty').fill(qty);
  if (tag !== undefined) await fieldOf(page, 'tag').fill(tag);
  await expect(reviewButton(page)).toBeEnabled();
  return text;
}

/** Places an order that must be accepted. Gives its number. */
export async function placeOrder(page: Page, frames: Frames, typed: Typed): Promise<string> {
  await fillTicket(page, frames, typed);
  await reviewButton(page).click();
  await confirmButton(page).click();
  const accepted = outcomeOf(page).locator('[data-outcome="accepted"] code');
  await expect(accepted).toBeVisible();
  return accepted.innerText();
}

/** Shows the newest of all orders in the blotter, or all open ones. */
export async function showOrders(page: Page, which: 'open' | 'latest'): Promise<void> {
  await page
    .locator('[name="blotter-list"]')
    .nth(which === 'open' ? 0 : 1)
    .check();
}

/** Positions, executions or the basket. */
export async function showBook(page: Page, which: 'positions' | 'deals' | 'basket'): Promise<void> {
  await page.getByTestId('book').getByTestId(`tab-${which}`).click();
}
