import type { BreakableBridge } from '../bridge.js';
import { SocketBridge, viewOf, type Socket } from './SocketBridge.js';

export interface SimulatorOptions {
  /** The address that the simulator prints. `http://127.0.0.1:8900` unless you say otherwise. */
  readonly url?: string | undefined;
  /**
   * Makes the WebSocket. Node before 22 has none of its own; there, use the package `ws` and tell the simulator's own
   * address as origin: `createSocket: (url) => new WebSocket(url, { origin: 'http://127.0.0.1:8900' })`.
   */
  readonly createSocket?: (url: string) => Socket;
  /** Connects again after a break, and goes on trying. True unless you say otherwise. */
  readonly reconnect?: boolean;
}

/** A bridge to a simulator. */
export interface SimulatorBridge extends BreakableBridge {
  /** Ends the connection for good. */
  close(): void;
}

const firstPauseMs = 250;
const longestPauseMs = 8_000;
const closedByPage = 1000;
const brokenConnection = 1006;

/**
 * Connects to a running simulator. It must allow the origin of the page (`--allow-origin`). After a break it connects
 * again, at first after a quarter of a second, then after pauses of up to 8 seconds. It sends nothing twice.
 */
export function simulatorBridge(options: SimulatorOptions = {}): SimulatorBridge {
  return new ReconnectingBridge(options);
}

class ReconnectingBridge extends SocketBridge implements SimulatorBridge {
  private readonly createSocket: () => Socket;
  private reconnects: boolean;
  private over = false;
  private pauseMs = firstPauseMs;
  private timer: ReturnType<typeof setTimeout> | undefined;

  constructor({ url = 'http://127.0.0.1:8900', createSocket, reconnect = true }: SimulatorOptions) {
    super();
    const page = globalThis.location?.href;
    const simulator = new URL(url, page);
    const address = viewOf(simulator);
    this.createSocket = () => (createSocket ? createSocket(address) : ownSocket(address, simulator.origin));
    this.reconnects = reconnect;
    this.onConnectionChange(({ state }) => {
      if (state === 'open') this.pauseMs = firstPauseMs;
    });
    this.use(this.createSocket());
  }

  close(): void {
    if (this.over) return;
    this.reconnects = false;
    clearTimeout(this.timer);
    this.leave();
    this.ended(closedByPage, '');
  }

  protected override ended(code: number, reason: string): void {
    const willReconnect = this.reconnects;
    this.over = !willReconnect;
    this.change({ state: 'closed', code, reason, willReconnect });
    if (this.over) return; // a listener may have closed the bridge
    this.change({ state: 'connecting' });
    this.timer = setTimeout(() => this.tryAgain(), this.pauseMs);
    this.pauseMs = Math.min(2 * this.pauseMs, longestPauseMs);
  }

  private tryAgain(): void {
    try {
      this.use(this.createSocket());
    } catch (error) {
      this.ended(brokenConnection, String(error));
    }
  }
}

/** Browsers send the page's origin by themselves. Node sends none, and the simulator takes its own. */
function ownSocket(address: string, origin: string): Socket {
  if (typeof globalThis.WebSocket !== 'function')
    throw new Error('There is no WebSocket here: pass createSocket, for example with the package "ws".');
  if (typeof window !== 'undefined') return new WebSocket(address);
  const InNode = globalThis.WebSocket as unknown as new (url: string, options: object) => Socket;
  return new InNode(address, { headers: { origin } });
}
