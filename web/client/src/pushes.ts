import type { BridgeListener, CallBridge } from './bridge.js';
import type { PushEvent } from './protocol.js';
import * as records from './records.js';
import { callSafely } from './safely.js';
import { list, text, type Shape } from './shapes.js';

/** Turns the arguments of a push into those of the listener. Throws when they have an unexpected form. */
type Reader = (args: readonly unknown[]) => readonly unknown[];

function json<T>(shape: Shape<T>) {
  return ([data]: readonly unknown[]): [T] => {
    const read: unknown = JSON.parse(text(data));
    return [shape(read)];
  };
}

function texts([first, second]: readonly unknown[]): [string, string] {
  return [text(first), text(second)];
}

/** An empty text or object means that an account changed, and the terminal cannot tell which. */
function asset([data]: readonly unknown[]): [records.Asset | undefined] {
  if (data === '' || data === '{}') return [undefined];
  return json(records.asset)([data]);
}

/** All pushes. The types of listeners derive from this table. */
export const pushes = {
  on_tickUpdate: json(records.tick),
  on_AssetUpdate: asset,
  on_entrustUpdate: json(list(records.entrust)),
  on_executionUpdate: json(list(records.execution)),
  on_positionUpdate: json(records.position),
  on_orderLoaded: (): [] => [],
  /** Custom-message identifier and message. */
  on_vlxRcvCustomInfo: texts,
  /** Strategy identifier and status. */
  on_vlxStrategyStatusUpdate: texts,
} as const satisfies Record<PushEvent, Reader>;

export type PushListener<P extends PushEvent> = (...args: ReturnType<(typeof pushes)[P]>) => void;

export type OnUnreadable = (event: PushEvent, args: readonly unknown[], reason: Error) => void;

function reportToConsole(event: PushEvent, args: readonly unknown[], reason: Error): void {
  console.error(`${event} cannot be read:`, reason, args);
}

/** Listens to a push of the bridge while it has listeners here, and reads each push once for all of them. */
export class PushHub {
  private readonly listening = new Map<PushEvent, { listeners: Set<BridgeListener>; onPush: BridgeListener }>();
  private closed = false;

  constructor(
    private readonly bridge: CallBridge,
    private readonly onUnreadable: OnUnreadable = reportToConsole,
  ) {}

  /** A function that is added twice is called twice for each push. */
  readonly on = <P extends PushEvent>(push: P, listener: PushListener<P>): (() => void) => {
    if (!Object.prototype.hasOwnProperty.call(pushes, push)) throw new TypeError(`on: there is no push "${push}"`);
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

  private start(push: PushEvent) {
    const listeners = new Set<BridgeListener>();
    const onPush: BridgeListener = (...args) => {
      let read: readonly unknown[];
      try {
        read = pushes[push](args);
      } catch (error) {
        this.onUnreadable(push, args, error as Error);
        return;
      }
      for (const listener of [...listeners]) if (listeners.has(listener)) callSafely(() => listener(...read));
    };
    const started = { listeners, onPush };
    this.listening.set(push, started);
    this.bridge.addEventListener(push, onPush);
    return started;
  }

  private stop(push: PushEvent): void {
    this.bridge.removeEventListener(push, this.listening.get(push)!.onPush);
    this.listening.delete(push);
  }
}
