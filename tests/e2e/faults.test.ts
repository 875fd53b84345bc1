import type { Page } from '@playwright/test';
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
    await page.evaluate(
      async (address) => {
        const socket = new WebSocket(address);
        await new Promise((resolve) => (socket.onopen = resolve));
        const done = new Promise<void>((resolve) => {
          socket.onmessage = ({ data }) => {
            if ((JSON.parse(String(data)) as { kind: string }).kind === 'result') resolve();
          };
        });
        socket.send('{"command":"fault drop-in-call=1","id":1}');
        await done;
      },
      `${url.replace('http', 'ws')}control`,
    );
    await confirmButton(page).click();
    await expect(outcomeOf(page).locator('[data-outcome="unknown"]')).toBeVisible();
  });
});
