import type { Socket } from '../src/simulator/SocketBridge.js';
import { callsOf, PageBridge, sayThatItIsSimulated } from './PageBridge.js';

/** The object that the window offers on its web channel. It takes up what it is told in order. */
interface Host {
  /** There is a new page. The window does not answer: what is sent behind it comes after it. */
  open(key: string, page: string): void;
  send(key: string, page: string, frame: string): void;
  eventSent: { connect(listener: (page: string, frame: string) => void): void };
}

// The window puts these around this script.
declare const key: string;
declare const qt: { webChannelTransport: object };
declare const QWebChannel: new (transport: object, ready: (channel: { objects: { bridge: Host } }) => void) => object;

/** The web channel in place of a WebSocket. It is open as long as the page lives. */
class ChannelSocket implements Socket {
  onopen: Socket['onopen'] = null;
  onmessage: Socket['onmessage'] = null;
  onclose: Socket['onclose'] = null;
  onerror: Socket['onerror'] = null;
  private host: Host | undefined;
  /** Tells this page from the one that the view showed before. */
  private readonly page = String(Math.random());

  constructor() {
    new QWebChannel(qt.webChannelTransport, ({ objects }) => {
      this.host = objects.bridge;
      this.host.eventSent.connect((page, frame) => {
        if (page === this.page) this.onmessage?.({ data: frame });
      });
      this.host.open(key, this.page);
      this.onopen?.({});
    });
  }

  send(frame: string): void {
    this.host?.send(key, this.page, frame);
  }

  close(): void {}
}

window.CallBridge = Object.freeze(callsOf(new PageBridge(new ChannelSocket())));
sayThatItIsSimulated();
