import type { CallBridge, Connection } from '@varnel/web-client';

/** Loads the simulator's script that defines the bridge, as the terminal's embedded browser would. */
export function loadBridge(): Promise<CallBridge> {
  return new Promise((resolve, reject) => {
    const script = document.createElement('script');
    script.src = '/bridge.js';
    script.onload = () =>
      typeof window.CallBridge === 'object'
        ? resolve(window.CallBridge)
        : reject(new Error('bridge.js defines no CallBridge'));
    script.onerror = () => reject(new Error('bridge.js cannot be loaded'));
    document.head.append(script);
  });
}

export interface ConnectionState {
  phase: 'connecting' | 'open' | 'reconnecting' | 'closed';
  code?: number;
  reason?: string;
}

/** The state of the connection for the page: connecting, open, lost for good, or lost and connecting again. */
export class ConnectionWatch {
  private state: ConnectionState;
  private readonly watchers = new Set<() => void>();

  constructor(sdk: Pick<Connection, 'state' | 'onOpen' | 'onClose'>) {
    this.state = { phase: sdk.state };
    sdk.onOpen(() => this.set({ phase: 'open' }));
    sdk.onClose(({ code, reason, willReconnect }) =>
      this.set({ phase: willReconnect ? 'reconnecting' : 'closed', code, reason }),
    );
  }

  readonly current = (): ConnectionState => this.state;

  readonly watch = (watcher: () => void): (() => void) => {
    this.watchers.add(watcher);
    return () => this.watchers.delete(watcher);
  };

  private set(state: ConnectionState): void {
    this.state = state;
    this.watchers.forEach((watcher) => watcher());
  }
}
