import {
  assetKeys,
  positionKeys,
  type Asset,
  type Connection,
  type FundAccount,
  type Position,
} from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import { usePush, useRefetch } from '../live/hooks';
import { RecordTable, type Column } from '../RecordTable';
import { useAnswer } from '../useAnswer';
import { useFundAccounts } from '../useFundAccounts';
import { rate, toneOf, written } from '../values';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

const rates: ReadonlySet<string> = new Set(['riseDownRate', 'profitRate']);
const profits: ReadonlySet<string> = new Set([
  'profit',
  'profitRate',
  'riseDownRate',
  'floatingProfit',
  'closePosProfitDate',
  'closePosProfitTrade',
]);

const positionColumns = [...positionKeys, 'stockInterest' as const].map((key): Column<Position> => ({
  key,
  write: (position) => (rates.has(key) ? rate : written)(position[key]),
  isFigure: (position) => typeof position[key] === 'number',
  ...(profits.has(key) && { tone: (position) => toneOf(position[key]) }),
}));

const assetColumns = assetKeys.map((key): Column<Asset> => ({
  key,
  write: (asset) => asset[key],
  isFigure: () => key !== 'fundAccount' && key !== 'fundAccountName',
  ...(profits.has(key) && { tone: (asset) => toneOf(asset[key]) }),
}));

/** Assets and positions of the accounts. */
export function HoldingsView({ sdk }: { sdk: Connection }) {
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

  function submit(event: FormEvent) {
    event.preventDefault();
    setAsked({ ...query });
  }

  return (
    <>
      <Panel title="资产" hint="Assets" className="assets" testId="assets">
        <form className="fields" onSubmit={submit}>
          <AccountSelect
            accounts={accounts}
            all="全部 all"
            value={query.fundAccount}
            onChange={(fundAccount) => setQuery({ ...query, fundAccount })}
          />
          <label>
            证券标识 <small>symbol</small>
            <input
              value={query.symbol}
              placeholder="全部 any"
              spellCheck={false}
              onChange={(event) => setQuery({ ...query, symbol: event.target.value.trim() })}
            />
          </label>
          <button type="submit">查询 Ask</button>
        </form>
        <Outcome of={assets}>
          {(list) => (
            <RecordTable
              label="资产 assets"
              columns={assetColumns}
              items={list}
              busy={assets.waiting}
              testId="asset-table"
            />
          )}
        </Outcome>
      </Panel>
      <Panel title="持仓" hint="Positions" className="fill" testId="positions">
        <Outcome of={positions}>
          {(list) => (
            <>
              <p className="quiet">
                {list.length} 条 <small>positions</small>
              </p>
              <RecordTable
                label="持仓 positions"
                columns={positionColumns}
                items={list}
                busy={positions.waiting}
                testId="position-table"
              />
            </>
          )}
        </Outcome>
      </Panel>
    </>
  );
}
