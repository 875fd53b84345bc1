import { SocketBridge, type Socket } from '../src/simulator/SocketBridge.js';

/** The bridge of one page. Calls made before the connection is open are sent, in order, when it opens. */
export class PageBridge extends SocketBridge {
  private queue: string[] = [];

  constructor(socket: Socket) {
    super();
    this.onConnectionChange(({ state }) => {
      const queued = this.queue;
      this.queue = [];
      if (state === 'open') for (const frame of queued) this.send(frame);
    });
    this.use(socket);
  }

  /** After the end of the connection nothing is sent. */
  protected override sendLater(method: string, frame: string): void {
    if (this.connectionState === 'connecting') this.queue.push(frame);
    else console.warn(`CallBridge: ${method} was not sent: the connection has ended`);
  }
}

/** What the terminal's own bridge has as well. */
export function callsOf(bridge: PageBridge) {
  return {
    invokeMethod: (method: string, ...args: unknown[]) => bridge.invokeMethod(method, ...args),
    addEventListener: (name: string, listener: () => void) => bridge.addEventListener(name, listener),
    removeEventListener: (name: string, listener: () => void) => bridge.removeEventListener(name, listener),
  };
}

export function sayThatItIsSimulated(): void {
  console.info('CallBridge: this is a simulated terminal. No order leaves this machine.');
}
