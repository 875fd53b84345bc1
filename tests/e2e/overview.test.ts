import type { Page } from '@playwright/test';
import { cell, openDesk, openView, rows, sent } from './support/desk';
import { symbols } from './support/scenario';
import { Simulator } from './support/simulator';
import { expect, roots, test } from './support/test';

test.use({ root: roots.workbench });

/** A security that is not on the first list. */
const added = '309812.SZ';

test.describe('the watch list', { tag: '@page' }, () => {
  const symbolsShown = (page: Page) => page.getByTestId('watch-table').locator('tbody tr td:first-child');

  test.describe('at 20 times the speed', () => {
    test.use({ options: ['--speed', '20'] });
    test('shows pushed quotes', async ({ page }) => {
      const frames = await openDesk(page);
      const time = cell(page, 'watch-table', symbols[0]!, 'time');
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
    await watch.getByLabel('证券标识').fill(added);
    await watch.getByRole('button', { name: '加自选' }).click();
    await watch.getByRole('button', { name: `移除 ${first[0]}` }).click();
    const changed = [...first.slice(1), added];
    await expect(symbolsShown(page)).toHaveText(changed);
    await page.reload();
    await expect(symbolsShown(page)).toHaveText(changed);
    await page.close();
    await simulator.stop();

    const again = new Simulator(['--port', '0', '--root', roots.workbench], home.program);
    const later = await context.newPage();
    await later.goto(await again.listening());
    await expect(symbolsShown(later)).toHaveText(changed);
    await expect(cell(later, 'watch-table', added, 'last')).toHaveText(/\d/);
    await later.close();
    expect(await again.stop()).toEqual({ code: 0, signal: null });
  });

  test('cannot be changed before the saved list has been read', async ({ page }) => {
    await page.addInitScript(() => {
      // Holds back the replies with saved settings until the test releases them.
      const own = Object.getOwnPropertyDescriptor(WebSocket.prototype, 'onmessage')!;
      Object.defineProperty(WebSocket.prototype, 'onmessage', {
        set(this: WebSocket, hear: ((event: MessageEvent) => void) | null) {
          own.set!.call(this, (event: MessageEvent) => {
            const isSetting = String(event.data).includes('Data_getSetting_RES');
            if (!isSetting || sessionStorage.getItem('released')) return hear?.(event);
            window.addEventListener('release', () => hear?.(event));
          });
        },
      });
    });
    await page.goto('/');
    const watch = page.getByTestId('watch');
    await watch.getByLabel('证券标识').fill(added);
    const add = watch.getByRole('button', { name: '加自选' });
    await expect(add).toBeDisabled();
    await watch.getByLabel('证券标识').press('Enter');
    await page.evaluate(() => {
      sessionStorage.setItem('released', 'yes');
      window.dispatchEvent(new Event('release'));
    });
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
    await page.getByRole('button', { name: `移除 ${shown[1]}` }).click();
    await expect.poll(() => sent(frames, 'UnSub_subscribe_REQ').map(({ args }) => args[1])).toEqual([shown[1]]);
  });

  test('selects the security of the chart and the ticket', async ({ page }) => {
    await openDesk(page);
    await page.getByTestId('watch-table').getByRole('button', { name: symbols[1]!, exact: true }).click();
    await expect(page.getByTestId('kline-chart')).toContainText(symbols[1]!);
    await openView(page, '交易');
    await expect(page.getByTestId('ticket').getByLabel('证券标识')).toHaveValue(symbols[1]!);
  });
});

test('the permission panel shows permissions and opens the menu', { tag: '@page' }, async ({ page, simulator }) => {
  await openDesk(page);
  const panel = page.getByTestId('permission');
  await panel.getByRole('button', { name: '查询' }).click();
  await expect(page.getByTestId('permission-answer')).toContainText('有权限（1）');
  await panel.getByLabel('支持类型').fill('other');
  await panel.getByRole('button', { name: '查询' }).click();
  await expect(page.getByTestId('permission-answer')).toContainText('无权限（0）');
  await panel.getByRole('button', { name: '权限菜单' }).click();
  await simulator.logged(/opens menu 1210/);
});
