import { viewOf } from '../src/simulator/SocketBridge.js';
import { callsOf, PageBridge, sayThatItIsSimulated } from './PageBridge.js';

function install(): void {
  // Connects to the server of this file, also when the page comes from another server.
  const script = document.currentScript as HTMLScriptElement | null;
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
