import { answeredCalls, pushEvents, unansweredCalls } from '@varnel/web-client';
import { readdirSync, readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { expect, roots, test } from './support/test';
import { comparedFrames, wrongFrames } from './support/traffic';

test.describe('the push of loaded orders', () => {
  // It comes with the first step of the market, here after six seconds: by then both pages listen.
  test.use({ options: ['--speed', '0.5'] });

  test('comes once, with no argument, to every page', async ({ recorder: one, secondRecorder: other }) => {
    for (const recorder of [one, other]) await recorder.until(() => recorder.of('on_orderLoaded').length > 0);
    for (const recorder of [one, other]) expect(recorder.of('on_orderLoaded')).toEqual([[]]);
  });
});

test.describe('the comparison with the description of the protocol', () => {
  test.use({ root: roots.workbench });

  test('looks at the calls of the client and at all events', { tag: '@page' }, async ({ page }) => {
    const before = { ...comparedFrames };
    await page.goto('/');
    await expect.poll(() => comparedFrames.sent).toBeGreaterThan(before.sent);
    await expect.poll(() => comparedFrames.received).toBeGreaterThan(before.received);
  });

  test('finds a wrong call', { tag: '@page' }, async ({ page }) => {
    await page.goto('/');
    await page.evaluate(() =>
      window.CallBridge.invokeMethod('Data_getFundAccountList_REQ', `${'0'.repeat(32)}-1`, 'no number'),
    );
    await expect.poll(() => wrongFrames.splice(0)).toEqual([expect.stringContaining('/1 must be integer')]);
  });
});

test('the browser tests name every call and push of the protocol', () => {
  const folder = fileURLToPath(new URL('.', import.meta.url));
  const tests = readdirSync(folder).filter((name) => name.endsWith('.test.ts'));
  const texts = tests.map((name) => readFileSync(folder + name, 'utf8')).join('\n');
  const names = [...Object.keys(answeredCalls), ...Object.keys(unansweredCalls), ...pushEvents];
  expect(names.filter((name) => !new RegExp(`\\b${name}\\b`).test(texts))).toEqual([]);
});
