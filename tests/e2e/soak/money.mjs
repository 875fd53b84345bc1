// Whether the money of the stock accounts adds up, to the cent, from what a page can read.

import { setTimeout as pause } from 'node:timers/promises';

const cents = (yuan) => Math.round(Number(yuan) * 100);
const value = (pair) => pair.userRole;

/** Parts of the amount, as docs/vocabulary.md has them. */
const fees = {
  Share: { Buy: 0.00025, Sell: 0.00075 },
  Fund: { Buy: 0.0001, Sell: 0.0001 },
  Bond: { Buy: 0.00002, Sell: 0.00002 },
};

const feeOf = (amount, type, side) => Math.round((amount / 100) * fees[type][side] * 100);

/** More executions than these are not added up: reading them all would take minutes. */
const mostExecutions = 100_000;
const partOfList = 2000;

const filterOf = (fund) => JSON.stringify({ fundAccount: [fund] });

const executions = (page, fund, start, count) => page.result('Data_getExecutionList_REQ', filterOf(fund), start, count);

/** Assets and positions of one moment, and how many executions there were. Quotes change between two calls: then again. */
async function momentOf(page, fund) {
  for (let tries = 200; tries > 0; tries -= 1) {
    const [[asset], { totalSize }, positions, [again], { totalSize: then }] = await Promise.all([
      page.result('Data_getAsset_REQ', fund),
      executions(page, fund, 0, 1),
      page.result('Data_getPositionList_REQ', fund, ''),
      page.result('Data_getAsset_REQ', fund),
      executions(page, fund, 0, 1),
    ]);
    if (JSON.stringify(asset) === JSON.stringify(again) && totalSize === then) return { asset, positions, totalSize };
    await pause(50);
  }
  throw new Error(`the figures of ${fund} do not stand still`);
}

/** What each stock account has in cash, and what must be the same in two ways at any moment. */
export async function readMoney(page, funds, faults) {
  const money = new Map();
  for (const fund of funds) {
    const { asset, positions, totalSize } = await momentOf(page, fund);
    const marketValue = positions.reduce((sum, position) => sum + cents(position.marketValue), 0);
    const profit = positions.reduce((sum, position) => sum + cents(position.profit), 0);
    const same = (what, one, other) => one === other || faults.push(`${fund}: ${what}: ${one} and ${other} cents`);
    same('the market value, of the account and of its positions', cents(asset.marketValue), marketValue);
    same('the profit, of the account and of its positions', cents(asset.profit), profit);
    same('the profit, and the market value less the cost', profit, marketValue - cents(asset.holdingCost));
    money.set(fund, {
      cash: cents(asset.totalAsset) - marketValue,
      tradable: cents(asset.tradableCash),
      executions: totalSize,
    });
  }
  return money;
}

/** Cash has changed by what was paid and received since then, fees included. Returns how many executions that were. */
export async function compareMoney(page, before, now, types, faults) {
  let added = 0;
  for (const [fund, then] of before) {
    const { cash, executions: total } = now.get(fund);
    const count = total - then.executions;
    if (count > mostExecutions) continue;
    let change = 0;
    for (let start = 0; start < count; start += partOfList) {
      const { executionInfoList } = await executions(page, fund, start, Math.min(partOfList, count - start));
      for (const execution of executionInfoList) {
        const side = value(execution.side);
        const amount = cents(value(execution.dealAmount));
        const fee = feeOf(amount, types.get(value(execution.securityId)), side);
        change += (side === 'Buy' ? -amount : amount) - fee;
        added += 1;
      }
    }
    if (cash - then.cash !== change)
      faults.push(`${fund}: the cash has changed by ${cash - then.cash} cents, its ${count} executions say ${change}`);
  }
  return added;
}

/** States of an order that can still be filled. */
const openStates = ['ToBeSent', 'Sent', 'Reported', 'PartlyFilled', 'ToBeCancelled'];

/** The trading programme of a scenario enters its orders with this tag, and cancels them itself. */
const programme = 'FLOW';

/** The open orders of the account. A programme has a few hundred at a time. */
async function openOrders(page, fund) {
  const filter = JSON.stringify({ fundAccount: [fund], orderStatus: openStates });
  const { entrustInfoList } = await page.result('Data_getEntrustList_REQ', filter, 0, 0);
  return entrustInfoList;
}

const settlingSeconds = 120;

/** Cancels what pages and people have open, and waits until the exchange has done so. */
export async function cancelAll(page, funds, faults) {
  for (const fund of funds) {
    const end = Date.now() + settlingSeconds * 1000;
    for (;;) {
      const orders = (await openOrders(page, fund)).filter(({ orderSource }) => value(orderSource) !== programme);
      if (orders.length === 0) break;
      if (Date.now() > end) {
        faults.push(`${fund}: ${orders.length} orders stay open`);
        break;
      }
      const unasked = orders.filter(({ status }) => value(status) !== 'ToBeCancelled');
      if (unasked.length > 0)
        await page.call('Trade_reqCancelOrder_REQ', unasked.map(({ orderId }) => value(orderId)).join());
      await pause(50);
    }
  }
}

/** The money that an open order sets aside: to buy its amount and the fee, to sell none. */
function setAside(order, types) {
  if (value(order.side) !== 'Buy') return 0;
  const amount = cents(value(order.price) * value(order.leaveQty));
  return amount + feeOf(amount, types.get(value(order.securityId)), 'Buy');
}

/**
 * To be called while time stands still. What is not free is what the open orders set aside. Returns how many orders that
 * were.
 */
export async function checkFreeCash(page, money, types, faults) {
  let open = 0;
  for (const [fund, { cash, tradable }] of money) {
    const orders = await openOrders(page, fund);
    const needed = orders.reduce((sum, order) => sum + setAside(order, types), 0);
    if (cash - tradable !== needed)
      faults.push(`${fund}: of ${cash} cents ${tradable} are free, and its open orders need ${needed}`);
    open += orders.length;
  }
  return open;
}
