/** The object that the terminal puts into every page as `window.CallBridge`. */
export interface CallBridge {
  /** Sends a call to the terminal. It returns nothing, because the answer comes as an event. */
  invokeMethod(method: string, ...args: unknown[]): void;
  /** The listener gets the event's arguments. */
  addEventListener(name: string, listener: BridgeListener): void;
  removeEventListener(name: string, listener: BridgeListener): void;
}

export type BridgeListener = (...args: unknown[]) => void;

/**
 * `connecting` before the connection is open, and between a break and the next connection of a bridge that reconnects.
 * `closed` when it has ended for good.
 */
export type ConnectionState = 'connecting' | 'open' | 'closed';

/** What a bridge tells of its connection: its new state, and for the end of a connection why it ended. */
export interface ConnectionChange {
  readonly state: ConnectionState;
  /** Close code of the WebSocket, such as 1006 for a connection that broke. */
  readonly code?: number;
  readonly reason?: string;
  /** With the state `closed`: the bridge will connect again by itself. */
  readonly willReconnect?: boolean;
}

/** A bridge over a connection that can break. The terminal's own bridge has neither member and is always open. */
export interface BreakableBridge extends CallBridge {
  readonly connectionState: ConnectionState;
  /** Calls the listener at each change, until the returned function is called. */
  onConnectionChange(listener: (change: ConnectionChange) => void): () => void;
}

declare global {
  interface Window {
    CallBridge: CallBridge;
  }
}
