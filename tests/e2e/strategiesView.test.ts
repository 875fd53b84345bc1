import { cell, openDesk, openView, sent } from './support/desk';
import { expect, roots, test } from './support/test';

test.use({ root: roots.workbench });

test.describe('strategies', { tag: '@page' }, () => {
  test('can be started, messaged, queried and stopped', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '策略');
    await page.getByTestId('start-strategy').getByRole('button', { name: '启动' }).click();
    const id = await page.getByTestId('start-outcome').locator('code').innerText();
    await expect(cell(page, 'strategy-table', id, 'status')).toHaveText('运行中');

    const messages = page.getByTestId('custom-messages');
    await messages.getByLabel('消息编号').fill(id);
    await messages.getByRole('button', { name: '订阅' }).click();
    await expect(page.getByTestId('custom-subscriptions')).toContainText(id);
    await messages.getByLabel('消息', { exact: true }).fill('hello');
    await messages.getByRole('button', { name: '发送' }).click();
    await expect(page.getByTestId('custom-log')).toContainText('hello');

    const row = page.getByTestId('strategy-table').locator(`tr[data-id="${id}"]`);
    await row.getByRole('button', { name: '查询' }).click();
    await expect(page.getByTestId('strategy-outcome')).toContainText(`${id} 运行中`);
    await row.getByRole('button', { name: '停止' }).click();
    await expect(cell(page, 'strategy-table', id, 'status')).toHaveText('已停止');
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
