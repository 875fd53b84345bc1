// A page in Chromium that carries out orders (page.js), and nothing beside it that would disturb a measurement.
import { chromium } from '@playwright/test';
import { once } from 'node:events';
import { readFile } from 'node:fs/promises';
import { createServer } from 'node:http';
import { text } from 'node:stream/consumers';

const files = { '/': ['page.html', 'text/html'], '/page.js': ['page.js', 'text/javascript'] };

// Only a page that is isolated from other origins gets a clock that is fine enough, 5 µs instead of 100. The simulator
// does not send these headers, so the page comes from here and the simulator is told to allow its origin.
const isolation = { 'Cross-Origin-Opener-Policy': 'same-origin', 'Cross-Origin-Embedder-Policy': 'require-corp' };

/** How long an order may take before the page counts as stuck. */
const patienceMs = 120_000;

export class MeasuredPage {
  #server = createServer((request, response) => this.#serve(request, response));
  #browser;
  #orders = []; // that the page has not fetched yet
  #askingForOrder; // the page's open request, if it waits for an order
  #onReport;

  /** Where the page comes from. */
  origin;

  async open() {
    this.#server.listen(0, '127.0.0.1');
    await once(this.#server, 'listening');
    this.origin = `http://127.0.0.1:${this.#server.address().port}`;
    this.#browser = await chromium.launch({
      // As in tests/e2e/playwright.config.ts.
      executablePath: process.env.VARNEL_CHROMIUM ?? '/usr/bin/chromium',
      args: [
        ...(process.getuid?.() === 0 ? ['--no-sandbox'] : []),
        '--disable-gpu',
        '--disable-quic',
        '--no-first-run',
        '--disable-background-networking',
        '--disable-component-update',
        '--disable-sync',
      ],
    });
    // Playwright watches the network of every page of its own, and to be told of each frame costs as much again as the
    // frame. It leaves alone a page that it has not opened.
    const session = await this.#browser.newBrowserCDPSession();
    await session.send('Target.createTarget', { url: `${this.origin}/` });
    return this.#browser.version();
  }

  async close() {
    await this.#browser?.close();
    this.#server.close();
    this.#server.closeAllConnections();
  }

  /** Has the page carry out one order and gives back its result. */
  async order(name, parameters = {}) {
    let timer;
    const stuck = new Promise((_, reject) => {
      timer = setTimeout(() => reject(new Error(`the page did not finish: ${name}`)), patienceMs);
    });
    const reported = new Promise((resolve) => (this.#onReport = resolve));
    this.#orders.push(JSON.stringify({ name, parameters }));
    this.#handOut();
    const { result, error } = await Promise.race([reported, stuck]).finally(() => clearTimeout(timer));
    if (error !== undefined) throw new Error(`in the page: ${name}: ${error}`);
    return result;
  }

  #handOut() {
    if (!this.#askingForOrder || this.#orders.length === 0) return;
    this.#askingForOrder.end(this.#orders.shift());
    this.#askingForOrder = undefined;
  }

  async #serve(request, response) {
    if (request.url === '/order') {
      this.#askingForOrder = response;
      this.#handOut();
    } else if (request.url === '/report') {
      this.#onReport(JSON.parse(await text(request)));
      response.end();
    } else if (request.url in files) {
      const [file, type] = files[request.url];
      const body = await readFile(new URL(file, import.meta.url));
      response.writeHead(200, { ...isolation, 'Content-Type': type }).end(body);
    } else {
      response.writeHead(404).end();
    }
  }
}
