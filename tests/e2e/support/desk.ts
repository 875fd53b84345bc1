import { expect, type Page } from '@playwright/test';
import { Frames } from './frames';

/** The frames of the pages that `openDesk` has opened. */
const framesOf = new WeakMap<Page, Frames>();

const awaitAnswers = (page: Page) => expect.poll(() => framesOf.get(page)!.unanswered).toBe(0);

/** Opens the desk and waits for the answers to its first calls. */
export async function openDesk(page: Page, address = '/'): Promise<Frames> {
  const frames = new Frames(page);
  framesOf.set(page, frames);
  await page.goto(address);
  await expect(page.getByTestId('connection')).toHaveText('已连接');
  await expect(page.getByTestId('kline-table').locator('tbody tr')).not.toHaveCount(0);
  await awaitAnswers(page);
  return frames;
}

export const rows = (page: Page, table: string) => page.getByTestId(table).locator('tbody tr');

/** The cell of a record by the record's identifier and the key of its column. */
export const cell = (page: Page, table: string, id: string, key: string) =>
  page.getByTestId(table).locator(`tr[data-id="${id}"] td[data-key="${key}"]`);

export const sent = (frames: Frames, method: string) => frames.sent.filter(({ invoke }) => invoke === method);

export const views = ['总览', '交易', '证券', '委托与成交', '资产与持仓', '策略'] as const;

/** Opens a view and waits for the answers to its first calls. */
export async function openView(page: Page, view: (typeof views)[number]): Promise<void> {
  await page.getByRole('tab', { name: view }).click();
  // There are no strategies before one is started.
  if (view !== '策略') await expect(page.getByRole('tabpanel', { name: view }).locator('tbody tr')).not.toHaveCount(0);
  await awaitAnswers(page);
}
