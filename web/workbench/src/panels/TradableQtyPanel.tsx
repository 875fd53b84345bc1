import { priceTypes, securityTypes, type Connection, type FundAccount, type TradableQty } from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import { futureSideNames, priceTypeNames, sideNames } from '../orders';
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

export function TradableQtyPanel({ sdk, symbol, exchange, securityType, accounts }: Props) {
  const [order, setOrder] = useState({ side: '', priceType: priceTypes.limit as string, price: '' });
  const [fundAccount, setFundAccount] = useState<string>();
  const [qty, follow] = useAnswer<TradableQty | { qty?: never }>();
  const account = fundAccount ?? accounts.data?.[0]?.fundAccount ?? '';

  // Futures have sides to open and close, other securities to buy and sell.
  const sideChoices = securityType === securityTypes.future ? futureSideNames : sideNames;
  const side = order.side in sideChoices ? order.side : Object.keys(sideChoices)[0]!;

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
    text: string,
    hint: string,
    names: Readonly<Record<string, string>>,
  ) => (
    <label>
      {text} <small>{hint}</small>
      <select value={value} onChange={(event) => setOrder({ ...order, [name]: event.target.value })}>
        {Object.entries(names).map(([value, shown]) => (
          <option key={value} value={value}>
            {shown}
          </option>
        ))}
      </select>
    </label>
  );

  return (
    <Panel title="可交易量" hint="Tradable quantity" testId="tradable">
      <form className="fields" onSubmit={ask}>
        <AccountSelect accounts={accounts} value={account} onChange={setFundAccount} />
        {choice('side', side, '买卖', 'side', sideChoices)}
        {choice('priceType', order.priceType, '价格类型', 'price type', priceTypeNames)}
        <label>
          价格 <small>price</small>
          <input
            value={order.price}
            inputMode="decimal"
            spellCheck={false}
            onChange={(event) => setOrder({ ...order, price: event.target.value.trim() })}
          />
        </label>
        <button type="submit" disabled={!symbol}>
          查询 Ask
        </button>
      </form>
      {askedFor === symbol && symbol !== '' && (
        <Outcome of={qty}>
          {({ qty: most }) => (
            <output className="block" data-testid="tradable-answer">
              {most === undefined ? '无此账号 no such account' : most === '' ? '不可交易 not to be traded so' : most}
            </output>
          )}
        </Outcome>
      )}
    </Panel>
  );
}
