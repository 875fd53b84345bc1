import type { BreakableBridge, CallBridge, ConnectionState } from './bridge.js';

/** The connection is open: for the first time here, or again after a break. */
export interface OpenEvent {
  readonly again: boolean;
  /** What was subscribed again: symbols, then identifiers of custom messages. */
  readonly resubscribed: readonly string[];
}

/** The connection has ended, or an attempt to connect has failed. */
export interface CloseEvent {
  /** Close code of the WebSocket, such as 1006 for a connection that broke. */
  readonly code: number;
  readonly reason: string;
  /** The bridge will connect again by itself. Calls wait for that, within their time-outs. */
  readonly willReconnect: boolean;
}

interface Handlers {
  opened(again: boolean): void;
  closed(event: CloseEvent): void;
}

const brokenConnection = 1006;

function canBreak(bridge: CallBridge): bridge is BreakableBridge {
  return typeof (bridge as Partial<BreakableBridge>).onConnectionChange === 'function';
}

/** Whether the bridge is connected. */
export class Link {
  private current: ConnectionState;
  private wasOpen: boolean;
  private stopListening = () => {};

  constructor(bridge: CallBridge, handlers: Handlers) {
    this.current = canBreak(bridge) ? bridge.connectionState : 'open';
    this.wasOpen = this.current === 'open';
    if (!canBreak(bridge)) return;
    this.stopListening = bridge.onConnectionChange(({ state, code, reason, willReconnect }) => {
      const before = this.current;
      this.current = state === 'closed' && willReconnect ? 'connecting' : state;
      if (state === 'open' && before !== 'open') {
        const again = this.wasOpen;
        this.wasOpen = true;
        handlers.opened(again);
      }
      if (state === 'closed')
        handlers.closed({
          code: code ?? brokenConnection,
          reason: reason ?? '',
          willReconnect: willReconnect === true,
        });
    });
  }

  get state(): ConnectionState {
    return this.current;
  }

  close(): void {
    this.stopListening();
    this.current = 'closed';
  }
}
