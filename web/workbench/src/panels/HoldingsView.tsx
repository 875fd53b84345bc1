import { assetKeys, positionKeys, type Asset, type Connection, type Position } from '@varnel/web-client';
import { useMemo, useState, type FormEvent } from 'react';
import { numberOf, toneOf, useFormats, type Formats } from '../formats';
import { usePush, useRefetch } from '../live/hooks';
import { DataTable } from '../table/DataTable';
import type { Column } from '../table/types';
import type { Texts } from '../texts';
import { useTexts } from '../texts/useTexts';
import { useAnswer } from '../useAnswer';
import { useFundAccounts } from '../useFundAccounts';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';
import { useEffect } from 'react';
import type { FundAccount } from '@varnel/web-client';

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
const allPositionKeys = [...positionKeys, 'stockInterest'] as const;

function plain(value: unknown): string | number | null {
  return typeof value === 'string' || typeof value === 'number' ? value : value == null ? null : String(value);
}

function positionColumns(t: Texts, formats: Formats): readonly Column<Position>[] {
  return allPositionKeys.map((key) => ({
    key,
    title: t.field(key),
    kind: names.has(key) ? 'text' : 'number',
    value: (position) => plain(position[key]),
    write: (position) => (rates.has(key) ? formats.rate : formats.value)(position[key]),
    ...(profits.has(key) && { tone: (position: Position) => toneOf(position[key]) }),
  }));
}

function assetColumns(t: Texts, formats: Formats): readonly Column<Asset>[] {
  return assetKeys.map((key) => ({
    key,
    title: t.field(key),
    kind: names.has(key) ? 'text' : 'number',
    value: (asset) => plain(names.has(key) ? asset[key] : numberOf(asset[key])),
    write: (asset) => (names.has(key) ? asset[key] : formats.money(asset[key])),
    ...(profits.has(key) && { tone: (asset: Asset) => toneOf(asset[key]) }),
  }));
}

const idOfAsset = ({ fundAccount }: Asset) => fundAccount;
const idOfPosition = ({ fundAccount, securityAccount, exchange, securityId, currentQty }: Position) =>
  [fundAccount, securityAccount, exchange, securityId, Number(currentQty) < 0 ? 'short' : 'long'].join(' ');

/** Assets and positions of the accounts. */
export function HoldingsView({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const formats = useFormats();
  const accounts = useFundAccounts(sdk);
  const [query, setQuery] = useState({ fundAccount: '', symbol: '' });
  const [assets, followAssets] = useAnswer<Asset[]>();
  const [positions, followPositions] = useAnswer<Position[]>();
  const [asked, setAsked] = useState(query);

  async function ask(known: readonly FundAccount[], { fundAccount, symbol }: typeof query) {
    const all = known.map((each) => each.fundAccount);
    if (all.length === 0) return;
    const fundAccounts = fundAccount === '' ? all : [fundAccount];
    const answers = [sdk.getAsset({ fundAccounts }), sdk.getPositionList({ fundAccounts, symbol })] as const;
    followAssets(answers[0]);
    followPositions(answers[1]);
    await Promise.allSettled(answers);
  }

  useEffect(() => void ask(accounts.data ?? [], asked), [accounts.data, asked]);

  // A closed position leaves the list, and prices move, so ask for the whole list again.
  const refetch = useRefetch(() => ask(accounts.data ?? [], asked));
  usePush(sdk, 'on_AssetUpdate', refetch);
  usePush(sdk, 'on_positionUpdate', refetch);

  const shownAssets = useMemo(() => assetColumns(t, formats), [t, formats]);
  const shownPositions = useMemo(() => positionColumns(t, formats), [t, formats]);

  function submit(event: FormEvent) {
    event.preventDefault();
    setAsked({ ...query });
  }

  return (
    <>
      <Panel title={t.assets} className="assets" testId="assets">
        <form className="fields" onSubmit={submit}>
          <AccountSelect
            accounts={accounts}
            all={t.all}
            value={query.fundAccount}
            onChange={(fundAccount) => setQuery({ ...query, fundAccount })}
          />
          <label>
            {t.symbol}
            <input
              value={query.symbol}
              placeholder={t.any}
              spellCheck={false}
              onChange={(event) => setQuery({ ...query, symbol: event.target.value.trim() })}
            />
          </label>
          <button type="submit">{t.ask}</button>
        </form>
        <Outcome of={assets}>
          {(list) => (
            <DataTable
              name="assets"
              label={t.assets}
              columns={shownAssets}
              items={list}
              idOf={idOfAsset}
              busy={assets.waiting}
              testId="asset-table"
            />
          )}
        </Outcome>
      </Panel>
      <Panel title={t.positions} className="fill" testId="positions">
        <Outcome of={positions}>
          {(list) => (
            <DataTable
              name="positions"
              label={t.positions}
              columns={shownPositions}
              items={list}
              idOf={idOfPosition}
              busy={positions.waiting}
              testId="position-table"
            />
          )}
        </Outcome>
      </Panel>
    </>
  );
}
