import type { Entrust } from '@varnel/web-client';
import { describe, expect, it } from 'vitest';
import { actionOf, hotKeys } from '../src/hotkeys';
import { ladderOf } from '../src/ladder';
import { quoteOf } from '../src/quote';
import { newestFirst } from '../src/records';

const cell = <Value>(value: Value) => ({ displayRole: String(value), userRole: value });
const order = (side: string, price: number, leaveQty: number) =>
  ({ side: cell(side), price: cell(price), leaveQty: cell(leaveQty) }) as unknown as Entrust;

const quote = quoteOf({
  askPrices: [10.01, 10.02, 0, 0, 0],
  askQtys: [100, 200, 0, 0, 0],
  bidPrices: [10, 9.99, 9.98, 9.97, 9.96],
  bidQtys: [300, 400, 500, 600, 700],
});

describe('the ladder', () => {
  it('has the highest price first, and no empty levels', () => {
    const { rungs, elsewhere } = ladderOf(quote, [], 2);
    expect(rungs.map(({ id, price, bidQty, askQty }) => [id, price, bidQty, askQty])).toEqual([
      ['ask 2', 10.02, undefined, 200],
      ['ask 1', 10.01, undefined, 100],
      ['bid 1', 10, 300, undefined],
      ['bid 2', 9.99, 400, undefined],
      ['bid 3', 9.98, 500, undefined],
      ['bid 4', 9.97, 600, undefined],
      ['bid 5', 9.96, 700, undefined],
    ]);
    expect(elsewhere).toBe(0);
  });

  it('adds up own open orders at their price, buying and selling apart', () => {
    const own = [order('Buy', 9.99, 100), order('Buy', 9.99, 200), order('Sell', 10.02, 50), order('Buy', 8, 10)];
    const { rungs, elsewhere } = ladderOf(quote, own, 2);
    const held = rungs.filter(({ ownBuy, ownSell }) => ownBuy + ownSell > 0);
    expect(held.map(({ id, ownBuy, ownSell }) => [id, ownBuy, ownSell])).toEqual([
      ['ask 2', 0, 50],
      ['bid 2', 300, 0],
    ]);
    expect(elsewhere).toBe(1);
  });
});

describe('the ladder of the opening call', () => {
  it('has one rung: the price of the opening, which both sides show', () => {
    const call = quoteOf({ askPrices: [10, 0], askQtys: [700, 0], bidPrices: [10, 0], bidQtys: [700, 0] });
    expect(ladderOf(call, [order('Buy', 10, 100)], 2)).toEqual({
      rungs: [{ id: 'bid 1', price: 10, bidQty: 700, askQty: 700, ownBuy: 100, ownSell: 0 }],
      elsewhere: 0,
    });
  });
});

describe('a pressed key', () => {
  const pressed = (but: object) => ({
    code: 'KeyC',
    altKey: true,
    shiftKey: false,
    ctrlKey: false,
    metaKey: false,
    repeat: false,
    ...but,
  });

  it.each([
    [{}, 'cancelLast'],
    [{ shiftKey: true }, 'cancelAll'],
    [{ code: 'KeyB' }, 'buy'],
    [{ code: 'KeyB', shiftKey: true }, undefined],
    [{ altKey: false }, undefined],
    [{ ctrlKey: true }, undefined],
    [{ metaKey: true }, undefined],
    [{ repeat: true }, undefined],
    [{ code: 'KeyZ' }, undefined],
  ])('%j does %s', (but, action) => {
    expect(actionOf(pressed(but))).toBe(action);
  });

  it('has one meaning', () => {
    expect(new Set(hotKeys.map(({ shown }) => shown)).size).toBe(hotKeys.length);
    expect(new Set(hotKeys.map(({ code, shift }) => `${code} ${shift}`)).size).toBe(hotKeys.length);
  });
});

describe('orders', () => {
  const at = (id: string, time: string) => ({ orderId: cell(id), entrustTime: cell(time) }) as unknown as Entrust;

  it('come newest first; of one second the later one comes first', () => {
    const list = [
      at('a', '20250303093000'),
      at('b', '20250303093001'),
      at('c', '20250303093001'),
      at('d', '20250303092959'),
    ];
    expect(newestFirst(list).map(({ orderId }) => orderId.userRole)).toEqual(['c', 'b', 'a', 'd']);
  });
});
