import type { BreakableBridge, BridgeListener, ConnectionChange, ConnectionState } from '../bridge.js';
import { callSafely, Listeners } from '../safely.js';

/** What the bridge uses of a WebSocket: the browser's, Node's, or that of the package `ws`. */
export interface Socket {
  onopen: ((event: any) => void) | null;
  onmessage: ((event: any) => void) | null;
  onclose: ((event: any) => void) | null;
  onerror: ((event: any) => void) | null;
  send(text: string): void;
  close(): void;
}

/** Where the simulator at this address takes WebSockets. */
export function viewOf(url: string | URL): string {
  const address = new URL('/view', url);
  address.protocol = address.protocol === 'https:' ? 'wss:' : 'ws:';
  return address.href;
}

/** The simulator's call bridge over one WebSocket. */
export class SocketBridge implements BreakableBridge {
  private readonly listeners = new Map<string, Set<BridgeListener>>();
  private readonly changes = new Listeners<ConnectionChange>();
  private state: ConnectionState = 'connecting';
  private socket: Socket | undefined;

  get connectionState(): ConnectionState {
    return this.state;
  }

  readonly onConnectionChange = this.changes.add;

  invokeMethod(method: string, ...args: unknown[]): void {
    const frame = JSON.stringify({ invoke: String(method), args });
    if (this.state === 'open') this.send(frame);
    else this.sendLater(method, frame);
  }

  addEventListener(name: string, listener: BridgeListener): void {
    if (typeof listener !== 'function') throw new TypeError('the listener must be a function');
    const ofName = this.listeners.get(name) ?? new Set();
    this.listeners.set(name, ofName.add(listener));
  }

  removeEventListener(name: string, listener: BridgeListener): void {
    const ofName = this.listeners.get(name);
    if (ofName?.delete(listener) && ofName.size === 0) this.listeners.delete(name);
  }

  protected use(socket: Socket): void {
    this.socket = socket;
    socket.onopen = () => this.change({ state: 'open' });
    socket.onmessage = ({ data }: { data: unknown }) => this.dispatch(String(data));
    socket.onerror = () => {}; // the close follows, with its code
    socket.onclose = ({ code, reason }: { code: number; reason: string }) => this.ended(code, reason);
  }

  protected send(frame: string): void {
    this.socket!.send(frame);
  }

  /** Lets go of the socket: nothing is heard from it any more. */
  protected leave(): void {
    const { socket } = this;
    if (!socket) return;
    socket.onopen = socket.onmessage = socket.onclose = null;
    socket.close();
  }

  /** The connection has ended, or an attempt to connect has failed. */
  protected ended(code: number, reason: string): void {
    this.change({ state: 'closed', code, reason, willReconnect: false });
  }

  /** A call was made while the connection is not open. */
  protected sendLater(method: string, _frame: string): void {
    throw new Error(`${method} was not sent: the connection is not open`);
  }

  protected change(change: ConnectionChange): void {
    this.state = change.state;
    this.changes.tell(change);
  }

  private dispatch(frame: string): void {
    const { event, args } = JSON.parse(frame) as { event: string; args: unknown[] };
    for (const listener of [...(this.listeners.get(event) ?? [])]) callSafely(() => listener(...args));
  }
}
