import type { Page } from '@playwright/test';
import { expectAccessible } from './support/axe';
import { openDesk, openView, rows, sent } from './support/desk';
import { playing, scenario, symbols } from './support/scenario';
import { expect, roots, stillMarket, test } from './support/test';

test.use({ root: roots.workbench, options: stillMarket });

const viewIds = ['overview', 'trade', 'securities', 'orders', 'holdings', 'strategies'] as const;
const chinese = /[\u4e00-\u9fff]/;

/** Opens a view in any language. */
async function show(page: Page, id: (typeof viewIds)[number]) {
  await page.getByTestId(`tab-${id}`).click();
  await expect(page.getByTestId(`view-${id}`)).toBeVisible();
  if (id !== 'strategies') await expect(page.getByTestId(`view-${id}`).locator('tbody tr').first()).toBeVisible();
}

async function openInAnyLanguage(page: Page) {
  await page.goto('/');
  await expect(page.getByTestId('connection')).toHaveAttribute('data-state', 'open');
  await expect(rows(page, 'kline-table').first()).toBeVisible();
}

/** The desk's own texts: no records, no data in choices, no answers of the terminal. */
const ownTexts = (page: Page) =>
  page.evaluate(() => {
    const isData = (element: Element) =>
      element.closest(
        'noscript, script, style, td, option, dd, output, code, pre, strong, [data-testid="language"], .prices',
      ) !== null;
    const texts: string[] = [];
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
      const text = walker.currentNode.textContent!.trim();
      if (text !== '' && !isData(walker.currentNode.parentElement!)) texts.push(text);
    }
    for (const element of document.querySelectorAll('[aria-label], [placeholder]'))
      if (!isData(element)) texts.push(element.getAttribute('aria-label') ?? element.getAttribute('placeholder')!);
    return texts;
  });

test.describe('the language', { tag: '@page' }, () => {
  test.describe('of an English browser', () => {
    test.use({ locale: 'en-US' });
    test('is English, in every label of every view', async ({ page }) => {
      await openInAnyLanguage(page);
      await expect(page.locator('html')).toHaveAttribute('lang', 'en');
      await expect(page).toHaveTitle('Varnel Workbench');
      for (const id of viewIds) {
        await show(page, id);
        const texts = await ownTexts(page);
        expect(texts.length, id).toBeGreaterThan(20);
        expect(
          texts.filter((text) => chinese.test(text)),
          id,
        ).toEqual([]);
      }
    });
  });

  test('is Chinese in a Chinese browser, can be changed, and stays changed', async ({ page }) => {
    await openDesk(page);
    await expect(page.getByRole('tab', { name: '总览' })).toBeVisible();
    await page.getByTestId('language').selectOption('en');
    await expect(page.getByRole('tab', { name: 'Overview' })).toBeVisible();
    await expect(page.getByTestId('connection')).toHaveText('Connected');
    await page.reload();
    await expect(page.getByTestId('connection')).toHaveText('Connected');
    await expect(page.locator('html')).toHaveAttribute('lang', 'en');
    await page.getByTestId('language').selectOption('zh');
    await expect(page.getByTestId('connection')).toHaveText('已连接');
  });

  test('changes codes of records, and leaves the texts of the terminal as they are', async ({ page }) => {
    await openDesk(page);
    await openView(page, '委托与成交');
    const cells = (key: string) => page.getByTestId('order-table').locator(`td[data-key="${key}"]`);
    const [sides, names] = [await cells('side').allInnerTexts(), await cells('securityName').allInnerTexts()];
    expect(new Set(sides)).toEqual(new Set(['买入', '卖出']));
    await page.getByTestId('language').selectOption('en');
    await expect(cells('side')).toHaveText(sides.map((side) => (side === '买入' ? 'Buy' : 'Sell')));
    await expect(cells('securityName')).toHaveText(names);
  });

  test('is that in which the filter of a table looks for codes, also of records that it saw before', async ({
    page,
  }) => {
    await openDesk(page);
    await openView(page, '委托与成交');
    const view = page.getByTestId('view-orders');
    const sides = page.getByTestId('order-table').locator('td[data-key="side"]');
    const all = await sides.allInnerTexts();
    await view.getByRole('searchbox').fill('买入');
    await expect(sides).toHaveText(all.filter((side) => side === '买入'));
    await page.getByTestId('language').selectOption('en');
    await view.getByRole('searchbox').fill('Sell');
    await expect(sides).toHaveText(all.filter((side) => side === '卖出').map(() => 'Sell'));
  });
});

test.describe('the theme', { tag: '@page' }, () => {
  const ground = (page: Page) => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  const theme = (page: Page) => page.locator('html').getAttribute('data-theme');

  test('is that of the system, until another is chosen, which stays', async ({ page }) => {
    await page.emulateMedia({ colorScheme: 'dark' });
    await openDesk(page);
    expect(await theme(page)).toBe('dark');
    const dark = await ground(page);
    await page.emulateMedia({ colorScheme: 'light' });
    await expect.poll(() => theme(page)).toBe('light');
    expect(await ground(page)).not.toBe(dark);
    await page.getByTestId('theme').selectOption('dark');
    await expect.poll(() => ground(page)).toBe(dark);
    await page.reload();
    await expect(page.getByTestId('theme')).toHaveValue('dark');
    expect(await theme(page)).toBe('dark');
  });
});

test.describe('accessibility', { tag: '@page' }, () => {
  for (const theme of ['light', 'dark'] as const) {
    for (const locale of ['zh-CN', 'en-US']) {
      test.describe(`${theme}, ${locale}`, () => {
        test.use({ colorScheme: theme, locale });
        test('axe finds nothing in any view', async ({ page }) => {
          await openInAnyLanguage(page);
          for (const id of viewIds) {
            await show(page, id);
            if (id === 'securities') {
              await rows(page, 'security-list').first().getByRole('button').click();
              await expect(rows(page, 'levels')).toHaveCount(10);
            }
            await expectAccessible(page, 'body', id);
          }
        });
      });
    }
  }

  test('everything moves without animation when the user asks for that', async ({ page }) => {
    await page.emulateMedia({ reducedMotion: 'reduce' });
    await openDesk(page);
    const moving = await page.evaluate(
      () =>
        [...document.querySelectorAll('*')].filter((element) => {
          const { transitionDuration, animationName } = getComputedStyle(element);
          return parseFloat(transitionDuration) > 0 || animationName !== 'none';
        }).length,
    );
    expect(moving).toBe(0);
  });
});

test.describe('tables', { tag: '@page' }, () => {
  const symbolsShown = (page: Page) => page.getByTestId('watch-table').locator('td[data-key="symbol"]');
  const heading = (page: Page, key: string) => page.getByTestId('watch-table').locator(`th[data-key="${key}"]`);

  test('are sorted by keyboard, and stay sorted after a reload', async ({ page }) => {
    await openDesk(page);
    const asListed = await symbolsShown(page).allInnerTexts();
    await heading(page, 'symbol').getByRole('button').focus();
    await page.keyboard.press('Enter');
    await expect(heading(page, 'symbol')).toHaveAttribute('aria-sort', 'ascending');
    const sorted = [...asListed].sort((one, other) => one.localeCompare(other, 'zh-CN', { numeric: true }));
    expect(sorted).not.toEqual(asListed);
    await expect(symbolsShown(page)).toHaveText(sorted);
    await page.keyboard.press('Enter');
    await expect(symbolsShown(page)).toHaveText([...sorted].reverse());
    await page.reload();
    await expect(symbolsShown(page)).toHaveText([...sorted].reverse());
    await heading(page, 'symbol').getByRole('button').click();
    await expect(symbolsShown(page)).toHaveText(asListed);
    await expect(heading(page, 'symbol')).not.toHaveAttribute('aria-sort');
  });

  test('sort numbers by their size', async ({ page }) => {
    await openDesk(page);
    await expect(page.getByTestId('watch-table').locator('td[data-key="last"]').filter({ hasText: '—' })).toHaveCount(
      0,
    );
    await heading(page, 'last').getByRole('button').click();
    const texts = await page.getByTestId('watch-table').locator('td[data-key="last"]').allInnerTexts();
    const numbers = texts.map(Number);
    expect(numbers).toEqual([...numbers].sort((one, other) => other - one));
  });

  test('show the columns that the user has chosen, also after a reload', async ({ page }) => {
    await openDesk(page);
    await page.getByRole('button', { name: '选择列：自选' }).click();
    await page.getByRole('menuitemcheckbox', { name: '总量' }).click();
    await page.getByRole('menuitemcheckbox', { name: '时间' }).click();
    await page.keyboard.press('Escape');
    const shown = async () => {
      await expect(heading(page, 'volume')).toBeVisible();
      await expect(heading(page, 'time')).toHaveCount(0);
    };
    await shown();
    await page.reload();
    await shown();
    await page.getByRole('button', { name: '选择列：自选' }).click();
    await page.getByRole('menuitem', { name: '恢复默认列' }).click();
    await expect(heading(page, 'volume')).toHaveCount(0);
    await expect(heading(page, 'time')).toBeVisible();
  });

  test('are filtered by every shown text', async ({ page }) => {
    await openDesk(page);
    const all = await symbolsShown(page).count();
    const filter = page.getByTestId('watch').getByRole('searchbox');
    await filter.fill(scenario.securities[0]!.name);
    await expect(symbolsShown(page)).toHaveText([symbols[0]!]);
    await expect(page.getByTestId('watch-table-count')).toHaveText(`1 / ${all} 条`);
    await filter.fill('no such text');
    await expect(page.getByTestId('watch')).toContainText('没有符合筛选的记录');
    await filter.fill('');
    await expect(symbolsShown(page)).toHaveCount(all);
  });

  /** Opens the desk with these securities in the list of all, in place of the simulator's. */
  async function openWithSecurities(page: Page, names: readonly string[]) {
    await page.routeWebSocket(/\/view$/, (socket) => {
      const server = socket.connectToServer();
      server.onMessage((frame) => {
        const { event, args } = JSON.parse(String(frame)) as { event: string; args: string[] };
        if (event !== 'Data_getSymbolList_RES') return socket.send(frame);
        const reply = JSON.parse(args[0]!) as { resultData: unknown[] };
        reply.resultData = names.map((displayName, at) => ({ symbol: `${at}.XX`, displayName, spellName: `N${at}` }));
        socket.send(JSON.stringify({ event, args: [JSON.stringify(reply)] }));
      });
    });
    await openDesk(page);
    await openView(page, '证券');
  }

  test('of 100,000 records draw what is in sight, and scroll to the end', async ({ page }) => {
    await openWithSecurities(
      page,
      Array.from({ length: 100_000 }, (_, at) => `name ${at}`),
    );
    await expect(page.getByTestId('security-list-count')).toHaveText('100,000 条');
    expect(await rows(page, 'security-list').count()).toBeLessThan(100);
    const list = page.getByTestId('securities').locator('.scroll');
    await list.evaluate((element) => element.scrollTo(0, element.scrollHeight));
    await expect(rows(page, 'security-list').last()).toContainText('99999.XX');
    await expect(page.getByTestId('security-list').locator('th').first()).toBeInViewport();
    expect(await rows(page, 'security-list').count()).toBeLessThan(100);
    await list.focus();
    await page.keyboard.press('Home');
    await expect(rows(page, 'security-list').first()).toContainText('0.XX');
  });

  /** The texts of cells that reach into the next cell. */
  const overlapping = (page: Page) =>
    page
      .locator('table.records td:not(.control):visible')
      .evaluateAll((cells) =>
        cells
          .filter((cell) => cell.scrollWidth > cell.clientWidth && getComputedStyle(cell).overflowX === 'visible')
          .map((cell) => cell.textContent),
      );

  for (const locale of ['zh-CN', 'en-US']) {
    test.describe(locale, () => {
      test.use({ locale });
      test('have no text that reaches into the next cell', async ({ page }) => {
        await openInAnyLanguage(page);
        for (const id of viewIds) {
          await show(page, id);
          expect(await overlapping(page), id).toEqual([]);
        }
      });
    });
  }

  test('cut texts that are longer than their column, which tooltips show whole', async ({ page }) => {
    // The first rows decide on the widths.
    const names = Array.from({ length: 1000 }, (_, at) => (at < 900 ? `证券 ${at}` : '一二三四五六七八九十'.repeat(9)));
    names[499] = '有更长名称的证券';
    await openWithSecurities(page, names);
    const nameAt = (at: number) =>
      page.getByTestId('security-list').locator(`tr[data-id="${at}.XX"] td[title]`).first();
    await expect(nameAt(3)).toHaveCSS('overflow-x', 'visible');
    const list = page.getByTestId('securities').locator('.scroll');
    await list.evaluate((element) => element.scrollTo(0, element.scrollHeight / 2));
    await expect(nameAt(499)).toHaveCSS('overflow-x', 'visible');
    await list.evaluate((element) => element.scrollTo(0, element.scrollHeight));
    await expect(nameAt(999)).toHaveAttribute('title', names[999]!);
    await expect(nameAt(999)).toHaveCSS('overflow-x', 'hidden');
    await expect(nameAt(999)).toHaveCSS('text-overflow', 'ellipsis');
    expect(await overlapping(page)).toEqual([]);
  });
});

test.describe('the layout', { tag: '@page' }, () => {
  test('is changed by keyboard, and stays changed', async ({ page }) => {
    await openDesk(page);
    const width = async () => (await page.getByTestId('part-desk-calls').boundingBox())!.width;
    const before = await width();
    const separator = page.getByTestId('resize-desk-calls');
    await separator.focus();
    for (let press = 0; press < 3; ++press) await page.keyboard.press('ArrowLeft');
    await expect.poll(width).toBeGreaterThan(before + 50);
    const after = await width();
    await page.reload();
    await expect(rows(page, 'kline-table').first()).toBeVisible();
    await expect.poll(async () => Math.abs((await width()) - after)).toBeLessThan(2);
  });
});

test.describe('hidden views', { tag: '@page' }, () => {
  test.use({ options: ['--speed', '20'] });
  test('neither ask for anything nor follow quotes', async ({ page }) => {
    const frames = await openDesk(page);
    await openView(page, '资产与持仓');
    await expect.poll(() => sent(frames, 'Data_getPositionList_REQ').length).toBeGreaterThan(2); // prices move
    await openView(page, '策略');
    await expect.poll(() => sent(frames, 'UnSub_subscribe_REQ').length).toBeGreaterThan(1);
    const after = frames.sent.length;
    // Accounts and orders change, and the page is told of it.
    const count = () => frames.received.filter(({ event }) => event === 'on_AssetUpdate').length;
    const told = count();
    await expect.poll(count).toBeGreaterThan(told + 2);
    expect(frames.sent.slice(after).map(({ invoke }) => invoke)).toEqual([]);
    await openView(page, '资产与持仓');
    await expect.poll(() => frames.sent.length).toBeGreaterThan(after);
  });
});

test.describe('another scenario', { tag: '@page' }, () => {
  const other = {
    ...scenario,
    generatedSecurities: 0,
    securities: scenario.securities.slice(0, 3).map((security, at) => ({
      ...security,
      symbol: `70000${at}.SH`,
      securityId: `70000${at}`,
      exchange: 'SH',
    })),
  };
  test.use({ options: playing(other) });

  test('gives the desk its own first watch list and chart', async ({ page }) => {
    await openDesk(page);
    const shown = await page.getByTestId('watch-table').locator('td[data-key="symbol"]').allInnerTexts();
    expect(shown).toEqual(['700000.SH', '700001.SH']); // the first two shares
    await expect(page.getByTestId('kline-chart')).toContainText('700000.SH');
  });
});
