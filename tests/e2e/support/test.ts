import { test as base, expect } from '@playwright/test';
import { fileURLToPath } from 'node:url';
import { Home } from './home';
import { Simulator } from './simulator';

export { expect };

const folder = (path: string) => fileURLToPath(new URL(path, import.meta.url));

/** What the simulator serves: the built workbench, or a page with nothing but the bridge (/bare.html). */
export const roots = { workbench: folder('../../../web/workbench/dist'), bare: folder('../pages') };

interface Fixtures {
  root: string;
  options: readonly string[];
  /** Where the simulator lives, and its settings. */
  home: Home;
  running: { simulator: Simulator; url: string };
  /** Address of a simulator of the test's own; it must end cleanly after the test. */
  url: string;
  simulator: Simulator;
}

export const test = base.extend<Fixtures>({
  root: [roots.bare, { option: true }],
  options: [[], { option: true }],

  // Playwright reads the fixtures that are needed from the pattern: none.
  home: async ({}, use) => {
    const home = new Home();
    await use(home);
    home.remove();
  },

  running: async ({ root, options, home }, use, testInfo) => {
    const simulator = new Simulator(['--port', '0', '--root', root, ...options], home.program);
    try {
      await use({ simulator, url: await simulator.listening() });
      expect(await simulator.stop(), `exit of the simulator, which printed:\n${simulator.stderr}`).toEqual({
        code: 0,
        signal: null,
      });
    } finally {
      if (testInfo.status !== testInfo.expectedStatus)
        await testInfo.attach('simulator.log', { body: simulator.stderr, contentType: 'text/plain' });
    }
  },

  simulator: async ({ running }, use) => use(running.simulator),
  url: async ({ running }, use) => use(running.url),
  // Pages close before the simulator stops, because they depend on it here.
  baseURL: async ({ url }, use) => use(url),
});
