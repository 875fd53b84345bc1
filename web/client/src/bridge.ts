/** The object that the terminal puts into every page as `window.CallBridge`. */
export interface CallBridge {
  /** Sends a call to the terminal. It returns nothing, because the answer comes as an event. */
  invokeMethod(method: string, ...args: unknown[]): void;
  /** The listener gets the event's arguments. */
  addEventListener(name: string, listener: BridgeListener): void;
  removeEventListener(name: string, listener: BridgeListener): void;
}

export type BridgeListener = (...args: unknown[]) => void;

declare global {
  interface Window {
    CallBridge: CallBridge;
  }
}
