import { priceTypes, sides, type Asset, type Entrust } from '@varnel/web-client';
import { ask } from './support/ask';
import { EventRecorder } from './support/eventRecorder';
import { fundAccounts } from './support/scenario';
import { expect, stillMarket, test } from './support/test';
import {
  account,
  argsOf,
  cancel,
  idOf,
  lineOf,
  listed,
  market,
  orderFor,
  place,
  placed,
  placeList,
  pushed,
  reached,
  statusOf,
  symbol,
  type Order,
} from './support/trading';
import { accounts, orders } from './support/world';

const chinese = /[\u4e00-\u9fff]/;

const inList = async ({ page }: EventRecorder, id: string): Promise<Entrust | undefined> =>
  (await orders(page, { fundAccount: [account] })).entrustInfoList.find((order) => idOf(order) === id);
const count = async ({ page }: EventRecorder) => (await orders(page, {}, 0, 1)).totalSize;

test.describe('an order', () => {
  test('is answered, pushed to every page, listed, cancelled and pushed again', async ({
    recorder: one,
    secondRecorder: other,
  }) => {
    const order = orderFor(await market(one));
    const answer = await place(one, order);
    const { orderTag, ...echo } = order;
    const { orderID } = answer.resultData as { orderID: string };
    expect(orderID).toMatch(/\S/);
    expect(answer).toEqual({ code: '0', msg: '', resultData: { ...echo, orderID }, uuid: answer.uuid });
    expect(other.replies('Trade_insertOrder_REQ')).toEqual([]);

    for (const recorder of [one, other]) {
      const record = await reached(recorder, orderID, 'Reported');
      expect(record).toMatchObject({
        fundAccount: { userRole: account },
        sideUnion: { userRole: sides.buy },
        priceType: { userRole: priceTypes.limit },
        price: { userRole: Number(order.price) },
        entrustQty: { userRole: Number(order.qty) },
        leaveQty: { userRole: Number(order.qty) },
        dealQty: { userRole: 0 },
        orderSource: { userRole: orderTag },
      });
      expect(await inList(recorder, orderID)).toEqual(record); // the push equals the record in the list
    }

    expect(await cancel(other, orderID)).toEqual([{ orderId: orderID, code: '0', msg: '' }]);
    for (const recorder of [one, other]) {
      const record = await reached(recorder, orderID, 'Cancelled');
      expect(await inList(recorder, orderID)).toEqual(record);
      expect(record.leaveQty.userRole).toBe(0);
    }
    expect(one.replies('Trade_reqCancelOrder_REQ')).toEqual([]);
  });

  test('with a repeated uuid is a second order', async ({ recorder }) => {
    const args = argsOf(orderFor(await market(recorder)));
    const before = await count(recorder);
    for (let time = 0; time < 2; ++time) await recorder.call('Trade_insertOrder_REQ', 'same', ...args);
    const replies = await recorder.until(() => {
      const heard = recorder.replies('Trade_insertOrder_REQ');
      return heard.length === 2 && heard;
    });
    expect(replies.map(({ uuid, code }) => [uuid, code])).toEqual([
      ['same', '0'],
      ['same', '0'],
    ]);
    const ids = replies.map(({ resultData }) => (resultData as { orderID: string }).orderID);
    expect(new Set(ids).size).toBe(2);
    for (const id of ids) await reached(recorder, id, 'Reported');
    expect(await count(recorder)).toBe(before + 2);
  });

  test('is not placed again by a reload', async ({ recorder: reloading, secondRecorder: other }) => {
    const order = orderFor(await market(other));
    const before = await count(other);
    const id = await placed(reloading, order);
    await reached(other, id, 'Reported');
    for (let time = 0; time < 3; ++time) {
      await reloading.page.reload();
      await reloading.drain();
    }
    expect(await count(other)).toBe(before + 1);
  });

  test('that was sent just before a reload is placed once or not at all', async ({
    recorder: reloading,
    secondRecorder: other,
  }) => {
    const order = orderFor(await market(other));
    const before = await count(other);
    await reloading.call('Trade_insertOrder_REQ', 'u', ...argsOf(order));
    await reloading.page.reload();
    await reloading.drain();
    expect((await count(other)) - before).toBeLessThanOrEqual(1);
  });

  test('with too few arguments is not placed, with too many it is', async ({ recorder }) => {
    const args = argsOf(orderFor(await market(recorder)));
    const before = await count(recorder);
    await recorder.call('Trade_insertOrder_REQ', 'u', ...args.slice(0, -1));
    await recorder.call('Trade_insertOrderList_REQ', 'u', account, 'tag');
    await recorder.call('Trade_reqCancelOrder_REQ', 'u');
    await recorder.drain();
    for (const method of ['insertOrder', 'insertOrderList', 'reqCancelOrder'])
      expect(recorder.of(`Trade_${method}_RES`), method).toEqual([['']]);
    expect(await count(recorder)).toBe(before);
    recorder.clear();
    expect(await recorder.envelope('Trade_insertOrder_REQ', ...args, 'more', { and: 'more' })).toMatchObject({
      code: '0',
    });
    expect(await count(recorder)).toBe(before + 1);
  });

  test('of an unknown account is refused', async ({ recorder }) => {
    const order = orderFor(await market(recorder), { fundAccount: 'no such account' });
    const before = await count(recorder);
    const refused = await place(recorder, order);
    expect(refused).toEqual({ code: '-1', msg: '资产账号获取错误', uuid: refused.uuid });
    const list = JSON.stringify([lineOf(order)]);
    const refusedList = await recorder.envelope('Trade_insertOrderList_REQ', 'no such account', '', list);
    expect(refusedList).toEqual({ code: '-1', msg: '资产账号获取错误', resultData: [], uuid: refusedList.uuid });
    expect(await count(recorder)).toBe(before);
  });

  const senseless: [string, Partial<Order>][] = [
    ['of an unknown symbol', { symbol: 'NOSUCH.SH' }],
    ['of a symbol in another spelling', { symbol: symbol.toLowerCase() }],
    ['of an unknown side', { orderSide: 'Borrow' }],
    ['of a side of futures', { orderSide: sides.buyOpen }],
    ['of an unknown price type', { priceType: 'Maybe' }],
    ['without a price', { price: '' }],
    ['with a price that is not a number', { price: 'cheap' }],
  ];
  for (const [name, but] of senseless) {
    test(`${name} is an invalid request: it gets no number, and no order is entered`, async ({ recorder }) => {
      const order = orderFor(await market(recorder), but);
      const before = await count(recorder);
      const refused = await place(recorder, order);
      const { orderTag: _, ...echo } = order;
      expect(refused).toEqual({
        code: '-1',
        msg: expect.stringMatching(chinese),
        resultData: echo,
        uuid: refused.uuid,
      });
      expect(await count(recorder)).toBe(before);
    });
  }

  const refusals: [string, (order: Order, highest: string) => Partial<Order>][] = [
    ['of a part of a lot', () => ({ qty: '150' })],
    ['with a quantity that is not a number', () => ({ qty: 'abc' })],
    ['with a quantity that is not a whole number', () => ({ qty: '100.5' })],
    ['above the limit of the day', (_, highest) => ({ price: (Number(highest) + 1).toFixed(2) })],
    ['that the account cannot pay', (_, highest) => ({ price: highest, qty: '1000000' })],
    ['to sell what the account does not hold', () => ({ orderSide: sides.sell, qty: '1000000' })],
  ];
  for (const [name, but] of refusals) {
    test(`${name} is refused with a reason, and the books keep it`, async ({ recorder }) => {
      const there = await market(recorder);
      const usual = orderFor(there);
      const order = { ...usual, ...but(usual, there.highest) };
      const refused = await place(recorder, order);
      expect(refused.code).toBe('-1');
      expect(refused.msg).toMatch(chinese);
      const { orderTag: _, ...echo } = order;
      const { orderID } = refused.resultData as { orderID: string };
      expect(refused.resultData).toEqual({ ...echo, orderID });
      const record = await reached(recorder, orderID, 'Rejected');
      expect(record.remark.displayRole).toBe(refused.msg);
      expect(await inList(recorder, orderID)).toEqual(record);
    });
  }
});

test.describe('while the market stands still', () => {
  test.use({ options: stillMarket });

  test('an order reserves money, and a cancel releases it', async ({ recorder }) => {
    const cash = async () => Number((await ask<[Asset]>(recorder.page, 'Data_getAsset_REQ', account))[0].tradableCash);
    const before = await cash();
    const order = orderFor(await market(recorder));
    const id = await placed(recorder, order);
    expect(await cash()).toBeLessThanOrEqual(before - Number(order.price) * Number(order.qty));
    const update = await recorder.until(() =>
      recorder.pushes<Asset>('on_AssetUpdate').find(({ fundAccount }) => fundAccount === account),
    );
    expect(Number(update.tradableCash)).toBe(await cash());
    await cancel(recorder, id);
    await reached(recorder, id, 'Cancelled');
    expect(await cash()).toBe(before);
  });
});

test.describe('a list of orders', () => {
  test('of five hundred is placed in one call, and each order has its own number', async ({ recorder }) => {
    const order = orderFor(await market(recorder));
    const before = await count(recorder);
    const answer = await placeList(recorder, Array<Order>(500).fill(order), 'five hundred');
    expect(answer).toMatchObject({ code: '0', msg: '' });
    const answers = listed(answer);
    expect(answers).toHaveLength(500);
    const ids = answers.map(({ orderID }) => orderID);
    expect(new Set(ids).size).toBe(500);
    for (const { orderID, code, msg, ...line } of answers) {
      expect({ code, msg }, orderID).toEqual({ code: '0', msg: '' });
      expect(line).toEqual({ ...lineOf(order), price: expect.any(String) });
      expect(Number(line.price)).toBe(Number(order.price));
    }
    expect(await count(recorder)).toBe(before + 500);
    const own = await orders(recorder.page, { orderSource: ['five hundred'] });
    expect(own.entrustInfoList.map(idOf).sort()).toEqual([...ids].sort());
  });

  test('answers with the outcome of each order', async ({ recorder }) => {
    const good = orderFor(await market(recorder));
    const answer = await placeList(recorder, [good, { ...good, qty: '150' }, good]);
    expect(answer).toMatchObject({ code: '0', msg: '' });
    expect(listed(answer).map(({ code }) => code)).toEqual(['0', '-1', '0']);
    const [, refused] = listed(answer);
    expect(refused!.msg).toMatch(chinese);
    const record = await reached(recorder, refused!.orderID, 'Rejected');
    expect(record.remark.displayRole).toBe(refused!.msg);
  });

  const whole: [string, (order: Order) => unknown][] = [
    ['with an invalid order', (order) => [lineOf(order), { ...lineOf(order), symbol: 'NOSUCH.SH' }]],
    ['with an entry that is not an order', (order) => [lineOf(order), 'buy']],
    ['that is empty', () => []],
    ['that is an object', () => ({})],
  ];
  for (const [name, orders] of whole) {
    test(`${name} is refused as a whole, and no order is entered`, async ({ recorder }) => {
      const list = JSON.stringify(orders(orderFor(await market(recorder))));
      const before = await count(recorder);
      const refused = await recorder.envelope('Trade_insertOrderList_REQ', account, '', list);
      expect(refused).toEqual({
        code: '-1',
        msg: expect.stringMatching(chinese),
        resultData: [],
        uuid: refused.uuid,
      });
      expect(await count(recorder)).toBe(before);
    });
  }

  for (const text of ['', 'orders', '[{"symbol":', '7']) {
    test(`with the text "${text}" gets the empty text, and no order is entered`, async ({ recorder }) => {
      const before = await count(recorder);
      await recorder.call('Trade_insertOrderList_REQ', 'u', account, '', text);
      await recorder.drain();
      expect(recorder.of('Trade_insertOrderList_RES')).toEqual([['']]);
      expect(await count(recorder)).toBe(before);
    });
  }

  test('can be placed for each account', async ({ recorder }) => {
    const order = orderFor(await market(recorder));
    for (const { fundAccount } of fundAccounts('stock')) {
      const list = JSON.stringify([lineOf(order)]);
      const [own] = listed(await recorder.envelope('Trade_insertOrderList_REQ', fundAccount, '', list));
      const record = await recorder.until(() => pushed(recorder, own!.orderID)[0]);
      expect(record.fundAccount.userRole).toBe(fundAccount);
    }
    expect(await accounts(recorder.page)).toContain(account);
  });
});

test.describe('a cancel', () => {
  test('of several orders is answered in their order', async ({ recorder }) => {
    const order = orderFor(await market(recorder));
    const ids = [await placed(recorder, order), await placed(recorder, order)] as const;
    const answers = await cancel(recorder, ids[1], 'no such order', ids[0], '');
    expect(answers.map(({ orderId, code }) => [orderId, code])).toEqual([
      [ids[1], '0'],
      ['no such order', '-1'],
      [ids[0], '0'],
      ['', '-1'],
    ]);
    for (const { code, msg } of answers) expect(String(msg)).toMatch(code === '0' ? /^$/ : chinese);
    for (const id of ids) await reached(recorder, id, 'Cancelled');
  });

  test('of an order that is no longer open is refused', async ({ recorder }) => {
    const id = await placed(recorder, orderFor(await market(recorder)));
    await cancel(recorder, id);
    await reached(recorder, id, 'Cancelled');
    const done = (await orders(recorder.page, { orderStatus: ['Filled'] }, 0, 1)).entrustInfoList.map(idOf);
    for (const [answer] of [await cancel(recorder, id), await cancel(recorder, done[0]!)]) {
      expect(answer!.code).toBe('-1');
      expect(String(answer!.msg)).toMatch(chinese);
    }
  });
});

test.describe('a burst', () => {
  /** Changes a thousand orders, and checks the pushes of these changes. */
  async function burst(recorder: EventRecorder, status: string, act: () => Promise<string[]>): Promise<string[]> {
    recorder.clear();
    const start = Date.now();
    const ids = await act();
    const own = new Set(ids);
    expect(own.size).toBe(1000);
    const told = () =>
      recorder
        .pushes<Entrust[]>('on_entrustUpdate')
        .flat()
        .filter((order) => own.has(idOf(order)) && statusOf(order) === status)
        .map(idOf);
    await recorder.until(() => told().length >= own.size);
    const elapsed = Date.now() - start;
    await recorder.drain();

    expect(told()).toHaveLength(own.size);
    expect(new Set(told())).toEqual(own);
    const pushes = recorder.pushes<Entrust[]>('on_entrustUpdate');
    for (const batch of pushes) expect(new Set(batch.map(idOf)).size).toBe(batch.length);
    // A batch is open for 200 ms, which limits the number of batches.
    expect(pushes.length).toBeLessThanOrEqual(elapsed / 200 + 2);
    expect(pushes.length).toBeLessThan(own.size / 4);
    return ids;
  }

  test('of a thousand orders comes in batches, each order once', async ({ recorder }) => {
    const order = orderFor(await market(recorder));
    const ids = await burst(recorder, 'Reported', async () =>
      listed(await placeList(recorder, Array<Order>(1000).fill(order))).map(({ orderID }) => orderID),
    );
    await burst(recorder, 'Cancelled', async () =>
      (await cancel(recorder, ...ids)).map(({ orderId }) => String(orderId)),
    );
  });
});

test('reserved events are never sent', async ({ recorder }) => {
  const order = orderFor(await market(recorder));
  await recorder.call('Data_getBuffer_REQ', 'u', 'k');
  await recorder.call('Data_saveBuffer_REQ', 'u', 'k', 'v');
  await recorder.call('Trade_getBuffer_REQ', 'u');
  const id = await placed(recorder, order);
  await cancel(recorder, id);
  await reached(recorder, id, 'Cancelled');
  expect(recorder.reservedEvents()).toEqual([]);
});
