import {
  priceTypes,
  securityTypes,
  sides,
  type Connection,
  type FundAccount,
  type TradableQty,
} from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import type { CodeKind } from '../texts';
import { useTexts } from '../texts/useTexts';
import { useAnswer, type Answered } from '../useAnswer';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  symbol: string;
  exchange: string;
  securityType: string;
  accounts: Answered<FundAccount[]>;
}

// Futures have sides to open and close, other securities to buy and sell.
const futureSides: readonly string[] = [sides.buyOpen, sides.sellOpen, sides.buyClose, sides.sellClose];
const otherSides: readonly string[] = [sides.buy, sides.sell, sides.afterHoursBuy, sides.afterHoursSell];

export function TradableQtyPanel({ sdk, symbol, exchange, securityType, accounts }: Props) {
  const t = useTexts();
  const [order, setOrder] = useState({ side: '', priceType: priceTypes.limit as string, price: '' });
  const [fundAccount, setFundAccount] = useState<string>();
  const [qty, follow] = useAnswer<TradableQty | { qty?: never }>();
  const account = fundAccount ?? accounts.data?.[0]?.fundAccount ?? '';

  const sideChoices = securityType === securityTypes.future ? futureSides : otherSides;
  const side = sideChoices.includes(order.side) ? order.side : sideChoices[0]!;

  // The answer for one security must not show beside another.
  const [askedFor, setAskedFor] = useState('');
  useEffect(() => setAskedFor(''), [symbol]);

  function ask(event: FormEvent) {
    event.preventDefault();
    setAskedFor(symbol);
    follow(
      sdk
        .getTradableQty({ ...order, side, fundAccount: account, symbol, exchange, tag: '' })
        .then((answer) => answer ?? {}),
    );
  }

  const choice = (
    name: 'side' | 'priceType',
    value: string,
    title: string,
    kind: CodeKind,
    choices: readonly string[],
  ) => (
    <label>
      {title}
      <select value={value} onChange={(event) => setOrder({ ...order, [name]: event.target.value })}>
        {choices.map((code) => (
          <option key={code} value={code}>
            {t.code(kind, code)}
          </option>
        ))}
      </select>
    </label>
  );

  return (
    <Panel title={t.tradableQuantity} testId="tradable">
      <form className="fields" onSubmit={ask}>
        <AccountSelect accounts={accounts} value={account} onChange={setFundAccount} />
        {choice('side', side, t.side, 'side', sideChoices)}
        {choice('priceType', order.priceType, t.priceType, 'priceType', Object.values(priceTypes))}
        <label>
          {t.price}
          <input
            value={order.price}
            inputMode="decimal"
            spellCheck={false}
            onChange={(event) => setOrder({ ...order, price: event.target.value.trim() })}
          />
        </label>
        <button type="submit" disabled={!symbol}>
          {t.ask}
        </button>
      </form>
      {askedFor === symbol && symbol !== '' && (
        <Outcome of={qty}>
          {({ qty: most }) => (
            <output className="block" data-testid="tradable-answer">
              {most === undefined ? t.noSuchAccount : most === '' ? t.notTradable : most}
            </output>
          )}
        </Outcome>
      )}
    </Panel>
  );
}
