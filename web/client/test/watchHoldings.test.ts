import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { connect, positionId, type Asset, type Connection, type Position, type Update } from '../src/index.js';
import { ScriptedBridge } from '../src/testing/index.js';
import { asset as anyAsset, detail, position as anyPosition } from './samples.js';

let bridge: ScriptedBridge;
let sdk: Connection;
let held: Position[];

beforeEach(() => {
  vi.useFakeTimers();
  held = [];
  bridge = new ScriptedBridge().answer('getPositionList', () => held);
  sdk = connect(bridge);
});

afterEach(() => {
  sdk.close();
  expect(vi.getTimerCount()).toBe(0);
  vi.useRealTimers();
});

const settled = () => vi.advanceTimersByTimeAsync(0);

function position(securityId: string, currentQty: number | null, fundAccount = 'f'): Position {
  return { ...anyPosition, fundAccount, securityAccount: 't', exchange: '上海', securityId, currentQty } as Position;
}

const text = ({ securityId, currentQty }: Position) => `${String(securityId)} ${String(currentQty)}`;
const quantities = (items: ReadonlyMap<string, Position>) => [...items.values()].map(text);
const listsAsked = () => bridge.callsOf('getPositionList').length;

describe('a watch of positions', () => {
  const selection = { fundAccounts: ['f'] };

  it('keeps long and short positions of a security apart', async () => {
    held = [position('1', 5), position('1', -2), position('2', 7)];
    const watch = sdk.watchPositions(selection);
    await watch.ready;
    expect(bridge.calls[0]!.args).toEqual({ fundAccounts: ['f'], symbol: '' });
    expect(new Set(watch.items.keys())).toEqual(new Set(held.map(positionId)));
    bridge.push('position', position('1', -3));
    expect(quantities(watch.items)).toEqual(['1 5', '1 -3', '2 7']);
    bridge.push('position', position('3', 1));
    expect(quantities(watch.items)).toEqual(['1 5', '1 -3', '2 7', '3 1']);
    expect(listsAsked()).toBe(1);
  });

  it('ignores the positions of other accounts', async () => {
    held = [position('1', 5, 'another')];
    const watch = sdk.watchPositions(selection);
    await watch.ready;
    bridge.push('position', position('1', 5, 'another'));
    expect(watch.items.size).toBe(0);
  });

  it('removes a position that is closed', async () => {
    held = [position('1', 5), position('2', -2)];
    const updates: Update<Position>[] = [];
    const watch = sdk.watchPositions(selection, (update) => updates.push(update));
    await watch.ready;
    bridge.push('position', position('2', 0));
    bridge.push('position', position('9', 0)); // was not held
    expect(quantities(watch.items)).toEqual(['1 5']);
    expect(updates.slice(1)).toMatchObject([{ kind: 'change', changed: [], removed: [positionId(position('2', -2))] }]);
  });

  it.each([
    ['long or short is closed, and both are held', 0],
    ['has no quantity', null],
  ])('is asked for again when one that %s', async (_, qty) => {
    held = [position('1', 5), position('1', -2)];
    const watch = sdk.watchPositions(selection);
    await watch.ready;
    held = [position('1', -2)];
    bridge.push('position', position('1', qty));
    await settled();
    expect(quantities(watch.items)).toEqual(['1 -2']);
    expect(listsAsked()).toBe(2);
  });

  it('does not show a closed position of the list', async () => {
    held = [position('1', 0)];
    const watch = sdk.watchPositions(selection);
    await watch.ready;
    expect(watch.items.size).toBe(0);
  });

  it('of a symbol asks again for what may be of that symbol', async () => {
    bridge.answer('getSymbolDetail', [{ ...detail, securityId: '1' }]);
    const watch = sdk.watchPositions({ fundAccounts: ['f'], symbol: '1.SH' });
    await watch.ready;
    bridge.push('position', position('2', 5)); // another security
    await settled();
    expect([watch.items.size, listsAsked()]).toEqual([0, 1]);
    held = [position('1', 5)];
    bridge.push('position', position('1', 5));
    await settled();
    expect([quantities(watch.items), listsAsked()]).toEqual([['1 5'], 2]);
    bridge.push('position', position('1', 6));
    expect(quantities(watch.items)).toEqual(['1 6']);
    await settled();
    expect([listsAsked(), bridge.callsOf('getSymbolDetail').length]).toEqual([2, 1]);
  });

  it('without accounts is refused at once', () => {
    expect(() => sdk.watchPositions({ fundAccounts: [] })).toThrow(RangeError);
    expect(() => sdk.watchAssets({ fundAccounts: [] })).toThrow(RangeError);
  });
});

describe('a watch of assets', () => {
  const asset = (fundAccount: string, totalAsset: string): Asset => ({ ...anyAsset, fundAccount, totalAsset }) as Asset;

  it('follows the accounts, and asks again when the terminal cannot tell which one changed', async () => {
    let total = '1.00';
    bridge.answer('getAsset', ({ fundAccounts }) => fundAccounts.map((account) => asset(account, total)));
    const watch = sdk.watchAssets({ fundAccounts: ['f', 'g'] });
    await watch.ready;
    bridge.push('asset', asset('g', '2.00'));
    bridge.push('asset', asset('another', '3.00'));
    expect([...watch.items.values()].map(({ totalAsset }) => totalAsset)).toEqual(['1.00', '2.00']);
    total = '4.00';
    bridge.push('asset');
    await settled();
    expect([...watch.items.values()].map(({ totalAsset }) => totalAsset)).toEqual(['4.00', '4.00']);
  });
});
