// Gives every page window.CallBridge, and carries its calls and events over the web channel. It runs before the scripts
// of the page. Calls that come before the channel is open are sent when it opens.
(() => {
  'use strict';

  const listeners = new Map(); // event name -> Set of listeners
  const waiting = [];
  let bridge = null;

  new QWebChannel(qt.webChannelTransport, (channel) => {
    bridge = channel.objects.bridge;
    bridge.eventSent.connect((name, args) => {
      for (const listener of [...(listeners.get(name) || [])]) listener(...args);
    });
    for (const [method, args] of waiting) bridge.invokeMethod(method, args);
  });

  window.CallBridge = Object.freeze({
    invokeMethod(method, ...args) {
      if (bridge) bridge.invokeMethod(method, args);
      else waiting.push([method, args]);
    },

    addEventListener(name, listener) {
      if (!listeners.has(name)) listeners.set(name, new Set());
      listeners.get(name).add(listener);
    },

    removeEventListener(name, listener) {
      const ofName = listeners.get(name);
      if (ofName) ofName.delete(listener);
    },
  });
})();
