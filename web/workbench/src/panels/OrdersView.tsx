import {
  entrustKeys,
  executionKeys,
  orderStatuses,
  type Connection,
  type Entrust,
  type Execution,
  type OrderFilter,
} from '@varnel/web-client';
import { useEffect, useMemo, useState, type FormEvent } from 'react';
import { commaParts } from '../freeCall';
import { usePush, useRefetch } from '../live/hooks';
import { executionIdOf, orderIdOf } from '../records';
import { Pager } from '../Pager';
import { cellColumn } from '../table/cellColumn';
import { DataTable } from '../table/DataTable';
import { useTexts } from '../texts/useTexts';
import { useAnswer } from '../useAnswer';
import { useAsk } from '../useAsk';
import { useFundAccounts } from '../useFundAccounts';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

type Kind = 'orders' | 'executions';

const counts = [100, 500, 2000];

const anything = { fundAccount: '', symbol: '', trader: '', orderStatus: '', orderSource: '', instanceID: '' };

/** Holds only filled fields, because an empty text would be a condition too. */
function filterOf(conditions: typeof anything): OrderFilter {
  const given = Object.entries(conditions).filter(([, text]) => text !== '');
  return Object.fromEntries(given.map(([key, text]) => [key, commaParts(text)]));
}

interface Query {
  kind: Kind;
  filter: OrderFilter;
  start: number;
  count: number;
}

type Shown = Query & { total: number } & (
    { kind: 'orders'; rows: readonly Entrust[] } | { kind: 'executions'; rows: readonly Execution[] }
  );

async function fetchPage(sdk: Connection, query: Query): Promise<Shown> {
  if (query.kind === 'orders') {
    const { totalSize, entrustInfoList } = await sdk.getEntrustList(query);
    return { ...query, kind: 'orders', total: totalSize, rows: entrustInfoList };
  }
  const { totalSize, executionInfoList } = await sdk.getExecutionList(query);
  return { ...query, kind: 'executions', total: totalSize, rows: executionInfoList };
}

/** The day's orders or executions, a page at a time. */
export function OrdersView({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const accounts = useFundAccounts(sdk);
  const traders = useAsk(['traders'], () => sdk.getTraderList());
  const [conditions, setConditions] = useState(anything);
  const [query, setQuery] = useState<Query>({ kind: 'orders', filter: {}, start: 0, count: counts[0]! });
  const [shown, follow] = useAnswer<Shown>();

  useEffect(() => follow(fetchPage(sdk, query)), [sdk, follow, query]);

  // A changed record may belong to another page or no longer match the conditions. Only the terminal knows.
  const refetch = useRefetch(() => {
    const page = fetchPage(sdk, query);
    follow(page);
    return page;
  });
  usePush(sdk, 'on_entrustUpdate', () => query.kind === 'orders' && refetch());
  usePush(sdk, 'on_executionUpdate', () => query.kind === 'executions' && refetch());
  usePush(sdk, 'on_orderLoaded', refetch);

  function ask(event: FormEvent) {
    event.preventDefault();
    setQuery({ ...query, filter: filterOf(conditions), start: 0 });
  }

  const set = (name: keyof typeof anything) => (value: string) => setConditions({ ...conditions, [name]: value });
  const field = (name: keyof typeof anything, text: string) => (
    <label>
      {text}
      <input
        name={name}
        value={conditions[name]}
        placeholder={t.any}
        spellCheck={false}
        onChange={(event) => set(name)(event.target.value)}
      />
    </label>
  );
  const choice = (name: keyof typeof anything, text: string, options: readonly [string, string][]) => (
    <label>
      {text}
      <select name={name} value={conditions[name]} onChange={(event) => set(name)(event.target.value)}>
        <option value="">{t.all}</option>
        {options.map(([value, shownAs]) => (
          <option key={value} value={value}>
            {shownAs}
          </option>
        ))}
      </select>
    </label>
  );
  const kinds: [Kind, string][] = [
    ['orders', t.ordersOnly],
    ['executions', t.executions],
  ];

  const tools = (
    <div className="tools" role="radiogroup" aria-label={t.orders}>
      {kinds.map(([kind, name]) => (
        <label key={kind} className="inline">
          <input
            type="radio"
            name="kind"
            value={kind}
            checked={query.kind === kind}
            onChange={() => setQuery({ ...query, kind, start: 0 })}
          />
          {name}
        </label>
      ))}
    </div>
  );

  return (
    <Panel title={t.orders} tools={tools} className="fill" testId="orders">
      <form className="fields" onSubmit={ask}>
        <AccountSelect accounts={accounts} all={t.all} value={conditions.fundAccount} onChange={set('fundAccount')} />
        {field('symbol', t.symbol)}
        {choice(
          'trader',
          t.trader,
          (traders.data ?? []).map((trader) => [trader, trader]),
        )}
        {choice(
          'orderStatus',
          t.field('status'),
          Object.values(orderStatuses).map((status) => [status, t.code('status', status)]),
        )}
        {field('orderSource', t.source)}
        {field('instanceID', t.instance)}
        <label>
          {t.rowsPerPage}
          <select
            name="count"
            value={query.count}
            onChange={(event) => setQuery({ ...query, count: Number(event.target.value), start: 0 })}
          >
            {counts.map((count) => (
              <option key={count}>{count}</option>
            ))}
          </select>
        </label>
        <button type="submit">{t.ask}</button>
      </form>
      <Outcome of={shown}>
        {(page) => (
          <>
            <Pager
              start={page.start}
              size={page.rows.length}
              total={page.total}
              count={page.count}
              onTurn={(to) => setQuery({ ...query, start: to })}
            />
            {page.kind === 'orders' ? (
              <OrderRows rows={page.rows} busy={shown.waiting} />
            ) : (
              <ExecutionRows rows={page.rows} busy={shown.waiting} />
            )}
          </>
        )}
      </Outcome>
    </Panel>
  );
}

function OrderRows({ rows, busy }: { rows: readonly Entrust[]; busy: boolean }) {
  const t = useTexts();
  const columns = useMemo(() => entrustKeys.map((key) => cellColumn<Entrust>(key, t)), [t]);
  return (
    <DataTable
      name="orders"
      label={t.ordersOnly}
      columns={columns}
      items={rows}
      idOf={orderIdOf}
      busy={busy}
      testId="order-table"
    />
  );
}

function ExecutionRows({ rows, busy }: { rows: readonly Execution[]; busy: boolean }) {
  const t = useTexts();
  const columns = useMemo(() => executionKeys.map((key) => cellColumn<Execution>(key, t)), [t]);
  return (
    <DataTable
      name="executions"
      label={t.executions}
      columns={columns}
      items={rows}
      idOf={executionIdOf}
      busy={busy}
      testId="order-table"
    />
  );
}
