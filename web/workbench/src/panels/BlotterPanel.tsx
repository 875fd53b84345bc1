import type { Connection, Entrust } from '@varnel/web-client';
import { createContext, useCallback, useContext, useMemo, useState } from 'react';
import { cancelOrders, type Cancels } from '../cancelling';
import type { Watched } from '../live/useWatch';
import { canBeCancelled, orderIdOf } from '../records';
import { cellColumn } from '../table/cellColumn';
import { DataTable } from '../table/DataTable';
import type { Column } from '../table/types';
import type { FieldKey } from '../texts';
import { useTexts } from '../texts/useTexts';
import { useCommand } from '../useCommand';
import { CancelDialog } from './CancelDialog';
import { CancelOutcome } from './CancelOutcome';
import { CommandOutcome } from './CommandOutcome';
import { Panel } from './Panel';
import { StreamState } from './StreamState';

interface Props {
  sdk: Connection;
  /** All open orders, however many. */
  open: Watched<Entrust>;
  /** The latest orders of all. */
  latest: Watched<Entrust>;
  /** Orders that the user is asked about before they are cancelled. */
  asked: readonly string[] | undefined;
  onAsk: (orderIds: readonly string[] | undefined) => void;
}

const shown = [
  'entrustTime',
  'securityId',
  'securityName',
  'side',
  'status',
  'price',
  'entrustQty',
  'dealQty',
  'leaveQty',
  'fundAccount',
  'remark',
  'orderSource',
  'orderId',
] as const satisfies readonly FieldKey[];
const extra = [
  'sideUnion',
  'priceType',
  'dealPrice',
  'entrustAmount',
  'dealAmount',
  'fundAccountName',
  'exchangeOrderId',
  'traderName',
  'instanceID',
] as const satisfies readonly FieldKey[];

interface Picks {
  picked: ReadonlySet<string>;
  isBusy: boolean;
  pick: (id: string, on: boolean) => void;
  cancel: (id: string) => void;
}

/** The cells of a row take the picks from here, so that the columns stay the same when they change. */
const PicksContext = createContext<Picks>({ picked: new Set(), isBusy: false, pick: () => {}, cancel: () => {} });

/** All open orders, or the latest of all. Open ones can be cancelled one by one, picked, or all together. */
export function BlotterPanel({ sdk, open, latest, asked, onAsk }: Props) {
  const t = useTexts();
  const [isOpenOnly, setOpenOnly] = useState(true);
  const [picked, setPicked] = useState<ReadonlySet<string>>(new Set());
  const [command, run] = useCommand<Cancels>();
  const isBusy = command.phase === 'busy';

  const openById = useMemo(
    () => new Map(open.items.filter(canBeCancelled).map((order) => [orderIdOf(order), order])),
    [open.items],
  );
  const cancellable = useMemo(() => [...picked].filter((id) => openById.has(id)), [picked, openById]);

  const cancel = useCallback(
    (orderIds: readonly string[]) => {
      run(() => cancelOrders(sdk, orderIds));
      const gone = new Set(orderIds);
      setPicked((before) => new Set([...before].filter((id) => !gone.has(id))));
    },
    [run, sdk],
  );

  const pick = useCallback(
    (id: string, on: boolean) =>
      setPicked((before) => {
        const after = new Set(before);
        if (on) after.add(id);
        else after.delete(id);
        return after;
      }),
    [],
  );

  const columns = useMemo<readonly Column<Entrust>[]>(
    () => [
      {
        key: 'cancel',
        title: t.cancelShort,
        kind: 'control',
        width: 9,
        value: () => '',
        write: (order) => canBeCancelled(order) && <OrderControls id={orderIdOf(order)} />,
      },
      ...shown.map((key) => cellColumn<Entrust>(key, t)),
      ...extra.map((key) => ({ ...cellColumn<Entrust>(key, t), isExtra: true })),
    ],
    [t],
  );

  const picks = useMemo<Picks>(
    () => ({ picked, isBusy, pick, cancel: (id) => cancel([id]) }),
    [picked, isBusy, pick, cancel],
  );
  const askedOrders = useMemo(() => asked?.flatMap((id) => openById.get(id) ?? []), [asked, openById]);
  const source = isOpenOnly ? open : latest;
  const lists = [
    { on: true, title: t.openOrders },
    { on: false, title: t.latestOrders },
  ];
  const tools = (
    <div className="tools">
      <span role="radiogroup" aria-label={t.blotter} className="inline">
        {lists.map(({ on, title }) => (
          <label key={title} className="inline">
            <input type="radio" name="blotter-list" checked={isOpenOnly === on} onChange={() => setOpenOnly(on)} />
            {title}
          </label>
        ))}
      </span>
      <button
        type="button"
        data-testid="cancel-picked"
        disabled={isBusy || cancellable.length === 0}
        onClick={() => onAsk(cancellable)}
      >
        {t.cancelPicked(cancellable.length)}
      </button>
      <button
        type="button"
        data-testid="cancel-all"
        disabled={isBusy || openById.size === 0}
        onClick={() => onAsk([...openById.keys()])}
      >
        {t.cancelAll(openById.size)}
      </button>
    </div>
  );
  return (
    <Panel title={t.blotter} tools={tools} className="fill" testId="blotter">
      <div className="outcome" data-testid="cancel-outcome">
        <CommandOutcome command={command}>{(cancels) => <CancelOutcome cancels={cancels} />}</CommandOutcome>
      </div>
      <StreamState of={source}>
        <PicksContext value={picks}>
          <DataTable
            name="blotter"
            label={isOpenOnly ? t.openOrders : t.latestOrders}
            columns={columns}
            items={source.items}
            idOf={orderIdOf}
            testId="blotter-table"
            empty={isOpenOnly ? t.noOpenOrders : undefined}
          />
        </PicksContext>
      </StreamState>
      <CancelDialog
        // Orders that were filled or cancelled meanwhile are left out.
        orders={askedOrders}
        onYes={(orderIds) => {
          onAsk(undefined);
          cancel(orderIds);
        }}
        onNo={() => onAsk(undefined)}
      />
    </Panel>
  );
}

function OrderControls({ id }: { id: string }) {
  const t = useTexts();
  const { picked, isBusy, pick, cancel } = useContext(PicksContext);
  return (
    <span className="inline">
      <input
        type="checkbox"
        aria-label={t.pick(id)}
        checked={picked.has(id)}
        onChange={(event) => pick(id, event.target.checked)}
      />
      <button
        type="button"
        className="link"
        aria-label={t.cancelOrder(id)}
        disabled={isBusy}
        onClick={() => cancel(id)}
      >
        {t.cancelShort}
      </button>
    </span>
  );
}
