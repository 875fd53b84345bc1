import { orderStatuses, type CancelledOrder, type Connection, type Entrust } from '@varnel/web-client';
import { useEffect, useMemo, useState } from 'react';
import { cellColumn, valueOf } from '../cellColumns';
import { useLive, usePush } from '../live/hooks';
import { LiveRecords } from '../live/LiveRecords';
import { RecordTable, type Column } from '../RecordTable';
import { useCommand } from '../useCommand';
import { useAnswer } from '../useAnswer';
import { CommandOutcome } from './CommandOutcome';
import { Outcome, Panel } from './Panel';

const shownAtMost = 200;

const columns = (
  [
    'entrustTime',
    'securityId',
    'securityName',
    'side',
    'status',
    'price',
    'entrustQty',
    'dealQty',
    'remark',
    'fundAccount',
    'orderSource',
    'orderId',
  ] as const
).map(cellColumn) as readonly Column<Entrust>[];

const open: ReadonlySet<string> = new Set([orderStatuses.reported, orderStatuses.partlyFilled]);
const idOf = ({ orderId }: Entrust) => valueOf(orderId);
const isOpen = ({ status }: Entrust) => open.has(valueOf(status));

/** The latest orders, updated by pushes. Open orders can be cancelled. */
export function BlotterPanel({ sdk }: { sdk: Connection }) {
  const records = useMemo(() => new LiveRecords<Entrust>(idOf, shownAtMost), []);
  const orders = useLive(records);
  const [listed, follow] = useAnswer<number>();
  const [openOnly, setOpenOnly] = useState(false);
  const [picked, setPicked] = useState<ReadonlySet<string>>(new Set());
  const [command, run] = useCommand<CancelledOrder[]>();

  const load = () =>
    follow(
      sdk.getEntrustList({ filter: {}, start: 0, count: shownAtMost }).then(({ totalSize, entrustInfoList }) => {
        records.load(entrustInfoList);
        return totalSize;
      }),
    );
  useEffect(load, [sdk, records]);
  usePush(sdk, 'on_orderLoaded', load);
  usePush(sdk, 'on_entrustUpdate', (batch) => records.take(batch));

  const shown = openOnly ? orders.filter(isOpen) : orders;
  const cancellable = orders.filter((order) => isOpen(order) && picked.has(idOf(order))).map(idOf);
  const busy = command.phase === 'busy';

  function cancel(orderIds: readonly string[]) {
    run(() => sdk.cancelOrders({ orderIds }));
    setPicked(new Set());
  }

  function pick(id: string, on: boolean) {
    const after = new Set(picked);
    if (on) after.add(id);
    else after.delete(id);
    setPicked(after);
  }

  const tools = (
    <div className="tools">
      <label className="inline">
        <input type="checkbox" checked={openOnly} onChange={(event) => setOpenOnly(event.target.checked)} />
        只看可撤 <small>open</small>
      </label>
      <button type="button" disabled={busy || cancellable.length === 0} onClick={() => cancel(cancellable)}>
        撤所选 Cancel {cancellable.length}
      </button>
    </div>
  );
  return (
    <Panel title="最近委托" hint="Latest orders" tools={tools} className="fill" testId="blotter">
      <div className="outcome" data-testid="cancel-outcome">
        <CommandOutcome command={command}>
          {(answers) => {
            const failed = answers.filter(({ code }) => code !== '0');
            return failed.length === 0 ? (
              <p className="quiet">已撤 {answers.length} 笔 cancelled</p>
            ) : (
              <p className="problem" role="alert">
                {failed.map(({ orderId, msg }) => `${String(orderId)} ${String(msg)}`).join('；')}
              </p>
            );
          }}
        </CommandOutcome>
      </div>
      <Outcome of={listed}>
        {() => (
          <RecordTable
            label="最近委托 latest orders"
            columns={columns}
            items={shown}
            busy={listed.waiting}
            testId="blotter-table"
            idOf={idOf}
            lead={{
              title: <span aria-label="撤单 cancel">撤单</span>,
              write: (order) =>
                isOpen(order) && (
                  <span className="inline">
                    <input
                      type="checkbox"
                      aria-label={`选择 pick ${idOf(order)}`}
                      checked={picked.has(idOf(order))}
                      onChange={(event) => pick(idOf(order), event.target.checked)}
                    />
                    <button
                      type="button"
                      className="link"
                      aria-label={`撤单 cancel ${idOf(order)}`}
                      disabled={busy}
                      onClick={() => cancel([idOf(order)])}
                    >
                      撤
                    </button>
                  </span>
                ),
            }}
          />
        )}
      </Outcome>
    </Panel>
  );
}
