import { answeredCalls, pushEvents, unansweredCalls } from '@varnel/web-client';
import { readdirSync, readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { EventRecorder } from './support/eventRecorder';
import { expect, test } from './support/test';

test.describe('the orders-loaded notice', () => {
  // It comes with the first step of the market, which is late enough here for a page to be there.
  test.use({ options: ['--speed', '0.2'] });

  test('comes once, with no argument, to every page', async ({ context }) => {
    const pages = [
      await EventRecorder.open(await context.newPage()),
      await EventRecorder.open(await context.newPage()),
    ];
    for (const recorder of pages) await recorder.until(() => recorder.of('on_orderLoaded').length > 0);
    for (const recorder of pages) expect(recorder.of('on_orderLoaded')).toEqual([[]]);
  });
});

test('every call and every push of the protocol is named in a test here', () => {
  const folder = fileURLToPath(new URL('.', import.meta.url));
  const tests = readdirSync(folder).filter((name) => name.endsWith('.test.ts'));
  const texts = tests.map((name) => readFileSync(folder + name, 'utf8')).join('\n');
  const names = [...Object.keys(answeredCalls), ...Object.keys(unansweredCalls), ...pushEvents];
  expect(names.filter((name) => !new RegExp(`\\b${name}\\b`).test(texts))).toEqual([]);
});
