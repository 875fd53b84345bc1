import {
  assetKeys,
  positionKeys,
  priceTypes,
  securityTypes,
  sides,
  type Asset,
  type Position,
  type SecurityDetail,
  type Tick,
  type TradableQty,
} from '@varnel/web-client';
import type { Page } from '@playwright/test';
import { ask, envelopeOf } from './support/ask';
import { fundAccounts } from './support/scenario';
import { expect, stillMarket, test } from './support/test';
import { accounts, nameOf, securities } from './support/world';

// Prices must not move between two calls.
test.use({ options: stillMarket });

const stockAccounts = fundAccounts('stock').map(({ fundAccount }) => fundAccount);
const cents = (text: string) => Math.round(Number(text) * 100);

function positionsOf(page: Page, account: string, symbol = ''): Promise<Position[]> {
  return ask(page, 'Data_getPositionList_REQ', account, symbol);
}

async function listed(page: Page) {
  const all = await securities(page);
  const byName = new Map([...all.values()].map((detail) => [nameOf(detail), detail]));
  expect(byName.size).toBe(all.size); // each name belongs to one security
  return {
    all,
    of: ({ securityId, securityName }: Position): SecurityDetail => {
      const found = byName.get(nameOf({ securityId: String(securityId), displayName: String(securityName) }));
      if (!found) throw new Error(`no security is called ${securityId} ${securityName}`);
      return found;
    },
  };
}

test.describe('positions', () => {
  test('have the documented fields', async ({ barePage: page }) => {
    const positions = await positionsOf(page, (await accounts(page)).join(','));
    expect(positions.length).toBeGreaterThan(5);
    const keys = new Set(positions.map((position) => Object.keys(position).sort().join()));
    expect([...keys]).toEqual([[...positionKeys, 'stockInterest'].sort().join()]);
  });

  test('belong to listed securities, and only those of bonds have interest', async ({ barePage: page }) => {
    const { of } = await listed(page);
    const positions = await positionsOf(page, (await accounts(page)).join(','));
    const bonds = positions.filter((position) => of(position).securityType === securityTypes.bond);
    expect(bonds.length).toBeGreaterThan(0);
    expect(bonds.length).toBeLessThan(positions.length);
    for (const position of positions) {
      const detail = of(position);
      expect(position.stockInterest, detail.symbol).toBe(detail.stockInterest);
      expect(position.stockInterest > 0, detail.symbol).toBe(detail.securityType === securityTypes.bond);
    }
  });

  test('come account by account, in the order of the call', async ({ barePage: page }) => {
    const known = fundAccounts();
    const one: Position[][] = [];
    for (const { fundAccount, fundAccountName } of known) {
      const own = await positionsOf(page, fundAccount);
      const owners = own.map(({ fundAccount, fundAccountName }) => ({ fundAccount, fundAccountName }));
      expect(owners).toEqual(own.map(() => ({ fundAccount, fundAccountName })));
      one.push(own);
    }
    const together = await positionsOf(page, known.map(({ fundAccount }) => fundAccount).join(','));
    expect(together).toEqual(one.flat());
    const reverse = await positionsOf(
      page,
      [...known]
        .reverse()
        .map(({ fundAccount }) => fundAccount)
        .join(','),
    );
    expect(reverse).toEqual([...one].reverse().flat());
  });

  test('of one security are a part of the whole list', async ({ barePage: page }) => {
    const { of } = await listed(page);
    const everybody = (await accounts(page)).join(',');
    const all = await positionsOf(page, everybody);
    for (const symbol of new Set(all.map((position) => of(position).symbol)))
      expect(await positionsOf(page, everybody, symbol)).toEqual(all.filter((each) => of(each).symbol === symbol));
    expect(await positionsOf(page, everybody, 'NOSUCH.SH')).toEqual([]);
  });

  test('of an unknown or missing account are empty', async ({ barePage: page }) => {
    const [first] = await accounts(page);
    expect(await positionsOf(page, 'no such account')).toEqual([]);
    expect(await positionsOf(page, '')).toEqual([]);
    expect(await positionsOf(page, `,${first},no such account`)).toEqual(await positionsOf(page, first!));
  });

  test('have the price of the quote, and no more than the position is tradable', async ({ barePage: page }) => {
    const { of } = await listed(page);
    for (const position of await positionsOf(page, (await accounts(page)).join(','))) {
      const { symbol } = of(position);
      const tick = await ask<Tick>(page, 'Data_getCurrentTick_REQ', symbol);
      expect(position.lastPrice, symbol).toBe(tick.last);
      // Short positions count as negative.
      const [current, tradable] = [Number(position.currentQty), Number(position.tradableQty)];
      expect(Math.abs(tradable), symbol).toBeLessThanOrEqual(Math.abs(current));
      expect(tradable * current, symbol).toBeGreaterThanOrEqual(0);
    }
  });
});

test.describe('assets', () => {
  test('are texts with two decimals, in the order of the accounts in the call', async ({ barePage: page }) => {
    const known = fundAccounts();
    const asked = [...known].reverse();
    const assets = await ask<Asset[]>(page, 'Data_getAsset_REQ', asked.map((each) => each.fundAccount).join(','));
    expect(assets.map(({ fundAccount, fundAccountName }) => ({ fundAccount, fundAccountName }))).toEqual(asked);
    for (const { fundAccount, fundAccountName, ...amounts } of assets) {
      expect(Object.keys({ fundAccount, fundAccountName, ...amounts }).sort()).toEqual([...assetKeys].sort());
      for (const [key, amount] of Object.entries(amounts)) expect(amount, key).toMatch(/^-?\d+\.\d\d$/);
    }
  });

  test('leave out unknown accounts', async ({ barePage: page }) => {
    const [first] = stockAccounts;
    const own = await ask<Asset[]>(page, 'Data_getAsset_REQ', first);
    expect(own).toHaveLength(1);
    expect(await ask(page, 'Data_getAsset_REQ', `,no such account,${first}`)).toEqual(own);
    expect(await ask(page, 'Data_getAsset_REQ', ` ${first}`)).toEqual([]); // blanks are not trimmed
    expect(await ask(page, 'Data_getAsset_REQ', '')).toEqual([]);
  });

  test('of a stock account equal the sums over its positions', async ({ barePage: page }) => {
    for (const account of stockAccounts) {
      const [asset] = await ask<[Asset]>(page, 'Data_getAsset_REQ', account);
      const positions = await positionsOf(page, account);
      const worth = positions.reduce((sum, { marketValue }) => sum + Number(marketValue), 0);
      expect(Math.abs(cents(asset.marketValue) - worth * 100), account).toBeLessThanOrEqual(1);
      expect(Math.abs(cents(asset.profit) - (cents(asset.marketValue) - cents(asset.holdingCost)))).toBeLessThanOrEqual(
        1,
      );
      expect(cents(asset.totalAsset)).toBeGreaterThanOrEqual(cents(asset.marketValue) + cents(asset.tradableCash));
      expect(cents(asset.fetchableCash)).toBeLessThanOrEqual(cents(asset.tradableCash));
    }
  });
});

test.describe('a tradable quantity', () => {
  interface Line {
    account: string;
    detail: SecurityDetail;
    side: string;
    price: number;
    priceType?: string;
  }

  /** The arguments of a call, in their order. */
  function args({ account, detail, side, price, priceType = priceTypes.limit }: Line) {
    return [account, detail.symbol, detail.exchange, side, priceType, price.toFixed(detail.precision), ''];
  }

  async function most(page: Page, line: Line): Promise<number> {
    const { qty } = await ask<TradableQty>(page, 'Data_getTradableQty_REQ', ...args(line));
    expect(qty).toMatch(/^\d+$/);
    return Number(qty);
  }

  test('to sell is the tradable part of the position', async ({ barePage: page }) => {
    const { of } = await listed(page);
    const account = stockAccounts[0]!;
    const positions = await positionsOf(page, account);
    expect(positions.length).toBeGreaterThan(0);
    for (const position of positions) {
      const line = { account, detail: of(position), side: sides.sell, price: Number(position.lastPrice) };
      expect(await most(page, line), line.detail.symbol).toBe(Number(position.tradableQty));
    }
  });

  test('to sell what the account does not hold is 0', async ({ barePage: page }) => {
    const { all, of } = await listed(page);
    const account = stockAccounts[0]!;
    const held = (await positionsOf(page, account)).map((position) => of(position).symbol);
    const detail = [...all.values()].find(
      ({ symbol, securityType }) => securityType === securityTypes.share && !held.includes(symbol),
    )!;
    expect(await most(page, { account, detail, side: sides.sell, price: 10 })).toBe(0);
  });

  test('to buy is payable, in whole steps, and larger at a lower price', async ({ barePage: page }) => {
    const { all } = await listed(page);
    const account = stockAccounts[0]!;
    const [asset] = await ask<[Asset]>(page, 'Data_getAsset_REQ', account);
    const shares = [...all.values()].filter(({ securityType }) => securityType === securityTypes.share).slice(0, 5);
    for (const detail of shares) {
      const { last, lowerLimit } = await ask<{ last: number; lowerLimit: number }>(
        page,
        'Data_getCurrentTick_REQ',
        detail.symbol,
      );
      const price = Math.max(lowerLimit, last - 10 * detail.priceUnit);
      const [dear, cheap] = [
        await most(page, { account, detail, side: sides.buy, price: last }),
        await most(page, { account, detail, side: sides.buy, price }),
      ];
      expect(dear * last, detail.symbol).toBeLessThanOrEqual(Number(asset.tradableCash));
      expect(dear % detail.qtyPrecision, detail.symbol).toBe(0);
      expect(cheap, detail.symbol).toBeGreaterThanOrEqual(dear);
    }
  });

  test('of an unknown account has no result, although the call succeeds', async ({ barePage: page }) => {
    const [detail] = [...(await securities(page)).values()];
    const line = args({ account: 'no such account', detail: detail!, side: sides.buy, price: 10 });
    const envelope = await envelopeOf(page, 'Data_getTradableQty_REQ', ...line);
    expect(envelope).toEqual({ code: '0', msg: '', uuid: envelope.uuid });
  });
});
