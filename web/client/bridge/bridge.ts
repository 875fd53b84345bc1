import { SocketBridge, viewOf } from '../src/simulator/SocketBridge.js';

/**
 * The bridge of a page that loads `bridge.js`. Calls made before the connection is open are sent, in order, when it opens.
 * After its end nothing is sent.
 */
class PageBridge extends SocketBridge {
  private queue: string[] = [];

  constructor(address: string) {
    super();
    this.onConnectionChange(({ state, code, reason }) => {
      const queued = this.queue;
      this.queue = [];
      if (state === 'open') {
        for (const frame of queued) this.send(frame);
        window.dispatchEvent(new CustomEvent('callbridge:open'));
      } else window.dispatchEvent(new CustomEvent('callbridge:close', { detail: { code, reason } }));
    });
    this.use(new WebSocket(address));
  }

  protected override sendLater(method: string, frame: string): void {
    if (this.connectionState === 'connecting') this.queue.push(frame);
    else console.warn(`CallBridge: ${method} was not sent: the connection has ended`);
  }
}

function install(): void {
  // Connects to the server of this file, also when the page comes from another server.
  const script = document.currentScript as HTMLScriptElement | null;
  const bridge = new PageBridge(viewOf(script ? script.src : location.href));
  window.CallBridge = Object.freeze({
    invokeMethod: (method: string, ...args: unknown[]) => bridge.invokeMethod(method, ...args),
    addEventListener: (name: string, listener: () => void) => bridge.addEventListener(name, listener),
    removeEventListener: (name: string, listener: () => void) => bridge.removeEventListener(name, listener),
    onConnectionChange: bridge.onConnectionChange,
    get connectionState() {
      return bridge.connectionState;
    },
  });
  console.info('CallBridge: this is a simulated terminal. No order leaves this machine.');
}

if (!window.CallBridge) install();
