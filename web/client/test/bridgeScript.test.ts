import { readFileSync } from 'node:fs';
import { expect, it } from 'vitest';

it("the simulator's bridge.js is what `npm run build:bridge` makes", async () => {
  const build = new URL('../bridge/build.mjs', import.meta.url).href;
  const { bridgeScript } = (await import(build)) as { bridgeScript(): Promise<string> };
  const checkedIn = readFileSync(new URL('../../../simulator/gateway/bridge.js', import.meta.url), 'utf8');
  expect(checkedIn).toBe(await bridgeScript());
}, 60_000);
