import { test as base, expect, type BrowserContext, type Page } from '@playwright/test';
import { fileURLToPath } from 'node:url';
import { EventRecorder } from './eventRecorder';
import { Home } from './home';
import { Simulator } from './simulator';
import { watchTraffic, wrongFrames } from './traffic';

export { expect };

const folder = (path: string) => fileURLToPath(new URL(path, import.meta.url));

/** What the simulator serves: the built workbench, or a page with nothing but the bridge (/bare.html). */
export const roots = { workbench: folder('../../../web/workbench/dist'), bare: folder('../pages') };

const inspector = folder('../../../web/inspector/dist');

/**
 * The first step of this market comes after 30 seconds, later than a test ends. A slower market would cost time: the
 * simulator's message bus slows down with it, and the first page waits for an answer from there.
 */
export const stillMarket = ['--speed', '0.1'];

interface Fixtures {
  root: string;
  options: readonly string[];
  /** The folder of the simulator and its settings. */
  home: Home;
  running: { simulator: Simulator; url: string };
  /** Address of the test's own simulator, which must end cleanly after the test. */
  url: string;
  simulator: Simulator;
  /** A bare page, connected: for tests that need nothing else of a page than its calls. */
  barePage: Page;
  recorder: EventRecorder;
  secondRecorder: EventRecorder;
  thirdRecorder: EventRecorder;
  /** Fails the test when a page and its simulator exchange what docs/openrpc.json does not describe. */
  traffic: void;
}

/** Chromium takes long to make a page, so bare pages serve all tests of a worker, one after the other. */
interface KeptPages {
  context: BrowserContext;
  bare: Page;
  recorders: EventRecorder[];
}

function recorderFixture(index: number) {
  return async (
    { keptPages: { context, recorders }, url }: { keptPages: KeptPages; url: string },
    use: (recorder: EventRecorder) => Promise<void>,
  ) => {
    const recorder = (recorders[index] ??= await EventRecorder.create(context));
    await recorder.open(url);
    await use(recorder);
    await recorder.leave();
  };
}

export const test = base.extend<Fixtures, { keptPages: KeptPages }>({
  root: [roots.bare, { option: true }],
  options: [[], { option: true }],

  // Playwright reads the fixtures that are needed from the pattern: none.
  traffic: [
    async ({}, use) => {
      wrongFrames.length = 0;
      await use();
      expect(wrongFrames, 'frames that docs/openrpc.json does not describe').toEqual([]);
    },
    { auto: true },
  ],
  context: async ({ context }, use) => {
    watchTraffic(context);
    await use(context);
  },

  home: async ({}, use) => {
    const home = new Home();
    await use(home);
    home.remove();
  },

  running: async ({ root, options, home }, use, testInfo) => {
    const simulator = new Simulator(
      ['--port', '0', '--root', root, '--inspector', inspector, ...options],
      home.program,
    );
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

  keptPages: [
    async ({ browser }, use) => {
      const context = await browser.newContext();
      watchTraffic(context);
      await use({ context, bare: await context.newPage(), recorders: [] });
      await context.close();
    },
    { scope: 'worker' },
  ],
  barePage: async ({ keptPages: { bare }, url }, use) => {
    await bare.goto(`${url}bare.html`);
    await use(bare);
    await bare.goto('about:blank');
  },
  recorder: recorderFixture(0),
  secondRecorder: recorderFixture(1),
  thirdRecorder: recorderFixture(2),
});
