import type { CallBridge } from '@varnel/web-client';

export interface ConnectionState {
  phase: 'connecting' | 'open' | 'closed';
  code?: number;
  reason?: string;
}

/** Follows the window's bridge events. Create it before the bridge is loaded, or it misses the first event. */
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
