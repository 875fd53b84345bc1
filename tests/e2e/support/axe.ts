import { expect, type Page } from '@playwright/test';
import axe from 'axe-core';

const rules = ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa'];

/** Expects that axe finds nothing against WCAG 2.2 AA in the part of the page. */
export async function expectAccessible(page: Page, part: string): Promise<void> {
  await page.evaluate(axe.source);
  const found = await page.evaluate(
    async ([selector, tags]) => {
      const tester = (window as unknown as { axe: typeof axe }).axe;
      const { violations } = await tester.run(selector, { runOnly: tags });
      return violations.flatMap(({ id, nodes }) => nodes.map(({ html, failureSummary }) => [id, html, failureSummary]));
    },
    [part, rules] as const,
  );
  expect(found).toEqual([]);
}
