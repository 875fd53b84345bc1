import { entrustKeys, executionKeys, type Connection, type OrderFilter } from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import { cellColumn, type CellRow } from '../cellColumns';
import { commaParts } from '../freeCall';
import { usePush, useRefetch } from '../live/hooks';
import { statusNames } from '../orders';
import { Pager } from '../Pager';
import { RecordTable, type Column } from '../RecordTable';
import { useAnswer } from '../useAnswer';
import { useFundAccounts } from '../useFundAccounts';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

type Kind = 'orders' | 'executions';

const kinds: Record<Kind, { name: string; hint: string; columns: readonly Column<CellRow>[] }> = {
  orders: { name: '委托', hint: 'Orders', columns: entrustKeys.map(cellColumn) },
  executions: { name: '成交', hint: 'Executions', columns: executionKeys.map(cellColumn) },
};

const counts = [20, 50, 100];

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

interface Shown extends Query {
  total: number;
  rows: readonly CellRow[];
}

async function fetchPage(sdk: Connection, query: Query): Promise<Shown> {
  if (query.kind === 'orders') {
    const { totalSize, entrustInfoList } = await sdk.getEntrustList(query);
    return { ...query, total: totalSize, rows: entrustInfoList };
  }
  const { totalSize, executionInfoList } = await sdk.getExecutionList(query);
  return { ...query, total: totalSize, rows: executionInfoList };
}

/** The day's orders or executions, a page at a time. */
export function OrdersView({ sdk }: { sdk: Connection }) {
  const accounts = useFundAccounts(sdk);
  const [traders, followTraders] = useAnswer<string[]>();
  const [conditions, setConditions] = useState(anything);
  const [query, setQuery] = useState<Query>({ kind: 'orders', filter: {}, start: 0, count: counts[0]! });
  const [shown, follow] = useAnswer<Shown>();

  useEffect(() => followTraders(sdk.getTraderList()), [sdk, followTraders]);
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
  const field = (name: keyof typeof anything, text: string, hint: string) => (
    <label>
      {text} <small>{hint}</small>
      <input
        value={conditions[name]}
        placeholder="全部 any"
        spellCheck={false}
        onChange={(event) => set(name)(event.target.value)}
      />
    </label>
  );
  const choice = (name: keyof typeof anything, text: string, hint: string, options: [string, string][]) => (
    <label>
      {text} <small>{hint}</small>
      <select value={conditions[name]} onChange={(event) => set(name)(event.target.value)}>
        <option value="">全部 all</option>
        {options.map(([value, shownAs]) => (
          <option key={value} value={value}>
            {shownAs}
          </option>
        ))}
      </select>
    </label>
  );

  const tools = (
    <div className="tools" role="radiogroup" aria-label="委托或成交 orders or executions">
      {(Object.keys(kinds) as Kind[]).map((kind) => (
        <label key={kind} className="inline">
          <input
            type="radio"
            name="kind"
            checked={query.kind === kind}
            onChange={() => setQuery({ ...query, kind, start: 0 })}
          />
          {kinds[kind].name} <small>{kinds[kind].hint}</small>
        </label>
      ))}
    </div>
  );

  return (
    <Panel title="委托与成交" hint="Orders and executions" tools={tools} className="fill" testId="orders">
      <form className="fields" onSubmit={ask}>
        <AccountSelect
          accounts={accounts}
          all="全部 all"
          value={conditions.fundAccount}
          onChange={set('fundAccount')}
        />
        {field('symbol', '证券标识', 'symbols')}
        {choice(
          'trader',
          '交易员',
          'trader',
          (traders.data ?? []).map((trader) => [trader, trader]),
        )}
        {choice('orderStatus', '状态', 'status', Object.entries(statusNames))}
        {field('orderSource', '来源', 'source')}
        {field('instanceID', '策略实例', 'instance')}
        <label>
          每页 <small>rows</small>
          <select
            value={query.count}
            onChange={(event) => setQuery({ ...query, count: Number(event.target.value), start: 0 })}
          >
            {counts.map((count) => (
              <option key={count}>{count}</option>
            ))}
          </select>
        </label>
        <button type="submit">查询 Ask</button>
      </form>
      <Outcome of={shown}>
        {({ kind, start, count, total, rows }) => (
          <>
            <Pager
              start={start}
              size={rows.length}
              total={total}
              count={count}
              onTurn={(to) => setQuery({ ...query, start: to })}
            />
            <RecordTable
              label={`${kinds[kind].name} ${kinds[kind].hint}`}
              columns={kinds[kind].columns}
              items={rows}
              busy={shown.waiting}
              testId="order-table"
            />
          </>
        )}
      </Outcome>
    </Panel>
  );
}
