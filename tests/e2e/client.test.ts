import { openOrderStatuses, type Connection } from '@varnel/web-client';
import { connectSimulator } from '@varnel/web-client/simulator';
import { execFile } from 'node:child_process';
import { join } from 'node:path';
import { promisify } from 'node:util';
import { WebSocket } from 'ws';
import { PageServer, scripts } from './support/pageServer';
import { fundAccounts, symbols } from './support/scenario';
import { Simulator } from './support/simulator';
import { expect, test as base } from './support/test';

const symbol = symbols[0]!;
const { fundAccount } = fundAccounts()[0]!;

/** Starts simulators at any time of a test. */
const test = base.extend<{ startSimulator(args: string[]): Promise<{ simulator: Simulator; url: string }> }>({
  startSimulator: async ({ home }, use) => {
    const started: Simulator[] = [];
    await use(async (args) => {
      const simulator = new Simulator(args, home.program);
      started.push(simulator);
      return { simulator, url: await simulator.listening() };
    });
    await Promise.all(started.map((simulator) => simulator.stop('SIGKILL')));
  },
});

declare global {
  interface Window {
    sdk: Connection;
  }
}

test.describe('a page of another server', () => {
  const html = `<!doctype html><title>elsewhere</title><output></output><script type="module">
    import { connectSimulator } from '/client/simulator/index.js';
    const url = new URLSearchParams(location.search).get('simulator');
    const sdk = (window.sdk = connectSimulator({ url }));
    sdk.watchQuotes(['${symbol}'], ({ items }) => {
      document.querySelector('output').textContent = items.get('${symbol}').last;
    });
  </script>`;

  test('shows a quote when the simulator allows its origin', async ({ startSimulator, page }) => {
    const server = await PageServer.start(html);
    const { simulator, url } = await startSimulator(['--port', '0', '--allow-origin', server.origin]);
    await page.goto(`${server.origin}/?simulator=${url}`);
    await expect(page.locator('output')).toHaveText(/^\d+\.\d+$/);
    expect(await page.evaluate(() => window.sdk.state)).toBe('open');
    await simulator.stop();
    await page.waitForFunction(() => window.sdk.state === 'connecting');
    server.stop();
  });

  test('goes on trying when the simulator refuses its origin', async ({ page, simulator, url }) => {
    const server = await PageServer.start(html);
    await page.goto(`${server.origin}/?simulator=${url}`);
    await simulator.logged(/A WebSocket of origin .* was refused; --allow-origin lets it in/);
    const closed = page.evaluate(
      () =>
        new Promise((resolve) => {
          window.sdk.onClose(resolve);
        }),
    );
    expect(await closed).toMatchObject({ willReconnect: true });
    server.stop();
  });
});

test.describe('a script in Node', () => {
  const quote = new RegExp(`^${symbol.replace('.', '\\.')} \\d+\\.\\d+\n$`);
  const run = async (flags: string[], ...args: string[]) => {
    const { stdout } = await promisify(execFile)(process.execPath, [...flags, join(scripts, 'quote.mjs'), ...args]);
    return stdout;
  };

  test('prints a quote with the package ws', async ({ url }) => {
    expect(await run([], url, symbol, 'ws')).toMatch(quote);
  });

  test("prints a quote with Node's own WebSocket", async ({ url }) => {
    const version = Number(process.versions.node.split('.')[0]);
    test.skip(version < 20, 'this Node has none');
    const flags = version < 22 ? ['--experimental-websocket'] : [];
    expect(await run(flags, url, symbol)).toMatch(quote);
  });
});

/** An order that rests in the books. */
function orderWith(orderTag: string) {
  const order = { fundAccount, symbol, exchange: '', orderSide: 'Buy', priceType: 'Limit', qty: '100' } as const;
  return { ...order, price: '17.00', orderTag };
}

/** Makes WebSockets as the simulator at this address wants them, and keeps what is sent through them. */
function recordingSockets(url: string) {
  const sent: { invoke: string; args: unknown[] }[] = [];
  const createSocket = (address: string) => {
    const socket = new WebSocket(address, { origin: new URL(url).origin });
    const original = socket.send.bind(socket) as (text: string) => void;
    const send = (text: string) => {
      sent.push(JSON.parse(text) as (typeof sent)[0]);
      original(text);
    };
    return Object.assign(socket, { send });
  };
  return { sent, createSocket };
}

test.describe('an order without an answer', () => {
  test('because the simulator died is unknown, and all goes on with the next one, without anything sent twice', async ({
    startSimulator,
  }) => {
    const market = ['--speed', '20']; // a quote each 150 ms
    const { simulator: first, url } = await startSimulator(['--port', '0', ...market]);
    const { sent, createSocket } = recordingSockets(url);
    const sdk = connectSimulator({ url, createSocket });
    const closed = new Promise((resolve) => sdk.onClose(resolve));
    const watch = sdk.watchQuotes([symbol]);
    await watch.ready;

    first.freeze();
    const placing = sdk.insertOrder(orderWith('dying'));
    await first.stop('SIGKILL');
    const error = { name: 'OutcomeUnknownError', cause: { name: 'ClosedError' } };
    expect(await placing).toMatchObject({ outcome: 'unknown', orderTag: 'dying', error });
    expect(await closed).toEqual({ code: 1006, reason: '', willReconnect: true });
    expect(sdk.state).toBe('connecting');

    const opened = new Promise((resolve) => sdk.onOpen(resolve));
    await startSimulator(['--port', new URL(url).port, ...market]);
    expect(await opened).toEqual({ again: true, resubscribed: [symbol] });
    const times = new Set<string>();
    for await (const { items } of watch) if (times.add(items.get(symbol)!.time).size === 3) break;

    // The order was in the frozen process only: its successor does not know it.
    expect(await sdk.findOrders({ orderTag: 'dying' })).toEqual([]);
    expect(sent.filter(({ invoke }) => invoke === 'Trade_insertOrder_REQ')).toHaveLength(1);
    expect(new Set(sent.map(({ args: [uuid] }) => uuid)).size).toBe(sent.length);
    sdk.close();
  });

  test('because the page stopped waiting is found by its tag', async ({ url }) => {
    const sdk = connectSimulator({ url, createSocket: recordingSockets(url).createSocket });
    await sdk.getToken(); // now it is connected
    const leaving = new AbortController();
    const placing = sdk.insertOrder(orderWith('left'), { signal: leaving.signal });
    leaving.abort();
    expect(await placing).toMatchObject({ outcome: 'unknown', orderTag: 'left' });
    const found = await sdk.findOrders({ orderTag: 'left', fundAccount });
    expect(found.map(({ orderSource }) => orderSource.userRole)).toEqual(['left']);
    expect(openOrderStatuses).toContain(found[0]!.status.userRole);
    sdk.close();
  });
});
