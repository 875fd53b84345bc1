import { readFileSync } from 'node:fs';
import { expect, it } from 'vitest';

interface Build {
  scripts: Record<string, string>;
  textOf(script: string): Promise<string>;
}

it.each(['bridge', 'windowBridge'])(
  "the simulator's script is what `npm run build:bridge` makes of %s.ts",
  async (script) => {
    const build = new URL('../bridge/build.mjs', import.meta.url).href;
    const { scripts, textOf } = (await import(build)) as Build;
    expect(readFileSync(scripts[script]!, 'utf8')).toBe(await textOf(script));
  },
  60_000,
);
