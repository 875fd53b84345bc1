import { argumentList } from '../methods.js';
import type { CallOptions } from '../pendingCall.js';
import type { Asset, Position } from '../records.js';
import type { SecurityDetail } from '../securities.js';
import { watchList } from './lists.js';
import type { Stream } from './stream.js';
import type { Terminal } from './terminal.js';
import type { Watch, WatchListener, WatchOptions } from './watch.js';

export interface PositionSelection {
  readonly fundAccounts: readonly string[];
  /** Only positions of this symbol. Empty or missing: all. */
  readonly symbol?: string;
}

export interface AssetSelection {
  readonly fundAccounts: readonly string[];
}

type Held = Pick<Position, 'fundAccount' | 'securityAccount' | 'exchange' | 'securityId' | 'currentQty'>;

/** The identifier of a position in the map of a watch. A security can be held long and short at the same time. */
export function positionId(position: Held): string {
  return sideOf(placeOf(position), qtyOf(position) < 0);
}

function placeOf({ fundAccount, securityAccount, exchange, securityId }: Omit<Held, 'currentQty'>): string {
  return [fundAccount, securityAccount, exchange, securityId].join('|');
}

function sideOf(place: string, isShort: boolean): string {
  return `${place}|${isShort ? 'short' : 'long'}`;
}

export function watchPositions(
  terminal: Terminal,
  { fundAccounts, symbol = '' }: PositionSelection,
  listener?: WatchListener<Position>,
  options?: WatchOptions,
): Watch<Position> {
  const { calls } = terminal;
  const asked = { fundAccounts: [...fundAccounts], symbol };
  argumentList('getPositionList', '', asked);
  const isOfAccounts = accountsOf(asked.fundAccounts);
  let securityId: string | undefined; // of the symbol, once it is known

  async function load(callOptions: CallOptions): Promise<ReadonlyMap<string, Position>> {
    if (symbol !== '' && securityId === undefined) {
      const [detail] = (await calls.ask('getSymbolDetail', { symbols: [symbol] }, callOptions)) as SecurityDetail[];
      securityId = detail?.securityId ?? '';
    }
    const list = (await calls.ask('getPositionList', asked, callOptions)) as Position[];
    const held = list.filter((position) => isOfAccounts(position) && qtyOf(position) !== 0);
    return new Map(held.map((position) => [positionId(position), position]));
  }

  /** A position does not show its symbol, and its exchange is a word. So where it is new, only the list can tell. */
  function mayBeOfSymbol(position: Position): boolean {
    return !securityId || position.securityId === securityId;
  }

  function follow(stream: Stream<Position>, refetch: () => void): () => void {
    return terminal.on('on_positionUpdate', (position) => {
      if (!isOfAccounts(position)) return;
      const place = placeOf(position);
      const held = [sideOf(place, false), sideOf(place, true)].filter((id) => stream.items.has(id));
      const qty = qtyOf(position);
      if (Number.isNaN(qty) || (qty === 0 && held.length === 2))
        refetch(); // it does not say which of the two
      else if (qty === 0) held.forEach((id) => stream.drop(id));
      else if (symbol === '' || held.length > 0) stream.put(positionId(position), position);
      else if (mayBeOfSymbol(position)) refetch();
      stream.tell();
    });
  }

  return watchList(terminal, { name: 'watchPositions', load, follow }, listener, options);
}

export function watchAssets(
  terminal: Terminal,
  { fundAccounts }: AssetSelection,
  listener?: WatchListener<Asset>,
  options?: WatchOptions,
): Watch<Asset> {
  const asked = { fundAccounts: [...fundAccounts] };
  argumentList('getAsset', '', asked);
  const isOfAccounts = accountsOf(asked.fundAccounts);

  async function load(callOptions: CallOptions): Promise<ReadonlyMap<string, Asset>> {
    const list = (await terminal.calls.ask('getAsset', asked, callOptions)) as Asset[];
    return new Map(list.filter(isOfAccounts).map((asset) => [asset.fundAccount, asset]));
  }

  function follow(stream: Stream<Asset>, refetch: () => void): () => void {
    return terminal.on('on_AssetUpdate', (asset) => {
      if (!asset)
        refetch(); // some account has changed
      else if (isOfAccounts(asset)) {
        stream.put(asset.fundAccount, asset);
        stream.tell();
      }
    });
  }

  return watchList(terminal, { name: 'watchAssets', load, follow }, listener, options);
}

function accountsOf(fundAccounts: readonly string[]): (record: { readonly fundAccount: unknown }) => boolean {
  const wanted: ReadonlySet<unknown> = new Set(fundAccounts);
  return ({ fundAccount }) => wanted.has(fundAccount);
}

/** NaN when there is no value. */
function qtyOf({ currentQty }: Pick<Position, 'currentQty'>): number {
  return currentQty === null ? NaN : Number(currentQty);
}
