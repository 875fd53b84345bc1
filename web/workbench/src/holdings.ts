import { assetKeys, positionKeys, type Asset, type Position, type SecurityDetail } from '@varnel/web-client';
import { numberOf, toneOf, type Formats } from './formats';
import type { Column } from './table/types';
import type { Texts } from './texts';

const rates: ReadonlySet<string> = new Set(['riseDownRate', 'profitRate']);
const profits: ReadonlySet<string> = new Set([
  'profit',
  'profitRate',
  'riseDownRate',
  'floatingProfit',
  'closePosProfitDate',
  'closePosProfitTrade',
]);
const amounts: ReadonlySet<string> = new Set([
  'cost',
  'costCNY',
  'marketValue',
  'marketValueCNY',
  'totalCost',
  'profit',
  'stockInterest',
]);
/** A cost price is a mean, so it has more decimals than a price. */
const costDecimals = 4;
const names: ReadonlySet<string> = new Set([
  'fundAccount',
  'fundAccountName',
  'securityAccount',
  'securityName',
  'securityId',
  'exchange',
]);

/** What traders look at first. The other fields are columns to choose. */
const firstPositionKeys = [
  'fundAccount',
  'securityId',
  'securityName',
  'currentQty',
  'tradableQty',
  'costPrice',
  'lastPrice',
  'riseDownRate',
  'marketValue',
  'profit',
  'profitRate',
  'exchange',
] as const;
const allPositionKeys = [...new Set([...firstPositionKeys, ...positionKeys, 'stockInterest' as const])];

type PositionKey = (typeof allPositionKeys)[number];

const firstAssetKeys = [
  'fundAccount',
  'fundAccountName',
  'totalAsset',
  'marketValue',
  'tradableCash',
  'fetchableCash',
  'profit',
  'floatingProfit',
] as const;
const allAssetKeys = [...new Set([...firstAssetKeys, ...assetKeys])];

function plain(value: unknown): string | number | null {
  return typeof value === 'string' || typeof value === 'number' ? value : value == null ? null : String(value);
}

export function positionColumns(t: Texts, formats: Formats, find: FindSecurity): readonly Column<Position>[] {
  const write = (position: Position, key: PositionKey) => {
    const value = position[key];
    if (rates.has(key)) return formats.rate(value);
    if (amounts.has(key)) return formats.money(value);
    if (key === 'costPrice') return formats.price(Number(value), costDecimals);
    const precision = key === 'lastPrice' ? find(position)?.precision : undefined;
    return precision === undefined ? formats.value(value) : formats.price(Number(value), precision);
  };
  return allPositionKeys.map((key) => ({
    key,
    title: t.field(key),
    kind: names.has(key) ? 'text' : 'number',
    value: (position) => plain(position[key]),
    write: (position) => write(position, key),
    isExtra: !(firstPositionKeys as readonly string[]).includes(key),
    ...(profits.has(key) && { tone: (position: Position) => toneOf(position[key]) }),
  }));
}

export function assetColumns(t: Texts, formats: Formats): readonly Column<Asset>[] {
  return allAssetKeys.map((key) => ({
    key,
    title: t.field(key),
    kind: names.has(key) ? 'text' : 'number',
    value: (asset) => plain(names.has(key) ? asset[key] : numberOf(asset[key])),
    write: (asset) => (names.has(key) ? asset[key] : formats.money(asset[key])),
    isExtra: !(firstAssetKeys as readonly string[]).includes(key),
    ...(profits.has(key) && { tone: (asset: Asset) => toneOf(asset[key]) }),
  }));
}

export type FindSecurity = (position: Position) => SecurityDetail | undefined;

/** Finds the security of a position, which has no symbol: its code and name together name one security. */
export function finder(securities: readonly SecurityDetail[]): FindSecurity {
  const nameOf = (securityId: unknown, name: unknown) => `${String(securityId)} ${String(name)}`;
  const byName = new Map(securities.map((detail) => [nameOf(detail.securityId, detail.displayName), detail]));
  return ({ securityId, securityName }) => byName.get(nameOf(securityId, securityName));
}

/** The symbols of the positions that the terminal lists, each once, in ascending order. */
export function symbolsOf(positions: readonly Position[], find: FindSecurity): readonly string[] {
  const symbols = positions.map((position) => find(position)?.symbol);
  return [...new Set(symbols.filter((symbol) => symbol !== undefined))].sort();
}
