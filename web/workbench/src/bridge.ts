import type { BreakableBridge, CallBridge, Connection, ConnectionChange } from '@varnel/web-client';

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

function isBreakable(bridge: CallBridge): bridge is BreakableBridge {
  return 'onConnectionChange' in bridge && 'connectionState' in bridge;
}

/** The simulator's script tells in events of the window when its connection opens and ends. */
export function tellingByEvents(bridge: CallBridge | BreakableBridge, target: EventTarget): CallBridge {
  if (isBreakable(bridge) || !('connectionState' in bridge)) return bridge;
  const { connectionState, ...calls } = bridge as BreakableBridge;
  let state = connectionState;
  const watchers = new Set<(change: ConnectionChange) => void>();
  const tell = (change: ConnectionChange) => {
    state = change.state;
    watchers.forEach((watcher) => watcher(change));
  };
  target.addEventListener('callbridge:open', () => tell({ state: 'open' }));
  target.addEventListener('callbridge:close', (event) =>
    tell({ state: 'closed', ...(event as CustomEvent<{ code: number; reason: string }>).detail }),
  );
  const breakable: BreakableBridge = {
    ...calls,
    get connectionState() {
      return state;
    },
    onConnectionChange(watcher) {
      watchers.add(watcher);
      return () => watchers.delete(watcher);
    },
  };
  return breakable;
}

/** Calls go through the journal. What the bridge tells of its connection, if it does, comes from the bridge itself. */
export function throughJournal(journal: CallBridge, bridge: CallBridge): CallBridge {
  const calls: CallBridge = {
    invokeMethod: (method, ...args) => journal.invokeMethod(method, ...args),
    addEventListener: (name, listener) => journal.addEventListener(name, listener),
    removeEventListener: (name, listener) => journal.removeEventListener(name, listener),
  };
  if (!isBreakable(bridge)) return calls;
  const breakable: BreakableBridge = {
    ...calls,
    get connectionState() {
      return bridge.connectionState;
    },
    onConnectionChange: (listener) => bridge.onConnectionChange(listener),
  };
  return breakable;
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
