// The call bridge of the simulated terminal. In the terminal itself the web view brings window.CallBridge along;
// here a page loads it first: <script src="/bridge.js"></script>
//
//   CallBridge.invokeMethod(method, ...args)        calls the host; there is no return value
//   CallBridge.addEventListener(name, listener)     calls listener(...args) for each event of that name
//   CallBridge.removeEventListener(name, listener)
//
// Only here, not in the terminal:
//   CallBridge.connectionState                      "connecting", "open" or "closed"
//   CallBridge.onConnectionChange(listener)         calls listener({state, code, reason, willReconnect}) at each change,
//                                                   until the function that it returns is called
//   window event "callbridge:open"                  the connection is open
//   window event "callbridge:close"                 it has ended; event.detail is {code, reason}
//
// Calls made before the connection is open are sent, in order, when it opens. After its end nothing is sent, and nothing
// is repeated: a call may be an order, and a repeated order is a second order. To connect again a page reloads itself.
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

  /** Where the simulator at this address takes WebSockets. */
  function viewOf(url) {
    const address = new URL('/view', url);
    address.protocol = address.protocol === 'https:' ? 'wss:' : 'ws:';
    return address.href;
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

  function install() {
    // Connects to the server of this file, also when the page comes from another server.
    const script = document.currentScript;
    const bridge = new PageBridge(new WebSocket(viewOf(script ? script.src : location.href)));
    bridge.onConnectionChange(({ state, code, reason }) => {
      const change =
        state === 'open'
          ? new CustomEvent('callbridge:open')
          : new CustomEvent('callbridge:close', { detail: { code, reason } });
      window.dispatchEvent(change);
    });
    window.CallBridge = Object.freeze({
      ...callsOf(bridge),
      onConnectionChange: bridge.onConnectionChange,
      get connectionState() {
        return bridge.connectionState;
      },
    });
    sayThatItIsSimulated();
  }
  if (!window.CallBridge) install();
})();
