import { webcrypto } from 'node:crypto';
import { vi } from 'vitest';
import type { BridgeListener, CallBridge } from '../src/index.js';

// Every page has it, but Node 18 does not.
vi.stubGlobal('crypto', webcrypto);

/** A terminal that records every call and sends only the events of the test. */
export class FakeBridge implements CallBridge {
  readonly calls: { method: string; args: unknown[] }[] = [];
  readonly listeners = new Map<string, Set<BridgeListener>>();
  answerAtOnce?: (method: string, args: unknown[]) => void;

  invokeMethod(method: string, ...args: unknown[]): void {
    this.calls.push({ method, args });
    this.answerAtOnce?.(method, args);
  }

  addEventListener(name: string, listener: BridgeListener): void {
    const set = this.listeners.get(name) ?? new Set();
    this.listeners.set(name, set.add(listener));
  }

  removeEventListener(name: string, listener: BridgeListener): void {
    if (!this.listeners.get(name)?.delete(listener)) throw new Error(`no such listener of ${name}`);
  }

  emit(name: string, ...args: unknown[]): void {
    for (const listener of this.listeners.get(name) ?? []) listener(...args);
  }

  reply(event: string, uuid: unknown, resultData: unknown, code = '0', msg = ''): void {
    this.emit(event, JSON.stringify({ code, msg, resultData, uuid }));
  }

  uuid(index: number): string {
    const { args } = this.calls[index]!;
    return args[0] as string;
  }
}
