import type { Connection, Execution } from '@varnel/web-client';
import { useEffect, useMemo } from 'react';
import { cellColumn, valueOf } from '../cellColumns';
import { useLive, usePush } from '../live/hooks';
import { LiveRecords } from '../live/LiveRecords';
import { RecordTable, type Column } from '../RecordTable';
import { useAnswer } from '../useAnswer';
import { Outcome, Panel } from './Panel';

const shownAtMost = 100;

const columns = (
  [
    'dealTime',
    'securityId',
    'securityName',
    'side',
    'dealPrice',
    'dealQty',
    'fundAccount',
    'orderId',
    'execId',
  ] as const
).map(cellColumn) as readonly Column<Execution>[];

const idOf = ({ execId }: Execution) => valueOf(execId);

/** The latest executions, updated by pushes. */
export function DealsPanel({ sdk }: { sdk: Connection }) {
  const records = useMemo(() => new LiveRecords<Execution>(idOf, shownAtMost), []);
  const executions = useLive(records);
  const [listed, follow] = useAnswer<number>();

  const load = () =>
    follow(
      sdk.getExecutionList({ filter: {}, start: 0, count: shownAtMost }).then(({ totalSize, executionInfoList }) => {
        records.load(executionInfoList);
        return totalSize;
      }),
    );
  useEffect(load, [sdk, records]);
  usePush(sdk, 'on_orderLoaded', load);
  usePush(sdk, 'on_executionUpdate', (batch) => records.take(batch));

  return (
    <Panel title="最近成交" hint="Latest executions" className="fill" testId="deals">
      <Outcome of={listed}>
        {() => (
          <RecordTable
            label="最近成交 latest executions"
            columns={columns}
            items={executions}
            busy={listed.waiting}
            testId="deal-table"
            idOf={idOf}
          />
        )}
      </Outcome>
    </Panel>
  );
}
