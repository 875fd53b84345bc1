import { pushEvents } from '@varnel/web-client';
import { once } from 'node:events';
import { WebSocket, type ClientOptions } from 'ws';

export interface Envelope {
  code: string;
  msg: string;
  resultData: unknown;
  uuid: string;
}

export interface BridgeEvent {
  event: string;
  args: unknown[];
  /** The first argument, read, if it is a reply envelope. */
  reply: Envelope | undefined;
}

export interface Closed {
  code: number;
  reason: string;
}

const pushes: ReadonlySet<string> = new Set(pushEvents);

/** A page without a browser: a WebSocket to the gateway. It keeps answers and ignores pushes. */
export class Peer {
  readonly events: BridgeEvent[] = [];
  readonly closed: Promise<Closed>;
  private readonly changed = new Set<() => void>();

  private constructor(readonly socket: WebSocket) {
    socket.on('message', (data) => {
      const { event, args } = JSON.parse(String(data)) as BridgeEvent;
      if (pushes.has(event)) return;
      this.events.push({ event, args, reply: envelope(args[0]) });
      this.changed.forEach((check) => check());
    });
    socket.on('error', () => {}); // "closed" tells of a broken connection
    this.closed = once(socket, 'close').then(([code, reason]) => ({ code: code as number, reason: String(reason) }));
  }

  static async connect(url: string, options: ClientOptions = {}): Promise<Peer> {
    const { address, own } = viewOf(url);
    const socket = new WebSocket(address, { origin: own, ...options });
    const peer = new Peer(socket);
    await once(socket, 'open');
    return peer;
  }

  call(method: string, ...args: unknown[]): void {
    this.socket.send(JSON.stringify({ invoke: method, args }));
  }

  /** The first past or future event that meets the condition. Fails when the connection ends before. */
  async event(condition: (event: BridgeEvent) => boolean): Promise<BridgeEvent> {
    return this.until(() => this.events.find(condition));
  }

  /** Waits for this many events. */
  async count(number: number): Promise<BridgeEvent[]> {
    return this.until(() => (this.events.length >= number ? this.events : undefined));
  }

  async reply(event: string, uuid: string): Promise<Envelope> {
    const found = await this.event((candidate) => candidate.event === event && candidate.reply?.uuid === uuid);
    return found.reply!;
  }

  /** Makes a call that is answered at once. Answers keep their order, so all earlier ones have arrived afterwards. */
  async drain(): Promise<void> {
    const uuid = `drain-${this.events.length}`;
    this.call('Data_getToken_REQ', uuid);
    const drained = await this.event(({ reply }) => reply?.uuid === uuid);
    this.events.splice(this.events.indexOf(drained), 1);
  }

  close(): void {
    this.socket.close();
  }

  private until<T>(look: () => T | undefined): Promise<T> {
    return new Promise((resolve, reject) => {
      const check = () => {
        const found = look();
        if (found === undefined) return;
        this.changed.delete(check);
        resolve(found);
      };
      this.changed.add(check);
      void this.closed.then(({ code, reason }) => reject(new Error(`closed while waiting: ${code} ${reason}`)));
      check();
    });
  }
}

function envelope(arg: unknown): Envelope | undefined {
  return typeof arg === 'string' && arg.startsWith('{') ? (JSON.parse(arg) as Envelope) : undefined;
}

export function viewOf(url: string) {
  const { origin, host, port } = new URL(url);
  return { address: `ws://${host}/view`, own: origin, port: Number(port) };
}

/** The HTTP status of the gateway's answer to a WebSocket request: 101 when it accepts. */
export async function handshakeStatus(url: string, options: ClientOptions): Promise<number> {
  const socket = new WebSocket(viewOf(url).address, options);
  try {
    return await new Promise<number>((resolve, reject) => {
      socket.on('open', () => resolve(101));
      socket.on('unexpected-response', (request, response) => {
        request.destroy();
        resolve(response.statusCode ?? 0);
      });
      socket.on('error', reject);
    });
  } finally {
    socket.terminate();
  }
}
