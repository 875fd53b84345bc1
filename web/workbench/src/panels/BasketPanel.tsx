import type { Connection, OrderOutcome } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { readBasket, type BasketLine } from '../basket';
import { useCommand } from '../useCommand';
import { useFundAccounts } from '../useFundAccounts';
import { AccountSelect } from './AccountSelect';
import { CommandOutcome, PlacedOutcome, Unknown } from './CommandOutcome';
import { Confirm } from './Confirm';
import { Panel } from './Panel';

/** Several orders of an account in one call. */
export function BasketPanel({ sdk }: { sdk: Connection }) {
  const accounts = useFundAccounts(sdk);
  const [chosen, setChosen] = useState<string>();
  const [text, setText] = useState('');
  const [confirming, setConfirming] = useState<readonly BasketLine[]>();
  const [command, run, reset] = useCommand<OrderOutcome[]>();
  const fundAccount = chosen ?? accounts.data?.[0]?.fundAccount ?? '';
  const read = readBasket(text);
  const count = read.ok ? read.lines.length : 0;

  function edit(after: string) {
    setText(after);
    setConfirming(undefined);
    reset();
  }

  function askBack(event: FormEvent) {
    event.preventDefault();
    if (read.ok && count > 0 && command.phase !== 'busy') setConfirming(read.lines);
  }

  function place(lines: readonly BasketLine[]) {
    setConfirming(undefined);
    run(async () => {
      const symbols = [...new Set(lines.map(({ symbol }) => symbol))];
      const details = await sdk.getSymbolDetail({ symbols });
      const exchanges = new Map(details.map(({ exchange }, place) => [symbols[place]!, exchange]));
      const orders = lines.map((line) => ({ ...line, exchange: exchanges.get(line.symbol) ?? '' }));
      return sdk.insertOrderList({ fundAccount, orderTag: 'basket', orders });
    });
  }

  return (
    <Panel title="篮子" hint="Basket" testId="basket">
      <form className="fields" onSubmit={askBack}>
        <AccountSelect
          accounts={accounts}
          value={fundAccount}
          onChange={(account) => {
            setChosen(account);
            edit(text);
          }}
        />
        <label className="wide">
          委托 <small>a line each: symbol, side, quantity, price; no price: market</small>
          <textarea
            rows={3}
            value={text}
            placeholder="609801.SH,Buy,100,18.30"
            spellCheck={false}
            aria-invalid={!read.ok}
            onChange={(event) => edit(event.target.value)}
          />
        </label>
        <button type="submit" disabled={count === 0 || confirming !== undefined || command.phase === 'busy'}>
          {command.phase === 'busy' ? '发送中…' : `发送篮子 Place ${count}`}
        </button>
        <p className="problem" role="status">
          {read.ok ? '' : read.reason}
        </p>
      </form>
      {confirming && (
        <Confirm
          question={`${fundAccount} 篮子 ${confirming.length} 笔 orders`}
          onYes={() => place(confirming)}
          onNo={() => setConfirming(undefined)}
        />
      )}
      <div className="outcome" data-testid="basket-outcome">
        <CommandOutcome command={command}>{(orders) => <Outcomes orders={orders} />}</CommandOutcome>
      </div>
    </Panel>
  );
}

function Outcomes({ orders }: { orders: readonly OrderOutcome[] }) {
  if (orders.some(({ outcome }) => outcome === 'unknown')) return <Unknown />;
  const refused = orders.filter(({ outcome }) => outcome !== 'accepted');
  return (
    <>
      <p>
        已受理 {orders.length - refused.length}，被拒 {refused.length} <small>accepted, refused</small>
      </p>
      {refused.length > 0 && (
        <ul className="reasons">
          {refused.slice(0, 20).map((order, place) => (
            <li key={place}>
              {order.outcome === 'refused' && order.order?.symbol}
              <PlacedOutcome order={order} />
            </li>
          ))}
        </ul>
      )}
    </>
  );
}
