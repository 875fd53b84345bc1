import { entrustKeys, executionKeys, positionKeys, assetKeys, sides } from '@varnel/web-client';
import type { Asset, Entrust, Execution, Position, SecurityDetail } from '@varnel/web-client';
import { ask } from './support/ask';
import { EventRecorder } from './support/eventRecorder';
import { fundAccounts } from './support/scenario';
import { expect, test } from './support/test';
import { account, idOf, market, orderFor, placed, reached, statusOf, symbol } from './support/trading';
import { executions, nameOf, orders } from './support/world';

// Quotes change every three seconds of trading: here every 150 ms.
test.use({ options: ['--speed', '20'] });

const executionsOf = (recorder: EventRecorder, id: string) =>
  recorder
    .pushes<Execution[]>('on_executionUpdate')
    .flat()
    .filter((execution) => idOf(execution) === id);
const sum = (list: readonly Execution[]) => list.reduce((before, { dealQty }) => before + Number(dealQty.userRole), 0);

test.describe('an order that can fill', () => {
  for (const [name, but] of [
    ['at the market', { priceType: 'Market', price: '0' }],
    ['at a limit that the market reaches', {}],
  ] as const) {
    test(`${name} fills, and its executions, position and asset are pushed`, async ({
      recorder: one,
      secondRecorder: other,
    }) => {
      const there = await market(one);
      const order = orderFor(there, { price: there.highest, qty: '300', ...but });
      const id = await placed(one, order);

      for (const recorder of [one, other]) {
        const record = await reached(recorder, id, 'Filled');
        const own = await recorder.until(() => sum(executionsOf(recorder, id)) === 300 && executionsOf(recorder, id));
        expect(record.dealQty.userRole).toBe(300);
        expect(new Set(own.map(({ execId }) => execId.userRole)).size).toBe(own.length);
        for (const execution of own) {
          expect(Number(execution.dealPrice.userRole)).toBeLessThanOrEqual(Number(there.highest));
          expect(execution.sideUnion.userRole).toBe(sides.buy);
        }
        const { executionInfoList } = await executions(recorder.page, { symbol: [symbol] });
        const listed = executionInfoList.filter((execution) => idOf(execution) === id);
        const byId = (list: Execution[]) =>
          [...list].sort((a, b) => (String(a.execId.userRole) < String(b.execId.userRole) ? -1 : 1));
        expect(byId(own)).toEqual(byId(listed));
        const { entrustInfoList } = await orders(recorder.page, { symbol: [symbol] });
        expect(entrustInfoList.find((each) => idOf(each) === id)).toEqual(record);

        const named = nameOf({ securityId: there.detail.securityId, displayName: there.detail.displayName });
        await recorder.until(() =>
          recorder
            .pushes<Position>('on_positionUpdate')
            .find(
              (position) =>
                position.fundAccount === account &&
                nameOf({ securityId: String(position.securityId), displayName: String(position.securityName) }) ===
                  named,
            ),
        );
        await recorder.until(() =>
          recorder.pushes<Asset>('on_AssetUpdate').some((asset) => asset.fundAccount === account),
        );
      }
    });
  }

  test('of futures opens and closes a position', async ({ recorder }) => {
    const [future] = await ask<SecurityDetail[]>(
      recorder.page,
      'Data_getSymbolListWithDetail_REQ',
      '{"symbolFilter":[{"securityType":"Future","securitySubType":["CommodityFuture"]}]}',
    );
    const there = await market(recorder, future!.symbol);
    const fundAccount = fundAccounts('futures')[0]!.fundAccount;
    const base = { fundAccount, qty: '1', priceType: 'Market', price: '0' };
    for (const orderSide of [sides.sellOpen, sides.buyClose]) {
      const record = await reached(recorder, await placed(recorder, orderFor(there, { ...base, orderSide })), 'Filled');
      expect(record.sideUnion.userRole).toBe(orderSide);
      expect(record.side.userRole).toBe(orderSide.startsWith('Buy') ? 'Buy' : 'Sell');
    }
  });
});

test.describe('pushes of a running market', () => {
  test('tell every page of the fills of earlier orders', async ({ recorder: one, secondRecorder: other }) => {
    for (const recorder of [one, other]) {
      await recorder.until(() => recorder.pushes<Execution[]>('on_executionUpdate').flat().length >= 3);
      await recorder.until(() => recorder.pushes<Entrust[]>('on_entrustUpdate').flat().length >= 3);
      await recorder.until(
        () => recorder.of('on_positionUpdate').length > 0 && recorder.of('on_AssetUpdate').length > 0,
      );
    }
  });

  test('have the documented fields', async ({ recorder }) => {
    const pushes = ['on_entrustUpdate', 'on_executionUpdate', 'on_positionUpdate', 'on_AssetUpdate'] as const;
    for (const push of pushes) await recorder.until(() => recorder.of(push).length > 0);
    const keysOf = (record: object) => Object.keys(record).sort();
    for (const order of recorder.pushes<Entrust[]>('on_entrustUpdate').flat()) {
      expect(keysOf(order)).toEqual([...entrustKeys].sort());
      expect(statusOf(order)).toMatch(/^\w+$/);
    }
    for (const execution of recorder.pushes<Execution[]>('on_executionUpdate').flat())
      expect(keysOf(execution)).toEqual([...executionKeys].sort());
    for (const position of recorder.pushes<Position>('on_positionUpdate'))
      expect(keysOf(position)).toEqual([...positionKeys, 'stockInterest'].sort());
    for (const asset of recorder.pushes<Asset>('on_AssetUpdate')) expect(keysOf(asset)).toEqual([...assetKeys].sort());
    for (const push of pushes) for (const args of recorder.of(push)) expect(args).toHaveLength(1);
    expect(recorder.reservedEvents()).toEqual([]);
  });
});
