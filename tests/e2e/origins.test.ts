import type { Page } from '@playwright/test';
import type { BreakableBridge } from '@varnel/web-client';
import config from './playwright.config';
import { PageServer } from './support/pageServer';
import { viewOf } from './support/peer';
import { Simulator } from './support/simulator';
import { expect, roots, test as base } from './support/test';

// A name of a foreign site that leads to this machine, as an attacker's name server can say.
const rebound = 'rebound.example';

const test = base.extend<{ server: PageServer }>({
  server: async ({}, use) => {
    const server = await PageServer.start('<!doctype html><title>elsewhere</title><body></body>');
    await use(server);
    server.stop();
  },
});

const { launchOptions } = config.use!;

test.use({
  root: roots.workbench,
  launchOptions: {
    ...launchOptions,
    args: [...launchOptions!.args!, `--host-resolver-rules=MAP ${rebound} 127.0.0.1`],
  },
});

/** Shows the address in a frame of the page. */
function frame(page: Page, url: string): Promise<void> {
  return page.evaluate((address) => {
    const inner = document.createElement('iframe');
    inner.src = address;
    document.body.append(inner);
  }, url);
}

/** Whether the page gets this as an element that needs no leave to read. */
function loads(page: Page, element: 'script' | 'img', url: string): Promise<boolean> {
  return page.evaluate(
    ([name, address]) =>
      new Promise<boolean>((resolve) => {
        const loading = document.createElement(name);
        loading.onload = () => resolve(true);
        loading.onerror = () => resolve(false);
        loading.src = address;
        document.body.append(loading);
      }),
    [element, url] as const,
  );
}

/** What becomes of a WebSocket that the page opens. */
function socketOpens(page: Page, address: string): Promise<boolean> {
  return page.evaluate(
    (url) =>
      new Promise<boolean>((resolve) => {
        const socket = new WebSocket(url);
        socket.onopen = () => resolve(true);
        socket.onerror = () => resolve(false);
      }),
    address,
  );
}

/** Whether the page gets an answer that it may read, or one that it may only have. */
function fetches(page: Page, url: string, mode: RequestMode): Promise<boolean> {
  return page.evaluate(
    ([address, how]) =>
      fetch(address, { mode: how }).then(
        () => true,
        () => false,
      ),
    [url, mode] as const,
  );
}

test.describe('a page of a foreign origin', () => {
  test('shows nothing of the simulator in a frame', async ({ server, page, url }) => {
    for (const path of ['', 'inspector/', 'bridge.js', 'nothing']) {
      await page.goto(server.origin);
      const refused = page.waitForEvent('console', (message) => /frame-ancestors/.test(message.text()));
      await frame(page, url + path);
      expect((await refused).type(), path).toBe('error');
      expect(page.frames().map((each) => each.url())).not.toContain(url + path);
    }
  });

  test('reads no file and no traffic, and makes no call', async ({ server, page, url }) => {
    await page.goto(server.origin);
    for (const path of ['', 'icon.svg', 'inspector/', 'nothing']) {
      expect(await fetches(page, url + path, 'cors'), path).toBe(false);
      expect(await fetches(page, url + path, 'no-cors'), path).toBe(false);
    }
    expect(await loads(page, 'img', `${url}icon.svg`)).toBe(false);
    expect(await loads(page, 'script', `${url}index.html`)).toBe(false);
    for (const path of ['view', 'traffic'])
      expect(await socketOpens(page, `ws://${new URL(url).host}/${path}`), path).toBe(false);
    // The bridge has no secrets. Its calls go nowhere.
    expect(await loads(page, 'script', `${url}bridge.js`)).toBe(true);
    await page.waitForFunction(() => (window.CallBridge as BreakableBridge).connectionState === 'closed');
  });

  test('sends a form that nobody takes', async ({ server, page, url }) => {
    await page.goto(server.origin);
    const answered = page.waitForResponse(url);
    await page.evaluate((address) => {
      const form = document.createElement('form');
      form.method = 'POST';
      form.action = address;
      document.body.append(form);
      form.submit();
    }, url);
    expect((await answered).status()).toBe(405);
  });
});

test('a page whose own name leads to this machine gets nothing from the simulator', async ({ page, url }) => {
  const { port } = viewOf(url);
  const foreign = `http://${rebound}:${port}/`;
  expect((await page.goto(foreign))!.status()).toBe(421);
  // That answer is a page of the foreign name. What it asks for is asked as a page from the foreign site would ask.
  const statusOf = (path: string) => page.evaluate((address) => fetch(address).then(({ status }) => status), path);
  for (const path of ['/bridge.js', '/index.html', '/inspector/']) expect(await statusOf(path), path).toBe(421);
  for (const path of ['view', 'traffic'])
    expect(await socketOpens(page, `ws://${rebound}:${port}/${path}`), path).toBe(false);
});

test('a page of an allowed origin shows the workbench in a frame', async ({ server, page, home }) => {
  const simulator = new Simulator(
    ['--port', '0', '--root', roots.workbench, '--allow-origin', server.origin],
    home.program,
  );
  try {
    const url = await simulator.listening();
    await page.goto(server.origin);
    await frame(page, url);
    await expect(page.frameLocator('iframe').getByTestId('split-desk')).toBeVisible();
  } finally {
    await simulator.stop();
  }
});

test('a page of the simulator shows another one in a frame', async ({ page, url }) => {
  await page.goto(`${url}inspector/`);
  await frame(page, url);
  await expect(page.frameLocator('iframe').getByTestId('split-desk')).toBeVisible();
});
