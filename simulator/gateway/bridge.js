// The call bridge of the simulated terminal. In the terminal itself the web view brings window.CallBridge along;
// here a page loads it first: <script src="/bridge.js"></script>
//
//   CallBridge.invokeMethod(method, ...args)        calls the host; there is no return value
//   CallBridge.addEventListener(name, listener)     calls listener(...args) for each event of that name
//   CallBridge.removeEventListener(name, listener)
//
// Only here, not in the terminal:
//   CallBridge.connectionState                      "connecting", "open" or "closed"
//   window event "callbridge:open"                  the connection is open
//   window event "callbridge:close"                 it has ended; event.detail is {code, reason}
//
// Calls made before the connection is open are sent, in order, when it opens. After its end nothing is sent, and nothing
// is repeated: a call may be an order, and a repeated order is a second order. To connect again a page reloads itself.
(() => {
  'use strict';

  if (window.CallBridge) return;

  const listeners = new Map(); // event name -> Set of listeners
  let state = 'connecting';
  let queue = [];

  // Connects to the server of this file, also when the page comes from another server.
  const source = document.currentScript ? document.currentScript.src : location.href;
  const address = new URL('/view', source);
  address.protocol = 'ws:';
  const socket = new WebSocket(address);

  socket.addEventListener('open', () => {
    state = 'open';
    for (const frame of queue) socket.send(frame);
    queue = [];
    window.dispatchEvent(new CustomEvent('callbridge:open'));
  });

  socket.addEventListener('close', ({ code, reason }) => {
    state = 'closed';
    queue = [];
    window.dispatchEvent(new CustomEvent('callbridge:close', { detail: { code, reason } }));
  });

  socket.addEventListener('message', ({ data }) => {
    const { event, args } = JSON.parse(data);
    for (const listener of [...(listeners.get(event) || [])]) {
      try {
        listener(...args);
      } catch (error) {
        // Reported as an uncaught error; the other listeners still receive the event.
        setTimeout(() => {
          throw error;
        });
      }
    }
  });

  window.CallBridge = Object.freeze({
    invokeMethod(method, ...args) {
      const frame = JSON.stringify({ invoke: String(method), args });
      if (state === 'open') socket.send(frame);
      else if (state === 'connecting') queue.push(frame);
      else console.warn(`CallBridge: ${method} was not sent: the connection has ended`);
    },

    addEventListener(name, listener) {
      if (typeof listener !== 'function') throw new TypeError('the listener must be a function');
      if (!listeners.has(name)) listeners.set(name, new Set());
      listeners.get(name).add(listener);
    },

    removeEventListener(name, listener) {
      const ofName = listeners.get(name);
      if (ofName && ofName.delete(listener) && ofName.size === 0) listeners.delete(name);
    },

    get connectionState() {
      return state;
    },
  });

  console.info('CallBridge: this is a simulated terminal. No order leaves this machine.');
})();
