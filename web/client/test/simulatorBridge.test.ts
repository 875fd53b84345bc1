import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { NotSentError } from '../src/index.js';
import { connectSimulator, simulatorBridge, type Socket } from '../src/simulator/index.js';

/** A WebSocket whose events the test makes. */
class FakeSocket implements Socket {
  onopen: ((event: unknown) => void) | null = null;
  onmessage: ((event: unknown) => void) | null = null;
  onclose: ((event: unknown) => void) | null = null;
  onerror: ((event: unknown) => void) | null = null;
  readonly sent: string[] = [];
  closed = false;

  constructor(readonly url: string) {}

  send(text: string): void {
    this.sent.push(text);
  }

  close(): void {
    this.closed = true;
  }

  open(): void {
    this.onopen?.({});
  }

  break(code = 1006, reason = ''): void {
    this.onclose?.({ code, reason });
  }

  receive(event: string, ...args: unknown[]): void {
    this.onmessage?.({ data: JSON.stringify({ event, args }) });
  }
}

let sockets: FakeSocket[];
const createSocket = (url: string) => {
  sockets.push(new FakeSocket(url));
  return sockets.at(-1)!;
};

beforeEach(() => {
  vi.useFakeTimers();
  sockets = [];
});

afterEach(() => {
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
  vi.unstubAllGlobals();
});

describe('the bridge to a simulator', () => {
  it.each([
    [undefined, 'ws://127.0.0.1:8900/view'],
    ['http://localhost:9000/', 'ws://localhost:9000/view'],
    ['https://desk.example/page/index.html', 'wss://desk.example/view'],
  ])('of the address %s connects to %s', (url, address) => {
    simulatorBridge({ ...(url && { url }), createSocket }).close();
    expect(sockets[0]!.url).toBe(address);
  });

  it('takes an address relative to the page', () => {
    vi.stubGlobal('location', { href: 'http://localhost:5173/page/' });
    simulatorBridge({ url: '/', createSocket }).close();
    expect(sockets[0]!.url).toBe('ws://localhost:5173/view');
  });

  it('sends calls and brings events as frames', () => {
    const bridge = simulatorBridge({ createSocket });
    sockets[0]!.open();
    const heard = vi.fn();
    bridge.addEventListener('e', heard);
    bridge.invokeMethod('m', 'u', 1, { a: [null] });
    sockets[0]!.receive('e', 'x', 2);
    bridge.removeEventListener('e', heard);
    sockets[0]!.receive('e');
    expect(sockets[0]!.sent).toEqual(['{"invoke":"m","args":["u",1,{"a":[null]}]}']);
    expect(heard.mock.calls).toEqual([['x', 2]]);
    bridge.close();
  });

  it('takes no call while it is not open', () => {
    const bridge = simulatorBridge({ createSocket });
    expect(() => bridge.invokeMethod('m')).toThrow('m was not sent: the connection is not open');
    sockets[0]!.open();
    expect(sockets[0]!.sent).toEqual([]);
    bridge.close();
    expect(() => bridge.invokeMethod('m')).toThrow('not open');
  });

  it('connects again after growing pauses, and begins anew after a success', () => {
    const bridge = simulatorBridge({ createSocket });
    const pauses = [250, 500, 1000, 2000, 4000, 8000, 8000];
    for (const [index, pause] of pauses.entries()) {
      sockets[index]!.break();
      vi.advanceTimersByTime(pause - 1);
      expect(sockets).toHaveLength(index + 1);
      vi.advanceTimersByTime(1);
      expect(sockets).toHaveLength(index + 2);
    }
    sockets.at(-1)!.open();
    sockets.at(-1)!.break();
    vi.advanceTimersByTime(250);
    expect(sockets).toHaveLength(pauses.length + 2);
    bridge.close();
  });

  it('tells each change of its state', () => {
    const bridge = simulatorBridge({ createSocket });
    const changes = vi.fn();
    const stop = bridge.onConnectionChange(changes);
    sockets[0]!.open();
    expect(bridge.connectionState).toBe('open');
    sockets[0]!.break(1001, 'going away');
    expect(bridge.connectionState).toBe('connecting');
    vi.advanceTimersByTime(250);
    sockets[1]!.open();
    bridge.close();
    expect(bridge.connectionState).toBe('closed');
    expect(changes.mock.calls.map(([change]) => change as unknown)).toEqual([
      { state: 'open' },
      { state: 'closed', code: 1001, reason: 'going away', willReconnect: true },
      { state: 'connecting' },
      { state: 'open' },
      { state: 'closed', code: 1000, reason: '', willReconnect: false },
    ]);
    expect(sockets[1]!.closed).toBe(true);
    stop();
  });

  it('can leave it at one connection', () => {
    const bridge = simulatorBridge({ createSocket, reconnect: false });
    sockets[0]!.break();
    expect(bridge.connectionState).toBe('closed');
    vi.advanceTimersByTime(60_000);
    expect(sockets).toHaveLength(1);
  });

  it('that is closed during a pause stays closed', () => {
    const bridge = simulatorBridge({ createSocket });
    sockets[0]!.break();
    bridge.close();
    vi.advanceTimersByTime(60_000);
    expect([bridge.connectionState, sockets.length]).toEqual(['closed', 1]);
  });

  it('that is closed by a listener stays closed', () => {
    const bridge = simulatorBridge({ createSocket });
    bridge.onConnectionChange(({ willReconnect }) => willReconnect && bridge.close());
    sockets[0]!.break();
    vi.advanceTimersByTime(60_000);
    expect([bridge.connectionState, sockets.length]).toEqual(['closed', 1]);
  });

  it('tries on when no socket could be made', () => {
    let fails = false;
    const bridge = simulatorBridge({
      createSocket: (url) => {
        if (fails) throw new Error('out of sockets');
        return createSocket(url);
      },
    });
    fails = true;
    sockets[0]!.break();
    vi.advanceTimersByTime(250);
    fails = false;
    vi.advanceTimersByTime(500);
    expect(sockets).toHaveLength(2);
    bridge.close();
  });

  it("uses Node's own WebSocket with the simulator's origin where there is no window", () => {
    const made = vi.fn();
    vi.stubGlobal(
      'WebSocket',
      class extends FakeSocket {
        constructor(url: string, ...more: unknown[]) {
          super(url);
          made(url, ...more);
        }
      },
    );
    simulatorBridge({ url: 'http://127.0.0.1:9000' }).close();
    vi.stubGlobal('window', {});
    simulatorBridge({ url: 'http://127.0.0.1:9000' }).close();
    expect(made.mock.calls).toEqual([
      ['ws://127.0.0.1:9000/view', { headers: { origin: 'http://127.0.0.1:9000' } }],
      ['ws://127.0.0.1:9000/view'],
    ]);
  });

  it('says what to do where there is no WebSocket', () => {
    vi.stubGlobal('WebSocket', undefined);
    expect(() => simulatorBridge()).toThrow('There is no WebSocket here: pass createSocket');
  });
});

describe('a connection to a simulator', () => {
  it('sends nothing twice, and subscribes again', async () => {
    const sdk = connectSimulator({ createSocket, timeoutMs: 1000 });
    const token = sdk.getToken();
    token.catch(() => {});
    sockets[0]!.open();
    await sdk.subStrategyMsg({ customMsgID: 'S1', subscribed: true });
    sockets[0]!.break();
    await expect(token).rejects.toThrow('the connection is closed');
    vi.advanceTimersByTime(250);
    sockets[1]!.open();
    const invoked = sockets.map(({ sent }) => sent.map((frame) => (JSON.parse(frame) as { invoke: string }).invoke));
    expect(invoked).toEqual([['Data_getToken_REQ', 'Vlx_subStrategyMsg_REQ'], ['Vlx_subStrategyMsg_REQ']]);
    sdk.close();
  });

  it('ends its WebSocket with close()', async () => {
    const sdk = connectSimulator({ createSocket });
    sockets[0]!.open();
    sdk.close();
    expect([sockets[0]!.closed, sdk.state]).toEqual([true, 'closed']);
    await expect(sdk.getToken()).rejects.toBeInstanceOf(NotSentError);
  });
});
