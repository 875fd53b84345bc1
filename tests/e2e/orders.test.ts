import {
  entrustKeys,
  executionKeys,
  openOrderStatuses,
  orderStatuses,
  type Cell,
  type Entrust,
  type Execution,
  type OrderFilter,
} from '@varnel/web-client';
import { envelopeOf, expectRefused, refusedFilters } from './support/ask';
import { scenario, traderIds } from './support/scenario';
import { expect, stillMarket, test } from './support/test';
import { accounts, everything, executions, nameOf, orders, securities } from './support/world';

// Orders must not be filled between two calls.
test.use({ options: stillMarket });

const value = ({ userRole }: Cell) => userRole as string | number;
const figure = ({ userRole }: Cell) => Number(userRole);
const ids = (list: readonly Entrust[]) => list.map(({ orderId }) => value(orderId));
const executionIds = (list: readonly Execution[]) => list.map(({ execId }) => value(execId));
const distinct = <T>(list: readonly T[]) => [...new Set(list)];

/** Both lists pass the same tests. */
const lists = [
  {
    name: 'orders',
    method: 'Data_getEntrustList_REQ',
    keys: entrustKeys,
    ask: async (...args: Parameters<typeof orders>) => {
      const { entrustInfoList, ...sizes } = await orders(...args);
      return { ...sizes, records: entrustInfoList as (Entrust | Execution)[], ids: ids(entrustInfoList) };
    },
  },
  {
    name: 'executions',
    method: 'Data_getExecutionList_REQ',
    keys: executionKeys,
    ask: async (...args: Parameters<typeof executions>) => {
      const { executionInfoList, ...sizes } = await executions(...args);
      return { ...sizes, records: executionInfoList as (Entrust | Execution)[], ids: executionIds(executionInfoList) };
    },
  },
] as const;

for (const { name, method, keys, ask } of lists) {
  test.describe(name, () => {
    test('come complete and each once when the count is large enough', async ({ barePage: page }) => {
      const all = await ask(page, {});
      expect(all.totalSize).toBeGreaterThan(20);
      expect(all.size).toBe(all.totalSize);
      expect(all.records).toHaveLength(all.size);
      expect(distinct(all.ids)).toHaveLength(all.size);
    });

    test('have the documented fields, each a pair', async ({ barePage: page }) => {
      const { records } = await ask(page, {});
      const keysOf = (record: object) => Object.keys(record).sort().join();
      expect(distinct(records.map(keysOf))).toEqual([[...keys].sort().join()]);
      expect(distinct(records.flatMap((record) => Object.values(record).map(keysOf)))).toEqual([
        'displayRole,userRole',
      ]);
    });

    for (const filtered of [false, true]) {
      test(`come page by page as in one answer${filtered ? ', with a filter too' : ''}`, async ({ barePage: page }) => {
        const filter: OrderFilter = filtered ? { fundAccount: [(await accounts(page))[0]!] } : {};
        const whole = await ask(page, filter);
        const count = Math.ceil(whole.totalSize / 6) + 1; // so that the last page is not full
        const paged: unknown[] = [];
        for (let start = 0; start < whole.totalSize; start += count) {
          const part = await ask(page, filter, start, count);
          expect(part.totalSize).toBe(whole.totalSize);
          expect(part.size).toBe(Math.min(count, whole.totalSize - start));
          expect(part.records).toHaveLength(part.size);
          paged.push(...part.records);
        }
        expect(paged).toEqual(whole.records);
      });
    }

    test('after the last are empty, with the same total', async ({ barePage: page }) => {
      const { totalSize } = await ask(page, {}, 0, 1);
      const behind = await ask(page, {}, totalSize, 10);
      expect(behind).toMatchObject({ totalSize, size: 0, records: [] });
    });

    test('of each account add up to all', async ({ barePage: page }) => {
      const all = await ask(page, {});
      const known = await accounts(page);
      let sum = 0;
      for (const account of known) {
        const own = await ask(page, { fundAccount: [account] });
        expect(own.records.map(({ fundAccount }) => value(fundAccount))).toEqual(Array(own.size).fill(account));
        sum += own.totalSize;
      }
      expect(sum).toBe(all.totalSize);
      expect((await ask(page, { fundAccount: known })).ids).toEqual(all.ids);
      expect(distinct(all.records.map(({ fundAccount }) => value(fundAccount))).length).toBeGreaterThan(1);
    });

    test('of a security are those of all with its name, and every name is listed', async ({ barePage: page }) => {
      const listed = await securities(page);
      const symbolOf = new Map([...listed].map(([symbol, detail]) => [nameOf(detail), symbol]));
      const all = await ask(page, {});
      const nameIn = (record: Entrust | Execution) =>
        nameOf({ securityId: String(value(record.securityId)), displayName: String(record.securityName.displayRole) });
      const names = distinct(all.records.map(nameIn));
      expect(names.filter((each) => !symbolOf.has(each))).toEqual([]);
      const [first, second] = names.map((each) => symbolOf.get(each)!) as [string, string];
      for (const wanted of [[first], [first, second]]) {
        const own = await ask(page, { symbol: wanted });
        const expected = all.records.filter((record) => wanted.includes(symbolOf.get(nameIn(record))!));
        expect(expected.length).toBeGreaterThan(0);
        expect(own.records).toEqual(expected);
      }
      expect(await ask(page, { symbol: ['NOSUCH.SH'] })).toMatchObject({ totalSize: 0, size: 0, records: [] });
    });

    test('of each trader add up to all', async ({ barePage: page }) => {
      const all = await ask(page, {});
      let sum = 0;
      for (const { id, name: traderName } of scenario.traders) {
        const own = await ask(page, { trader: [id] });
        const carried = own.records.map((record) => record.traderName);
        expect(carried).toEqual(Array(own.size).fill({ displayRole: traderName, userRole: id }));
        sum += own.totalSize;
      }
      expect(sum).toBe(all.totalSize);
      expect((await ask(page, { trader: traderIds })).ids).toEqual(all.ids);
    });

    for (const key of ['orderSource', 'instanceID'] as const) {
      test(`can be filtered by ${key}`, async ({ barePage: page }) => {
        const all = await ask(page, {});
        const given = distinct(all.records.map((record) => value(record[key]))).filter((text) => text !== '');
        expect(given.length).toBeGreaterThan(0);
        for (const wanted of given.slice(0, 5)) {
          const own = await ask(page, { [key]: [String(wanted)] });
          expect(own.records).toEqual(all.records.filter((record) => value(record[key]) === wanted));
        }
      });
    }

    test('with two conditions match both', async ({ barePage: page }) => {
      const [account, trader] = [(await accounts(page))[0]!, traderIds[0]!];
      const [ofAccount, ofTrader] = [
        await ask(page, { fundAccount: [account] }),
        await ask(page, { trader: [trader] }),
      ];
      const both = await ask(page, { fundAccount: [account], trader: [trader] });
      expect(both.ids).toEqual(ofAccount.ids.filter((id) => ofTrader.ids.includes(id)));
      expect(both.size).toBeGreaterThan(0);
    });

    test('without an effective condition come all', async ({ barePage: page }) => {
      const all = await ask(page, {});
      // An unknown account sets no condition; it does not exclude everything.
      for (const none of [[], { symbol: [] }, { nothing: ['x'] }, { fundAccount: ['no such account'] }])
        expect((await ask(page, none)).ids, JSON.stringify(none)).toEqual(all.ids);
    });

    test('with a single text instead of a list read a list of one', async ({ barePage: page }) => {
      const trader = traderIds[0]!;
      expect(await ask(page, { trader })).toEqual(await ask(page, { trader: [trader] }));
    });

    for (const [what, filter] of refusedFilters) {
      test(`are refused for ${what}`, async ({ barePage: page }) => {
        await expectRefused(page, method, filter, 0, 10);
      });
    }

    test('read start and count that are not numbers as 0', async ({ barePage: page }) => {
      const { resultData } = await envelopeOf(page, method, '{}', 'abc', 'abc');
      expect(resultData).toEqual((await envelopeOf(page, method, '{}', 0, 0)).resultData);
    });
  });
}

test('executions of a status are those of the orders that have it', async ({ barePage: page }) => {
  const { executionInfoList } = await executions(page, {});
  for (const status of Object.values(orderStatuses)) {
    const of = new Set(ids((await orders(page, { orderStatus: [status] })).entrustInfoList));
    const own = await executions(page, { orderStatus: [status] });
    expect(own.executionInfoList, status).toEqual(executionInfoList.filter(({ orderId }) => of.has(value(orderId))));
  }
});

const underWay: string[] = [orderStatuses.toBeSent, orderStatuses.sent, orderStatuses.toBeCancelled];

test.describe('orders', () => {
  test('of each status add up to all', async ({ barePage: page }) => {
    const all = await orders(page, {});
    let sum = 0;
    for (const status of Object.values(orderStatuses)) {
      const own = await orders(page, { orderStatus: [status] });
      // Nobody has placed or cancelled an order: none is on its way.
      if (underWay.includes(status)) expect(own.totalSize, status).toBe(0);
      else expect(distinct(own.entrustInfoList.map((order) => value(order.status)))).toEqual([status]);
      sum += own.totalSize;
    }
    expect(sum).toBe(all.totalSize);
    const open = [...openOrderStatuses];
    const ofAll = all.entrustInfoList.filter(({ status }) => (open as unknown[]).includes(value(status)));
    expect(ids((await orders(page, { orderStatus: open })).entrustInfoList)).toEqual(ids(ofAll));
  });

  test('come newest first', async ({ barePage: page }) => {
    const times = (await orders(page, {})).entrustInfoList.map(({ entrustTime }) => String(value(entrustTime)));
    expect(times).toEqual([...times].sort().reverse());
  });

  test('have quantities that fit their status', async ({ barePage: page }) => {
    const { entrustInfoList } = await orders(page, {}, 0, everything);
    const wrong = entrustInfoList.flatMap((order) => {
      const [qty, dealt, left] = [figure(order.entrustQty), figure(order.dealQty), figure(order.leaveQty)];
      const states: Record<string, boolean> = {
        [orderStatuses.reported]: dealt === 0 && left === qty,
        [orderStatuses.partlyFilled]: dealt > 0 && left > 0 && dealt + left === qty,
        [orderStatuses.filled]: dealt === qty && left === 0,
        [orderStatuses.partlyCancelled]: dealt > 0 && dealt < qty && left === 0,
        [orderStatuses.cancelled]: dealt === 0 && left === 0,
        [orderStatuses.rejected]: dealt === 0 && left === 0 && order.remark.displayRole !== '',
      };
      if (qty > 0 && states[value(order.status)]) return [];
      return [`${value(order.orderId)} ${value(order.status)}: ${dealt} of ${qty}, ${left} left`];
    });
    expect(wrong).toEqual([]);
  });

  test('have the filled quantity of their executions', async ({ barePage: page }) => {
    const [{ entrustInfoList }, { executionInfoList }] = [await orders(page, {}), await executions(page, {})];
    const byOrder = new Map<string | number, Execution[]>();
    for (const execution of executionInfoList) {
      const id = value(execution.orderId);
      byOrder.set(id, [...(byOrder.get(id) ?? []), execution]);
    }
    const sharedKeys = ['securityId', 'side', 'fundAccount', 'exchangeOrderId', 'orderSource', 'instanceID'] as const;
    const shared = (record: Entrust | Execution) => sharedKeys.map((key) => record[key]);
    for (const order of entrustInfoList) {
      const own = byOrder.get(value(order.orderId)) ?? [];
      byOrder.delete(value(order.orderId));
      const sum = (key: 'dealQty' | 'dealAmount') => own.reduce((before, each) => before + figure(each[key]), 0);
      expect({
        dealQty: sum('dealQty'),
        dealAmount: sum('dealAmount'),
        shared: own.map(shared),
        early: own.filter(({ dealTime }) => String(value(dealTime)) < String(value(order.entrustTime))),
      }).toEqual({
        dealQty: figure(order.dealQty),
        dealAmount: expect.closeTo(figure(order.dealAmount), 2),
        shared: own.map(() => shared(order)),
        early: [],
      });
    }
    expect([...byOrder.keys()]).toEqual([]); // no execution without an order
  });
});
