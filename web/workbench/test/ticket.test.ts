import {
  OutcomeUnknownError,
  sides,
  TimeoutError,
  type CancelledOrder,
  type FundAccount,
  type Position,
  type SecurityDetail,
} from '@varnel/web-client';
import { describe, expect, it } from 'vitest';
import { cancelOrders } from '../src/cancelling';
import { closingOrder, isClosable, securityOf } from '../src/closing';
import { quoteOf } from '../src/quote';
import {
  accountFor,
  emptyDraft,
  fittingSide,
  isComplete,
  sideFor,
  steppedPrice,
  steppedQty,
  suggestions,
  tagMaker,
} from '../src/ticket';

const share = {
  symbol: '609001.SH',
  securityId: '609001',
  displayName: '雁岭电子',
  securityType: 'Share',
  precision: 2,
  priceUnit: 0.01,
  qtyStep: 100,
  minQty: '200',
  maxQty: '1000000',
} as SecurityDetail;
const future = {
  ...share,
  securityType: 'Future',
  precision: 1,
  priceUnit: 0.2,
  qtyStep: 1,
  minQty: '1',
  maxQty: '50',
};

describe('the account of an order', () => {
  const named = (...names: string[]) => names.map((fundAccount) => ({ fundAccount }) as FundAccount);
  const accounts = { future: named('F1', 'F2'), other: named('S1', 'S2') };

  it('is the first that can trade the security, while none is chosen', () => {
    expect(accountFor('', future, accounts)).toBe('F1');
    expect(accountFor('', share, accounts)).toBe('S1');
    expect(accountFor('', undefined, accounts)).toBe('S1');
  });

  it('is the chosen one, even where the terminal will refuse it', () => {
    expect(accountFor('S2', future, accounts)).toBe('S2');
    expect(accountFor('F2', share, accounts)).toBe('F2');
  });

  it('is missing while the accounts are not known', () => {
    expect(accountFor('', share, { future: [], other: [] })).toBe('');
  });
});

describe('a price', () => {
  it.each([
    ['10.00', 1, '10.01'],
    ['10.00', -10, '9.90'],
    ['0.29', 1, '0.30'], // 0.29 / 0.01 is a little less than 29
    ['10.004', 1, '10.01'],
    ['0.01', -1, '0.01'],
    ['', 1, '12.34'],
    ['cheap', -1, '12.34'],
    ['0', 1, '12.34'],
  ])('"%s" moved by %i ticks is %s', (text, ticks, after) => {
    expect(steppedPrice(text, ticks, share, 12.34)).toBe(after);
  });

  it('moves in the ticks of the security', () => {
    expect(steppedPrice('3812.4', 1, future, 0)).toBe('3812.6');
  });

  it('stays empty when there is no price to begin with', () => {
    expect(steppedPrice('', 1, share, Number.NaN)).toBe('');
  });
});

describe('a quantity', () => {
  it.each([
    ['', 1, '200'],
    ['200', 1, '300'],
    ['200', -1, '200'],
    ['250', 1, '300'],
    ['250', -1, '200'],
    ['999950', 10, '1000000'],
    ['some', 1, '200'],
  ])('"%s" moved by %i steps is %s', (text, steps, after) => {
    expect(steppedQty(text, steps, share)).toBe(after);
  });

  it('has no largest one when the terminal names none', () => {
    expect(steppedQty('1000', 10, { ...share, maxQty: '' })).toBe('2000');
  });
});

describe('a side', () => {
  it.each([
    ['buy', share, '', sides.buy],
    ['sell', undefined, '', sides.sell],
    ['buy', share, sides.buy, sides.buy],
    ['buy', future, '', sides.buyOpen],
    ['buy', future, sides.buyOpen, sides.buyClose],
    ['buy', future, sides.buyClose, sides.buyOpen],
    ['sell', future, sides.buyOpen, sides.sellOpen],
  ] as const)('to %s', (direction, security, current, side) => {
    expect(sideFor(direction, security, current)).toBe(side);
  });

  it.each([
    [sides.sell, future, sides.sellOpen],
    [sides.sellClose, share, sides.sell],
    [sides.buyClose, future, sides.buyClose],
    [sides.afterHoursBuy, future, sides.buyOpen],
  ])('%s fits another security', (side, security, fitting) => {
    expect(fittingSide(side, security)).toBe(fitting);
  });
});

describe('an order', () => {
  const whole = { ...emptyDraft, fundAccount: 'a', symbol: 's', price: '1', qty: '100' };

  it('is complete without a tag, and without a price at the market', () => {
    expect(isComplete(whole)).toBe(true);
    expect(isComplete({ ...whole, price: '', priceType: 'Market' })).toBe(true);
  });

  it.each(['fundAccount', 'symbol', 'price', 'qty', 'orderSide'])('is not complete without %s', (key) => {
    expect(isComplete({ ...whole, [key]: '' })).toBe(false);
  });

  it('gets a tag of its own', () => {
    const tag = tagMaker(() => new Date('2026-01-02T03:04:05.678Z'));
    expect([tag(), tag(), tag('close')]).toEqual([
      'manual-20260102030405678-1',
      'manual-20260102030405678-2',
      'close-20260102030405678-3',
    ]);
  });
});

describe('suggestions', () => {
  const list = [
    { symbol: '100609.SH', displayName: '东岚', spellName: 'DL' },
    { symbol: '609001.SH', displayName: '雁岭电子', spellName: 'YLDZ' },
    { symbol: '609002.SH', displayName: '岭南', spellName: 'LN' },
  ];
  const found = (typed: string, count?: number) => suggestions(list, typed, count).map(({ symbol }) => symbol);

  it.each([
    ['609', ['609001.SH', '609002.SH', '100609.SH']],
    ['yld', ['609001.SH']],
    ['L', ['609002.SH', '100609.SH', '609001.SH']],
    ['岭', ['609002.SH', '609001.SH']],
    ['', []],
    ['none', []],
  ])('for "%s": those that begin with it come first', (typed, symbols) => {
    expect(found(typed)).toEqual(symbols);
  });

  it('are few', () => {
    expect(found('s', 2)).toHaveLength(2);
  });
});

describe('closing a position', () => {
  const position = (but: object) =>
    ({ fundAccount: 'f', securityId: '609001', securityName: '雁岭电子', tradableQty: 300, ...but }) as Position;
  const quote = quoteOf({ last: 10, bidPrices: [9.9], bidQtys: [1], askPrices: [10.1], askQtys: [1] });

  it.each([
    ['a long one of shares', share, 300, { orderSide: sides.sell, price: '9.90', qty: '300' }],
    ['a long one of futures', future, 3, { orderSide: sides.sellClose, price: '9.9', qty: '3' }],
    ['a short one of futures', future, -3, { orderSide: sides.buyClose, price: '10.1', qty: '3' }],
    ['one above the largest order', future, 80, { qty: '50' }],
  ])('%s', (_, security, tradableQty, order) => {
    expect(closingOrder(position({ tradableQty }), security, quote)).toMatchObject({
      fundAccount: 'f',
      symbol: '609001.SH',
      priceType: 'Limit',
      ...order,
    });
  });

  it('takes the last price when nobody is on the other side, and none without a quote', () => {
    expect(closingOrder(position({}), share, quoteOf({ last: 10 })).price).toBe('10.00');
    expect(closingOrder(position({}), share, quoteOf({})).price).toBe('');
  });

  it('needs a tradable quantity', () => {
    expect([300, -3, 0, null, ''].map((tradableQty) => isClosable(position({ tradableQty })))).toEqual([
      true,
      true,
      false,
      false,
      false,
    ]);
  });

  it('finds the security by code and name', () => {
    const other = { ...share, symbol: '609001.SZ', displayName: '另一家' };
    expect(securityOf(position({}), [other, share])).toBe(share);
    expect(securityOf(position({}), [other])).toBeUndefined();
  });
});

describe('cancelling', () => {
  const ids = Array.from({ length: 2500 }, (_, at) => `o${at}`);
  const terminal = (answer: (ids: string[]) => CancelledOrder[]) => {
    const calls: number[] = [];
    const cancel = ({ orderIds }: { orderIds: readonly string[] }) => {
      calls.push(orderIds.length);
      return Promise.resolve().then(() => answer([...orderIds]));
    };
    return { calls, sdk: { cancelOrders: cancel } as unknown as Parameters<typeof cancelOrders>[0] };
  };
  const done = (list: string[]) => list.map((orderId) => ({ orderId, code: '0', msg: '' }));

  it('takes a call for each thousand', async () => {
    const { calls, sdk } = terminal(done);
    expect(await cancelOrders(sdk, ids)).toEqual({ accepted: 2500, refused: [], unknown: [], unsent: [] });
    expect(calls).toEqual([1000, 1000, 500]);
  });

  it('names the orders that were not cancelled', async () => {
    const { sdk } = terminal((list) => list.map((orderId) => ({ orderId, code: '-1', msg: '委托不存在' })));
    expect(await cancelOrders(sdk, ['a'])).toEqual({
      accepted: 0,
      refused: [{ orderId: 'a', reason: '委托不存在' }],
      unknown: [],
      unsent: [],
    });
  });

  it('stops after a call without an answer, and repeats none', async () => {
    const lost = new OutcomeUnknownError('cancelOrders', 'u1', new TimeoutError('cancelOrders', 'u1', 10_000));
    const { calls, sdk } = terminal((list) => {
      if (list.includes('o1000')) throw lost;
      return done(list);
    });
    const cancels = await cancelOrders(sdk, ids);
    expect(calls).toEqual([1000, 1000]);
    expect(cancels).toMatchObject({ accepted: 1000, refused: [], error: lost });
    expect(cancels.unknown).toEqual(ids.slice(1000, 2000));
    expect(cancels.unsent).toEqual(ids.slice(2000));
  });

  it('says which cancels were not sent', async () => {
    const { sdk } = terminal(() => {
      throw new Error('no connection');
    });
    expect(await cancelOrders(sdk, ids)).toMatchObject({ accepted: 0, unknown: [], unsent: ids });
  });
});
