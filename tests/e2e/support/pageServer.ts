import { readFile } from 'node:fs/promises';
import { createServer, type Server } from 'node:http';
import { once } from 'node:events';
import type { AddressInfo } from 'node:net';
import { extname } from 'node:path';
import { fileURLToPath } from 'node:url';

const client = new URL('../../../web/client/dist/', import.meta.url);
const types: Record<string, string> = { '.html': 'text/html', '.js': 'text/javascript' };

/**
 * Serves pages of another origin than the simulator's, as a page developer's own server does: a given page as `/`, and the
 * built client below `/client/`.
 */
export class PageServer {
  private constructor(private readonly server: Server) {}

  static async start(page: string): Promise<PageServer> {
    const server = createServer((request, response) => {
      const path = new URL(request.url!, 'http://here').pathname;
      const file = path.startsWith('/client/') ? readFile(new URL(path.slice('/client/'.length), client)) : undefined;
      const content = file ?? (path === '/' ? Promise.resolve(page) : Promise.reject(new Error('not found')));
      content.then(
        (body) => response.writeHead(200, { 'content-type': types[extname(path)] ?? types['.html']! }).end(body),
        () => response.writeHead(404).end(),
      );
    });
    server.listen(0, '127.0.0.1');
    await once(server, 'listening');
    return new PageServer(server);
  }

  /** Its origin, under another host name than the simulator's. */
  get origin(): string {
    return `http://localhost:${(this.server.address() as AddressInfo).port}`;
  }

  stop(): void {
    this.server.closeAllConnections();
    this.server.close();
  }
}

/** The folder of the tests' scripts. */
export const scripts = fileURLToPath(new URL('../scripts/', import.meta.url));
