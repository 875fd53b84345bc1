import type { CallBridge } from '@varnel/web-client';

export interface ConnectionState {
  phase: 'connecting' | 'open' | 'closed';
  code?: number;
  reason?: string;
}

/** Follows the window's bridge events. Must listen before the bridge is loaded, or the first one is missed. */
export class ConnectionWatch {
  private state: ConnectionState = { phase: 'connecting' };
  private readonly watchers = new Set<() => void>();

  constructor(target: EventTarget, note: (name: string, ...args: unknown[]) => void) {
    target.addEventListener('callbridge:open', () => {
      note('open');
      this.set({ phase: 'open' });
    });
    target.addEventListener('callbridge:close', (event) => {
      const { code, reason } = (event as CustomEvent<{ code: number; reason: string }>).detail;
      note('close', code, reason);
      this.set({ phase: 'closed', code, reason });
    });
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

/** Loads the script with which the simulator stands in for the terminal's embedded browser. */
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
