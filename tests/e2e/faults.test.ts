import type { Page } from '@playwright/test';
import { command } from './support/control';
import { openDesk, openView } from './support/desk';
import { expect, roots, stillMarket, test } from './support/test';
import { confirmButton, fillTicket, outcomeOf, reviewButton } from './support/tradeDesk';
import type { Frames } from './support/frames';

test.use({ root: roots.workbench });

async function send(page: Page, frames: Frames): Promise<void> {
  await fillTicket(page, frames, { qty: '100' });
  await reviewButton(page).click();
  await confirmButton(page).click();
}

test.describe('after a refusal the workbench', { tag: '@page' }, () => {
  test.use({ options: [...stillMarket, '--fault', 'refuse-orders'] });

  test('shows why an order was refused', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    await send(page, frames);
    await expect(outcomeOf(page).locator('[data-outcome="refused"]')).toContainText('柜台拒绝委托');
  });
});

test.describe('after a quiet refusal the workbench', { tag: '@page' }, () => {
  test.use({ options: [...stillMarket, '--fault', 'refuse-orders-silently'] });

  test('does not take the reply for an order', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    await send(page, frames);
    await expect(outcomeOf(page).locator('[data-outcome="refusedWithoutReason"]')).toBeVisible();
  });
});

test.describe('when the connection breaks while an order is sent, the workbench', { tag: '@page' }, () => {
  test.use({ options: stillMarket });

  test('says that it does not know what became of it', async ({ page, url }) => {
    const frames = await openDesk(page);
    await openView(page, '交易');
    await fillTicket(page, frames, { qty: '100' });
    await reviewButton(page).click();
    await expect(page.getByTestId('ticket-tradable')).toHaveText(/^\d+$/); // the ticket makes no other call then
    await command(url, 'fault drop-in-call=1');
    await confirmButton(page).click();
    await expect(outcomeOf(page).locator('[data-outcome="unknown"]')).toContainText('标签 manual-');
  });
});
