import { positionId, type Asset, type Connection, type Position } from '@varnel/web-client';
import { useCallback, useMemo, useState, type FormEvent } from 'react';
import { isClosable } from '../closing';
import { useFormats } from '../formats';
import { assetColumns, finder, positionColumns, symbolsOf } from '../holdings';
import { useFreshFigures } from '../live/useFreshFigures';
import { useWatch, type StartWatch } from '../live/useWatch';
import { DataTable } from '../table/DataTable';
import type { Column } from '../table/types';
import { useTexts } from '../texts/useTexts';
import { Split } from '../ui/Split';
import { useFundAccounts } from '../useFundAccounts';
import { useSame } from '../useSame';
import { useSecurities } from '../useSecurities';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  /** Prepares an order that closes the position. Without it there is no button for that. */
  onClose?: (position: Position) => void;
}

const idOfAsset = ({ fundAccount }: Asset) => fundAccount;

/** Assets and positions of the accounts. Profit and loss follow the prices. */
export function HoldingsView({ sdk, onClose }: Props) {
  const t = useTexts();
  const formats = useFormats();
  const accounts = useFundAccounts(sdk);
  const [query, setQuery] = useState({ fundAccount: '', symbol: '' });
  const [asked, setAsked] = useState(query);
  const all = useMemo(() => accounts.data?.map(({ fundAccount }) => fundAccount), [accounts.data]);
  const fundAccounts = useMemo(() => (asked.fundAccount === '' ? all : [asked.fundAccount]), [asked.fundAccount, all]);
  const { symbol } = asked;

  const startAssets = useCallback<StartWatch<Asset>>(
    (listener) => sdk.watchAssets({ fundAccounts: fundAccounts! }, listener),
    [sdk, fundAccounts],
  );
  const startPositions = useCallback<StartWatch<Position>>(
    (listener) => sdk.watchPositions({ fundAccounts: fundAccounts!, symbol }, listener),
    [sdk, fundAccounts, symbol],
  );
  const assets = useWatch(fundAccounts && startAssets);
  const positions = useWatch(fundAccounts && startPositions);

  const securities = useSecurities(sdk);
  const find = useMemo(() => finder(securities.data ?? []), [securities.data]);
  const held = useSame(symbolsOf(positions.items, find));
  const freshPositions = useFreshFigures(positions.items, positionId, held, () =>
    sdk.getPositionList({ fundAccounts: fundAccounts!, symbol }),
  );
  const freshAssets = useFreshFigures(assets.items, idOfAsset, held, () =>
    sdk.getAsset({ fundAccounts: fundAccounts! }),
  );

  const shownAssets = useMemo(() => assetColumns(t, formats), [t, formats]);
  const shownPositions = useMemo<readonly Column<Position>[]>(() => {
    const columns = positionColumns(t, formats, find);
    if (!onClose) return columns;
    const write = (position: Position) =>
      isClosable(position) && (
        <button
          type="button"
          className="link"
          aria-label={t.closePositionOf(String(position.securityName))}
          onClick={() => onClose(position)}
        >
          {t.closePosition}
        </button>
      );
    return [...columns, { key: 'actions', title: t.actions, kind: 'control', width: 8, value: () => null, write }];
  }, [t, formats, find, onClose]);

  function submit(event: FormEvent) {
    event.preventDefault();
    setAsked({ ...query });
  }

  const choice = (
    <form className="tools" onSubmit={submit}>
      <AccountSelect
        accounts={accounts}
        all={t.all}
        isInline
        value={query.fundAccount}
        onChange={(fundAccount) => setQuery({ ...query, fundAccount })}
      />
      <label className="inline">
        {t.symbol}
        <input
          value={query.symbol}
          size={10}
          placeholder={t.any}
          spellCheck={false}
          onChange={(event) => setQuery({ ...query, symbol: event.target.value.trim() })}
        />
      </label>
      <button type="submit">{t.ask}</button>
    </form>
  );
  return (
    <Split
      id="holdings"
      isVertical
      parts={[
        {
          id: 'holdings-assets',
          size: 30,
          min: 110,
          content: (
            <Panel title={t.assets} className="assets" testId="assets">
              <Outcome of={{ data: assets.isReady || undefined, error: accounts.error ?? assets.error, waiting: true }}>
                {() => (
                  <DataTable
                    name="assets"
                    label={t.assets}
                    columns={shownAssets}
                    items={freshAssets}
                    idOf={idOfAsset}
                    testId="asset-table"
                  />
                )}
              </Outcome>
            </Panel>
          ),
        },
        {
          id: 'holdings-positions',
          size: 70,
          min: 200,
          content: (
            <Panel title={t.positions} className="fill" testId="positions">
              <Outcome of={{ data: positions.isReady || undefined, error: positions.error, waiting: true }}>
                {() => (
                  <DataTable
                    name="positions"
                    label={t.positions}
                    columns={shownPositions}
                    items={freshPositions}
                    idOf={positionId}
                    testId="position-table"
                    tools={choice}
                  />
                )}
              </Outcome>
            </Panel>
          ),
        },
      ]}
    />
  );
}
