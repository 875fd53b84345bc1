import {
  quoteFields,
  securityTypes,
  type AnsweredCall,
  type SecurityDetail,
  type SecurityEntry,
  type Tick,
} from '@varnel/web-client';
import { ask, expectRefused, refusedFilters, replyTo } from './support/ask';
import { symbols } from './support/scenario';
import { expect, stillMarket, test } from './support/test';
import { securities } from './support/world';

// Prices must not move between two calls.
test.use({ options: stillMarket });

const everyClass = '{"symbolFilter":[]}';
const classText = (...symbolFilter: object[]) => JSON.stringify({ symbolFilter });
const bySymbol = <Item extends { symbol: string }>(items: readonly Item[]) => items.map(({ symbol }) => symbol);

test.describe('the list of securities', () => {
  test('has each security once, also those of the scenario', async ({ barePage: page }) => {
    const list = await ask<SecurityEntry[]>(page, 'Data_getSymbolList_REQ', everyClass);
    expect(new Set(bySymbol(list)).size).toBe(list.length);
    expect(bySymbol(list)).toEqual(expect.arrayContaining(symbols));
    const isWhole = (texts: string[]) => texts.length === 3 && texts.every((text) => /\S/.test(text));
    expect(list.filter((entry) => !isWhole(Object.values(entry)))).toEqual([]);
  });

  test('equals the list with details, and its details equal those of single calls', async ({ barePage: page }) => {
    const list = await ask<SecurityEntry[]>(page, 'Data_getSymbolList_REQ', everyClass);
    const detailed = await ask<SecurityDetail[]>(page, 'Data_getSymbolListWithDetail_REQ', everyClass);
    expect(detailed.map(({ symbol, displayName, spellName }) => ({ symbol, displayName, spellName }))).toEqual(list);
    const details = await ask<SecurityDetail[]>(page, 'Data_getSymbolDetail_REQ', bySymbol(list).join(','));
    expect(details).toEqual(detailed);
  });

  test('has complete display names, even with the separator inside', async ({ barePage: page }) => {
    const list = await ask<SecurityEntry[]>(page, 'Data_getSymbolList_REQ', everyClass);
    const split = list.filter(({ displayName }) => displayName.includes('|'));
    expect(split.length).toBeGreaterThan(0);
    for (const { symbol, displayName, spellName } of split) {
      const [detail] = await ask<SecurityDetail[]>(page, 'Data_getSymbolDetail_REQ', symbol);
      expect(detail).toMatchObject({ symbol, displayName, spellName });
      expect(spellName).not.toContain('|');
    }
  });

  for (const key of ['securityType', 'securitySubType'] as const) {
    test(`can be filtered by ${key}`, async ({ barePage: page }) => {
      const all = [...(await securities(page)).values()];
      const values = [...new Set(all.map((detail) => detail[key]))];
      expect(values.length).toBeGreaterThan(1);
      for (const value of values) {
        const filter = key === 'securityType' ? classText({ securityType: value }) : classText({ [key]: [value] });
        const part = await ask<SecurityEntry[]>(page, 'Data_getSymbolList_REQ', filter);
        expect(bySymbol(part), value).toEqual(bySymbol(all.filter((detail) => detail[key] === value)));
      }
    });
  }

  test('has the securities of several classes, each once', async ({ barePage: page }) => {
    const all = [...(await securities(page)).values()];
    const [first, second] = [...new Set(all.map(({ securityType }) => securityType))];
    const asked = classText({ securityType: first }, { securityType: second }, { securityType: first });
    const list = await ask<SecurityEntry[]>(page, 'Data_getSymbolList_REQ', asked);
    const expected = all.filter(({ securityType }) => securityType === first || securityType === second);
    expect(bySymbol(list).sort()).toEqual(bySymbol(expected).sort());
  });

  test('is empty for an unknown class', async ({ barePage: page }) => {
    for (const none of [{ securityType: 'no such type' }, { securitySubType: ['none'] }, { securityPost: ['none'] }])
      expect(await ask(page, 'Data_getSymbolList_REQ', classText(none)), JSON.stringify(none)).toEqual([]);
  });

  for (const filter of ['{}', '[]', '{"symbolFilter":7}']) {
    test(`has all securities for ${filter}`, async ({ barePage: page }) => {
      const list = await ask<SecurityEntry[]>(page, 'Data_getSymbolList_REQ', filter);
      expect(list).toEqual(await ask(page, 'Data_getSymbolList_REQ', everyClass));
    });
  }

  for (const [name, filter] of refusedFilters) {
    test(`is refused for ${name}`, async ({ barePage: page }) => {
      await expectRefused(page, 'Data_getSymbolList_REQ', filter);
      await expectRefused(page, 'Data_getSymbolListWithDetail_REQ', filter);
    });
  }
});

test.describe('details', () => {
  test('are consistent', async ({ barePage: page }) => {
    const positiveInteger = /^[1-9]\d*$/;
    const wrong = [...(await securities(page)).values()].flatMap((detail) => {
      const { symbol, precision, priceUnit, qtyStep, qtyUnit, qtyPrecision, minQty, maxQty } = detail;
      const rules = {
        minQty: positiveInteger.test(minQty),
        maxQty: positiveInteger.test(maxQty) && Number(maxQty) > Number(minQty),
        precision: Number.isInteger(precision) && precision >= 0 && precision <= 4,
        // The price step needs all of the decimals, and no more.
        priceUnit: priceUnit > 0 && Number(priceUnit.toFixed(precision)) === priceUnit,
        qtySteps: Math.min(qtyStep, qtyUnit, qtyPrecision) > 0,
      };
      return Object.entries(rules).flatMap(([rule, holds]) => (holds ? [] : [`${symbol} ${rule}`]));
    });
    expect(wrong).toEqual([]);
  });

  test('have interest only for bonds', async ({ barePage: page }) => {
    const all = [...(await securities(page)).values()];
    const bonds = all.filter(({ securityType }) => securityType === securityTypes.bond);
    const others = all.filter(({ securityType }) => securityType !== securityTypes.bond);
    expect(bonds.length).toBeGreaterThan(0);
    expect(others.length).toBeGreaterThan(0);
    for (const { symbol, stockInterest } of bonds) expect(stockInterest, symbol).toBeGreaterThan(0);
    for (const { symbol, stockInterest } of others) expect(stockInterest, symbol).toBe(0);
  });

  test('of an empty entry between two symbols are empty', async ({ barePage: page }) => {
    const [first, second] = symbols as [string, string];
    const details = await ask<SecurityDetail[]>(page, 'Data_getSymbolDetail_REQ', `${first},,${second}`);
    expect(bySymbol(details)).toEqual([first, '', second]);
    expect(details[1]).toMatchObject({ displayName: '', securityId: '', priceLimitType: false, stockInterest: 0 });
    const unknown = await ask<SecurityDetail[]>(page, 'Data_getSymbolDetail_REQ', 'NOSUCH.SH');
    expect(unknown).toEqual([details[1]]);
  });
});

test.describe('a quote', () => {
  const number = (tick: Tick, field: keyof typeof quoteFields) => tick[quoteFields[field]] as number;
  const list = (tick: Tick, field: keyof typeof quoteFields) => tick[quoteFields[field]] as number[];

  test('is consistent and fits the details', async ({ barePage: page }) => {
    const all = [...(await securities(page)).values()];
    const kinds = new Map(all.map((detail) => [detail.securitySubType, detail])); // one of each
    for (const { symbol, priceUnit, precision, priceLimitType } of kinds.values()) {
      const tick = await ask<Tick>(page, 'Data_getCurrentTick_REQ', symbol);
      expect(Object.keys(tick).sort(), symbol).toEqual(Object.values<string>(quoteFields).sort());
      expect(tick[quoteFields.symbol]).toBe(symbol);

      const prices = (['open', 'high', 'low', 'last', 'previousClose'] as const).map((field) => number(tick, field));
      const [open, high, low, last] = prices as [number, number, number, number, number];
      expect(Math.max(open, last), symbol).toBeLessThanOrEqual(high);
      expect(Math.min(open, last), symbol).toBeGreaterThanOrEqual(low);
      const [upper, lower] = [number(tick, 'upperLimit'), number(tick, 'lowerLimit')];
      expect(upper > 0, symbol).toBe(priceLimitType);
      if (priceLimitType) expect(upper > high - 1e-9 && lower < low + 1e-9, symbol).toBe(true);

      const [bids, asks] = [list(tick, 'bidPrices'), list(tick, 'askPrices')];
      for (const side of [bids, asks, list(tick, 'bidQtys'), list(tick, 'askQtys')]) expect(side).toHaveLength(5);
      const quoted = (side: number[]) => side.filter((price) => price > 0);
      expect(quoted(bids), symbol).toEqual([...quoted(bids)].sort((a, b) => b - a));
      expect(quoted(asks), symbol).toEqual([...quoted(asks)].sort((a, b) => a - b));
      if (quoted(bids).length && quoted(asks).length) expect(bids[0]!, symbol).toBeLessThan(asks[0]!);
      for (const price of [...prices, ...bids, ...asks]) {
        expect(Number(price.toFixed(precision)), symbol).toBe(price);
        expect(Math.abs(price / priceUnit - Math.round(price / priceUnit)), symbol).toBeLessThan(1e-6);
      }
    }
  });

  test('has the close of the last daily candle as previous close', async ({ barePage: page }) => {
    const days = await Promise.all(
      symbols.map((symbol) => ask<{ close: number }[]>(page, 'Data_getKLineData_REQ', symbol, '20250201', '', '2')),
    );
    for (const [index, symbol] of symbols.entries()) {
      const tick = await ask<Tick>(page, 'Data_getCurrentTick_REQ', symbol);
      expect(number(tick, 'previousClose'), symbol).toBe(days[index]!.at(-1)!.close);
    }
  });

  test('covers the minute candles of its day', async ({ barePage: page }) => {
    const check = async (symbol: string) => {
      const tick = await ask<Tick>(page, 'Data_getCurrentTick_REQ', symbol);
      const day = String(tick[quoteFields.time]).replace(/\D/g, '').slice(0, 8);
      const minutes = await ask<Record<'open' | 'high' | 'low' | 'volume', number>[]>(
        page,
        'Data_getKLineData_REQ',
        symbol,
        day,
        '',
        '1',
      );
      expect(number(tick, 'open'), symbol).toBe(minutes[0]!.open);
      expect(number(tick, 'high'), symbol).toBeGreaterThanOrEqual(Math.max(...minutes.map(({ high }) => high)));
      expect(number(tick, 'low'), symbol).toBeLessThanOrEqual(Math.min(...minutes.map(({ low }) => low)));
      const traded = minutes.reduce((sum, { volume }) => sum + volume, 0);
      expect(number(tick, 'volume'), symbol).toBeGreaterThanOrEqual(traded);
    };
    await Promise.all(symbols.map(check));
  });

  test('of an unknown symbol is an empty object', async ({ barePage: page }) => {
    for (const symbol of ['NOSUCH.SH', '']) expect(await ask(page, 'Data_getCurrentTick_REQ', symbol)).toEqual({});
  });
});

test('the rise-and-fall analysis is always answered with the empty text', async ({ barePage: page }) => {
  for (const args of [
    ['', '', ''],
    [symbols[0], '20250101', '20250228'],
    ['a', 'b', 'c', 'd'],
  ])
    expect(await replyTo(page, 'Data_getUpsDownsAnalysis_REQ', 'u1', ...args)).toBe('');
});

test.describe('too few arguments', () => {
  const short: [AnsweredCall, ...unknown[]][] = [
    ['Data_getSymbolList_REQ'],
    ['Data_getSymbolListWithDetail_REQ'],
    ['Data_getSymbolDetail_REQ'],
    ['Data_getCurrentTick_REQ'],
    ['Data_getEntrustList_REQ', '{}', 0],
    ['Data_getExecutionList_REQ', '{}', 0],
    ['Data_getPositionList_REQ', '880010001'],
    ['Data_getAsset_REQ'],
    ['Data_getTradableQty_REQ', '880010001', symbols[0], 'SH', 'Buy', 'Limit', '10'],
  ];
  for (const [method, ...args] of short) {
    test(`of ${method} give the empty text`, async ({ barePage: page }) => {
      expect(await replyTo(page, method, 'u1', ...args)).toBe('');
    });
  }
});
