import type { Page } from '@playwright/test';
import { expectAccessible } from './support/axe';
import { expect, stillMarket, test } from './support/test';

test.use({ options: [...stillMarket, '--fault', 'silent-klines'] });

const fault = (inspector: Page, name: string) =>
  inspector.getByTestId('fault').and(inspector.locator(`[data-name="${name}"]`));

test.describe('the control panel of the inspector', { tag: '@page' }, () => {
  let inspector: Page;

  test.beforeEach(async ({ barePage, url }) => {
    inspector = await barePage.context().newPage();
    await inspector.goto(`${url}inspector`);
    await inspector.getByTestId('control').locator('summary').click();
  });

  test.afterEach(() => inspector.close());

  test('stops time, moves it and lets it go on', async () => {
    const state = inspector.getByTestId('control-state');
    await expect(state).toContainText('×0.1');
    await inspector.getByRole('button', { name: '暂停时间' }).click();
    await expect(state).toContainText('2025-03-03 10:00:0');
    await expect(state).toContainText('已暂停');
    await inspector.getByRole('button', { name: '下一次行情' }).click();
    await expect(state).toContainText('2025-03-03 10:00:03');
    await inspector.getByRole('button', { name: '跳到收盘' }).click();
    await expect(state).toContainText('2025-03-03 15:00:00');
    await inspector.getByLabel('速度').selectOption('×10');
    await inspector.getByRole('button', { name: '继续' }).click();
    await expect(state).toContainText('×10');
    await expect(state).not.toContainText('15:00:00');
  });

  test('switches faults, which pages then see, and shows how often they still happen', async ({
    barePage,
    recorder,
  }) => {
    const state = inspector.getByTestId('control-state');
    await expect(state).toContainText('1 个故障');
    const silentKlines = fault(inspector, 'silent-klines').getByRole('checkbox');
    await silentKlines.uncheck();
    await expect(state).toContainText('0 个故障');
    await silentKlines.press('Space');
    await expect(state).toContainText('1 个故障');
    await expect(silentKlines).toBeFocused();
    await silentKlines.press('Space');
    await expect(state).toContainText('0 个故障');
    await fault(inspector, 'refuse-orders').getByRole('spinbutton').fill('2');
    await fault(inspector, 'refuse-orders').getByRole('spinbutton').press('Enter');
    await expect(fault(inspector, 'refuse-orders')).toHaveAttribute('data-value', '2');
    await expect(fault(inspector, 'refuse-orders').getByRole('spinbutton')).toBeFocused();
    await barePage.evaluate(() =>
      window.CallBridge.invokeMethod(
        'Trade_insertOrder_REQ',
        ...['u1', '880010001', '609801.SH', '', 'Buy', 'Limit', '18.00', '100', ''],
      ),
    );
    await expect(fault(inspector, 'refuse-orders')).toHaveAttribute('data-value', '1');
    await expect(fault(inspector, 'refuse-orders').getByRole('spinbutton')).toHaveValue('1');
    await inspector.getByRole('button', { name: '清除所有故障' }).click();
    await expect(state).toContainText('0 个故障');
    await recorder.call('Data_getToken_REQ', 'still there');
  });

  test('says why a command was not carried out', async () => {
    await inspector.getByLabel('突发委托笔数').fill('0');
    await inspector.getByRole('button', { name: '突发', exact: true }).click();
    await expect(inspector.getByTestId('problem')).toHaveText('burst needs a number of orders from 1 to 100000');
  });

  test('carries out any command, and says what was done', async () => {
    const done = inspector.getByTestId('done');
    await expect(done).toHaveText('');
    const field = inspector.getByRole('combobox', { name: '命令' });
    await field.fill('jump 2025-03-04 09:16:00');
    await field.press('Enter');
    await expect(done).toHaveText('已执行：jump 2025-03-04 09:16:00');
    await expect(inspector.getByTestId('control-state')).toContainText('2025-03-04 09:16:0');
    await field.fill('halt NOSUCH');
    await inspector.getByRole('button', { name: '执行' }).click();
    await expect(inspector.getByTestId('problem')).toHaveText('NOSUCH is not listed');
    await expect(done).toHaveText('');
  });

  test('breaks the connections of all pages, and not its own', async ({ barePage }) => {
    const closed = barePage.waitForEvent('websocket').then((socket) => socket.waitForEvent('close'));
    await barePage.reload();
    await barePage.evaluate(() => window.CallBridge.invokeMethod('Data_getToken_REQ', 'connected'));
    await inspector.getByRole('button', { name: '断开所有页面' }).click();
    await closed;
    await expect(inspector.getByTestId('control-state')).toContainText('2025-03-03');
  });

  test('breaks no rule of accessibility, in both languages', async () => {
    await expectAccessible(inspector, '#inspector', 'Chinese');
    await inspector.getByTestId('language').selectOption('en');
    await expect(fault(inspector, 'silent-klines')).toContainText('No request for candles is answered.');
    await expectAccessible(inspector, '#inspector', 'English');
  });
});
