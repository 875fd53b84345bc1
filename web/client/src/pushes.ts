import type { BridgeListener, CallBridge } from './bridge.js';
import { pushes, type Push, type PushEvent, type PushName } from './protocol/pushes.js';
import { callSafely } from './safely.js';
import { text } from './shapes.js';
import type { PushListener } from './types.js';

export type { PushListener } from './types.js';

/** The table's rows by name and by event. */
const rows = new Map<string, Push>(
  Object.entries<Push>(pushes).flatMap(([name, push]) => [
    [name, push],
    [push.event, push],
  ]),
);

/** Turns the arguments of a push into those of the listener. Throws when they have an unexpected form. */
function read({ json, texts = [], mayBeEmpty }: Push, args: readonly unknown[]): readonly unknown[] {
  if (!json) return texts.map((_, index) => text(args[index]));
  const [data] = args;
  if (mayBeEmpty && (data === '' || data === '{}')) return [undefined];
  return [json(JSON.parse(text(data)))];
}

export type OnUnreadable = (event: PushEvent, args: readonly unknown[], reason: Error) => void;

function reportToConsole(event: PushEvent, args: readonly unknown[], reason: Error): void {
  console.error(`${event} cannot be read:`, reason, args);
}

/** Listens to a push of the bridge while it has listeners here, and reads each push once for all of them. */
export class PushHub {
  private readonly listening = new Map<Push, { listeners: Set<BridgeListener>; onPush: BridgeListener }>();
  private closed = false;

  constructor(
    private readonly bridge: CallBridge,
    private readonly onUnreadable: OnUnreadable = reportToConsole,
  ) {}

  /** A function that is added twice is called twice for each push. */
  readonly on = <P extends PushName | PushEvent>(name: P, listener: PushListener<P>): (() => void) => {
    const push = rows.get(name);
    if (!push) throw new TypeError(`on: there is no push "${name}"`);
    if (this.closed) return () => {};
    const own: BridgeListener = (...args) => (listener as BridgeListener)(...args);
    const { listeners } = this.listening.get(push) ?? this.start(push);
    listeners.add(own);
    return () => {
      if (listeners.delete(own) && listeners.size === 0) this.stop(push);
    };
  };

  close(): void {
    this.closed = true;
    for (const [push, { listeners }] of [...this.listening]) {
      listeners.clear();
      this.stop(push);
    }
  }

  private start(push: Push) {
    const listeners = new Set<BridgeListener>();
    const onPush: BridgeListener = (...args) => {
      let values: readonly unknown[];
      try {
        values = read(push, args);
      } catch (error) {
        this.onUnreadable(push.event as PushEvent, args, error as Error);
        return;
      }
      for (const listener of [...listeners]) if (listeners.has(listener)) callSafely(() => listener(...values));
    };
    const started = { listeners, onPush };
    this.listening.set(push, started);
    this.bridge.addEventListener(push.event, onPush);
    return started;
  }

  private stop(push: Push): void {
    this.bridge.removeEventListener(push.event, this.listening.get(push)!.onPush);
    this.listening.delete(push);
  }
}
