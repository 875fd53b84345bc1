// The call bridge of the simulator's window, as the terminal has it: window.CallBridge with invokeMethod, addEventListener
// and removeEventListener. The window runs it before the scripts of a page, inside a function that brings Qt's
// QWebChannel and the key without which no call is made.
//
// Made by `npm run build:bridge -w web/client` from web/client/bridge. Do not edit it here.
(function () {
  'use strict';

  /** A listener that throws does not stop the others. Its error becomes an uncaught one. */
  function callSafely(task) {
    try {
      task();
    } catch (error) {
      setTimeout(() => {
        throw error;
      });
    }
  }
  /** Listeners of one kind. A function that is added twice is called twice. */
  class Listeners {
    constructor() {
      this.all = new Set();
      this.add = (listener) => {
        const own = { listener };
        this.all.add(own);
        return () => void this.all.delete(own);
      };
    }
    tell(event) {
      for (const own of [...this.all]) if (this.all.has(own)) callSafely(() => own.listener(event));
    }
    clear() {
      this.all.clear();
    }
  }

  /** The simulator's call bridge over one WebSocket. */
  class SocketBridge {
    constructor() {
      this.listeners = new Map();
      this.changes = new Listeners();
      this.state = 'connecting';
      this.onConnectionChange = this.changes.add;
    }
    get connectionState() {
      return this.state;
    }
    invokeMethod(method, ...args) {
      const frame = JSON.stringify({ invoke: String(method), args });
      if (this.state === 'open') this.send(frame);
      else this.sendLater(method, frame);
    }
    addEventListener(name, listener) {
      if (typeof listener !== 'function') throw new TypeError('the listener must be a function');
      const ofName = this.listeners.get(name) ?? new Set();
      this.listeners.set(name, ofName.add(listener));
    }
    removeEventListener(name, listener) {
      const ofName = this.listeners.get(name);
      if (ofName?.delete(listener) && ofName.size === 0) this.listeners.delete(name);
    }
    use(socket) {
      this.socket = socket;
      socket.onopen = () => this.change({ state: 'open' });
      socket.onmessage = ({ data }) => this.dispatch(String(data));
      socket.onerror = () => {}; // the close follows, with its code
      socket.onclose = ({ code, reason }) => this.ended(code, reason);
    }
    send(frame) {
      this.socket.send(frame);
    }
    /** Lets go of the socket: nothing is heard from it any more. */
    leave() {
      const { socket } = this;
      if (!socket) return;
      socket.onopen = socket.onmessage = socket.onclose = null;
      socket.close();
    }
    /** The connection has ended, or an attempt to connect has failed. */
    ended(code, reason) {
      this.change({ state: 'closed', code, reason, willReconnect: false });
    }
    /** A call was made while the connection is not open. */
    sendLater(method, _frame) {
      throw new Error(`${method} was not sent: the connection is not open`);
    }
    change(change) {
      this.state = change.state;
      this.changes.tell(change);
    }
    dispatch(frame) {
      const { event, args } = JSON.parse(frame);
      for (const listener of [...(this.listeners.get(event) ?? [])]) callSafely(() => listener(...args));
    }
  }

  /** The bridge of one page. Calls made before the connection is open are sent, in order, when it opens. */
  class PageBridge extends SocketBridge {
    constructor(socket) {
      super();
      this.queue = [];
      this.onConnectionChange(({ state }) => {
        const queued = this.queue;
        this.queue = [];
        if (state === 'open') for (const frame of queued) this.send(frame);
      });
      this.use(socket);
    }
    /** After the end of the connection nothing is sent. */
    sendLater(method, frame) {
      if (this.connectionState === 'connecting') this.queue.push(frame);
      else console.warn(`CallBridge: ${method} was not sent: the connection has ended`);
    }
  }
  /** What the terminal's own bridge has as well. */
  function callsOf(bridge) {
    return {
      invokeMethod: (method, ...args) => bridge.invokeMethod(method, ...args),
      addEventListener: (name, listener) => bridge.addEventListener(name, listener),
      removeEventListener: (name, listener) => bridge.removeEventListener(name, listener),
    };
  }
  function sayThatItIsSimulated() {
    console.info('CallBridge: this is a simulated terminal. No order leaves this machine.');
  }

  /** The web channel in place of a WebSocket. It is open as long as the page lives. */
  class ChannelSocket {
    constructor() {
      this.onopen = null;
      this.onmessage = null;
      this.onclose = null;
      this.onerror = null;
      /** Tells this page from the one that the view showed before. */
      this.page = String(Math.random());
      new QWebChannel(qt.webChannelTransport, ({ objects }) => {
        this.host = objects.bridge;
        this.host.eventSent.connect((page, frame) => {
          if (page === this.page) this.onmessage?.({ data: frame });
        });
        this.host.open(key, this.page);
        this.onopen?.({});
      });
    }
    send(frame) {
      this.host?.send(key, this.page, frame);
    }
    close() {}
  }
  window.CallBridge = Object.freeze(callsOf(new PageBridge(new ChannelSocket())));
  sayThatItIsSimulated();
})();
