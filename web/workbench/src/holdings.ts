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

export function positionColumns(t: Texts, formats: Formats): readonly Column<Position>[] {
  return allPositionKeys.map((key) => ({
    key,
    title: t.field(key),
    kind: names.has(key) ? 'text' : 'number',
    value: (position) => plain(position[key]),
    write: (position) => (rates.has(key) ? formats.rate : formats.value)(position[key]),
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

/** A position has neither symbol nor the exchange's code, but code and name together name one security. */
const nameOf = (securityId: unknown, name: unknown) => `${String(securityId)} ${String(name)}`;

/** The symbols of the positions that the terminal lists, in ascending order. */
export function symbolsOf(positions: readonly Position[], securities: readonly SecurityDetail[]): readonly string[] {
  const held = new Set(positions.map(({ securityId, securityName }) => nameOf(securityId, securityName)));
  return securities
    .filter(({ securityId, displayName }) => held.has(nameOf(securityId, displayName)))
    .map(({ symbol }) => symbol)
    .sort();
}
