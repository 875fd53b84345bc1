import type { Execution } from '@varnel/web-client';
import { useMemo } from 'react';
import type { Watched } from '../live/useWatch';
import { executionIdOf } from '../records';
import { cellColumn } from '../table/cellColumn';
import { DataTable } from '../table/DataTable';
import type { Column } from '../table/types';
import type { FieldKey } from '../texts';
import { useTexts } from '../texts/useTexts';
import { StreamState } from './StreamState';

const shown = [
  'dealTime',
  'securityId',
  'securityName',
  'side',
  'dealPrice',
  'dealQty',
  'fundAccount',
  'orderId',
  'execId',
] as const satisfies readonly FieldKey[];
const extra = [
  'sideUnion',
  'dealAmount',
  'fundAccountName',
  'exchangeOrderId',
  'traderName',
  'orderSource',
  'instanceID',
] as const satisfies readonly FieldKey[];

/** The latest executions. */
export function DealsTable({ executions }: { executions: Watched<Execution> }) {
  const t = useTexts();
  const columns = useMemo<readonly Column<Execution>[]>(
    () => [
      ...shown.map((key) => cellColumn<Execution>(key, t)),
      ...extra.map((key) => ({ ...cellColumn<Execution>(key, t), isExtra: true })),
    ],
    [t],
  );
  return (
    <StreamState of={executions}>
      <DataTable
        name="deals"
        label={t.latestExecutions}
        columns={columns}
        items={executions.items}
        idOf={executionIdOf}
        testId="deal-table"
      />
    </StreamState>
  );
}
