import { answeredCalls, pushEvents, unansweredCalls } from '@varnel/web-client';
import { readdirSync, readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { expect, test } from './support/test';

test.describe('the push of loaded orders', () => {
  // It comes with the first step of the market, here after six seconds: by then both pages listen.
  test.use({ options: ['--speed', '0.5'] });

  test('comes once, with no argument, to every page', async ({ recorder: one, secondRecorder: other }) => {
    for (const recorder of [one, other]) await recorder.until(() => recorder.of('on_orderLoaded').length > 0);
    for (const recorder of [one, other]) expect(recorder.of('on_orderLoaded')).toEqual([[]]);
  });
});

test('the browser tests name every call and push of the protocol', () => {
  const folder = fileURLToPath(new URL('.', import.meta.url));
  const tests = readdirSync(folder).filter((name) => name.endsWith('.test.ts'));
  const texts = tests.map((name) => readFileSync(folder + name, 'utf8')).join('\n');
  const names = [...Object.keys(answeredCalls), ...Object.keys(unansweredCalls), ...pushEvents];
  expect(names.filter((name) => !new RegExp(`\\b${name}\\b`).test(texts))).toEqual([]);
});
