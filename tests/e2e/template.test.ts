import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import {
  cpSync,
  mkdirSync,
  mkdtempSync,
  readdirSync,
  readFileSync,
  renameSync,
  rmSync,
  symlinkSync,
  writeFileSync,
} from 'node:fs';
import { createServer, type AddressInfo } from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { Simulator } from './support/simulator';
import { expect, test as base } from './support/test';

const root = fileURLToPath(new URL('../../', import.meta.url));

async function freePort(): Promise<number> {
  const server = createServer().listen(0, 'localhost');
  await once(server, 'listening');
  const { port } = server.address() as AddressInfo;
  server.close();
  await once(server, 'close');
  return port;
}

/** A copy of the template in an empty folder, with the packed client, as a page developer has it. */
class Template {
  readonly folder = mkdtempSync(join(tmpdir(), 'page-'));

  constructor() {
    cpSync(join(root, 'examples/page'), this.folder, {
      recursive: true,
      filter: (path) => !path.includes('node_modules'),
    });
    execFileSync('npm', ['pack', '-w', 'web/client', '--pack-destination', this.folder], {
      cwd: root,
      stdio: 'ignore',
    });
    const packed = readdirSync(this.folder).find((file) => file.endsWith('.tgz'))!;
    renameSync(join(this.folder, packed), join(this.folder, 'varnel-web-client.tgz'));
    this.install();
  }

  /** What `npm install` does, without a registry: the client is unpacked, and the tools are those of this repository. */
  private install(): void {
    const client = join(this.folder, 'node_modules/@varnel/web-client');
    mkdirSync(client, { recursive: true });
    execFileSync('tar', ['-xzf', 'varnel-web-client.tgz', '-C', client, '--strip-components=1'], { cwd: this.folder });
    for (const tool of ['vite', 'typescript'])
      symlinkSync(join(root, 'node_modules', tool), join(this.folder, 'node_modules', tool));
  }

  /** Runs TypeScript as `npm run build` does. */
  check(): void {
    execFileSync(process.execPath, ['node_modules/typescript/bin/tsc'], { cwd: this.folder, stdio: 'inherit' });
  }

  remove(): void {
    rmSync(this.folder, { recursive: true });
  }
}

const test = base.extend<{ template: Template; serve(): Promise<{ page: string; simulator: string }> }>({
  template: async ({}, use) => {
    const template = new Template();
    await use(template);
    template.remove();
  },

  /** Starts a simulator and the page's own server, and gives both addresses. */
  serve: async ({ template, home }, use) => {
    const stops: (() => Promise<unknown>)[] = [];
    await use(async () => {
      const port = await freePort();
      const origin = `http://localhost:${port}`;
      const simulator = new Simulator(['--port', '0', '--speed', '20', '--allow-origin', origin], home.program);
      stops.push(() => simulator.stop());
      const url = await simulator.listening();
      const vite = spawn(process.execPath, ['node_modules/vite/bin/vite.js', '--port', String(port), '--strictPort'], {
        cwd: template.folder,
        env: { ...process.env, VITE_SIMULATOR: url },
        stdio: ['ignore', 'pipe', 'inherit'],
      });
      const ended = once(vite, 'close');
      stops.push(() => {
        vite.kill();
        return ended;
      });
      let printed = '';
      await new Promise<void>((resolve, reject) => {
        vite.stdout.on('data', (text: Buffer) => {
          printed += String(text);
          if (printed.includes(String(port))) resolve();
        });
        void ended.then(() => reject(new Error(`Vite has ended:\n${printed}`)));
      });
      return { page: origin, simulator: url };
    });
    for (const stop of stops.reverse()) await stop();
  },
});

test.describe('the template of a page', { tag: '@page' }, () => {
  test('shows a live quote beside a simulator', async ({ template, serve, page }) => {
    template.check();
    await page.goto((await serve()).page);
    const last = page.locator('#last');
    await expect(last).toHaveText(/^\d+(\.\d+)? at \d{14}$/);
    const first = await last.textContent();
    await expect(last).not.toHaveText(first!);
    await expect(page.locator('#state')).toBeEmpty();
  });

  test('has the versions of its tools that this repository uses', () => {
    const read = (path: string) =>
      JSON.parse(readFileSync(join(root, path), 'utf8')) as { devDependencies: Record<string, string> };
    const ours = read('package.json').devDependencies;
    const { devDependencies } = read('examples/page/package.json');
    for (const [tool, version] of Object.entries(devDependencies)) expect(ours[tool]).toBe(version);
  });
});

test.describe("the client's README", { tag: '@page' }, () => {
  const readme = readFileSync(join(root, 'web/client/README.md'), 'utf8');
  const code = /^## Use\n[^]*?```ts\n([^]*?)```/m.exec(readme)![1]!;

  test('begins with code that works as it stands there', async ({ template, serve, page }) => {
    writeFileSync(join(template.folder, 'src/main.ts'), code);
    template.check();
    const served = await serve();
    const bridge = `<script src="${served.simulator}bridge.js"></script>`; // in the terminal the bridge is there already
    writeFileSync(join(template.folder, 'index.html'), `${bridge}<script type="module" src="/src/main.ts"></script>`);
    const logged: string[] = [];
    page.on('console', (message) => logged.push(message.text()));
    page.on('pageerror', (error) => logged.push(String(error)));
    await page.goto(served.page);
    await expect.poll(() => logged).toContainEqual(expect.stringMatching(/^accepted O\d+$/));
    await expect.poll(() => logged).toContainEqual(expect.stringMatching(/^609801\.SH \d+\.\d+$/));
  });
});
