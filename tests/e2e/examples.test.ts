import { expect, test } from '@playwright/test';
import { methods, oneWayMethods, pushEvents } from '@varnel/web-client';
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { collectExamples, stopSimulators, type Examples } from './support/examples';

const path = fileURLToPath(new URL('../../docs/protocol.md', import.meta.url));
const page = readFileSync(path, 'utf8');

/** A fold of the page: its first line names calls and pushes, and the rest shows an example of each. */
const folds = /^(<details><summary>.*<\/summary>)$[^]*?^<\/details>$/gm;
const namesIn = (summary: string) => [...summary.matchAll(/<code>(\w+)<\/code>/g)].map(([, name]) => name!);

function withExamples(examples: Examples): string {
  return page.replace(folds, (_, summary: string) => {
    const shown = namesIn(summary).map((name) => examples.get(name) ?? `// no example of ${name}`);
    return [summary, '', '```js', shown.join('\n\n'), '```', '', '</details>'].join('\n');
  });
}

test.afterAll(stopSimulators);

test('the protocol page has one example of each call and push', () => {
  const named = [...page.matchAll(folds)].flatMap(([, summary]) => namesIn(summary!));
  const calls = Object.values({ ...methods, ...oneWayMethods }).map(({ method }) => method);
  expect(named.sort()).toEqual([...calls, ...pushEvents].sort());
});

test('the examples of the protocol page are what the simulator answers', async ({}, { config }) => {
  const written = withExamples(await collectExamples());
  if (config.updateSnapshots === 'all' || config.updateSnapshots === 'changed') writeFileSync(path, written);
  else expect(page, './dev docs --examples writes them anew').toBe(written);
});
