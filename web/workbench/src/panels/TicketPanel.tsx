import { priceTypes, securityTypes, type Connection, type OrderOutcome, type SecurityDetail } from '@varnel/web-client';
import { useEffect, useState, type FormEvent } from 'react';
import type { TickFeed } from '../live/TickFeed';
import { futureSideNames, priceTypeNames, sideNames } from '../orders';
import { useCommand } from '../useCommand';
import { useAnswer } from '../useAnswer';
import { useDelayed } from '../useDelayed';
import { useFundAccounts } from '../useFundAccounts';
import { useTradable } from '../useTradable';
import { AccountSelect } from './AccountSelect';
import { CommandOutcome, PlacedOutcome } from './CommandOutcome';
import { Confirm } from './Confirm';
import { Panel } from './Panel';
import { TicketPrices } from './TicketPrices';

interface Props {
  sdk: Connection;
  feed: TickFeed;
  /** The symbol chosen in another panel, or empty. */
  suggested: string;
}

const empty = { orderSide: '', priceType: priceTypes.limit as string, price: '', qty: '', orderTag: 'manual' };

/** Enters one order: fill in, confirm, send once. */
export function TicketPanel({ sdk, feed, suggested }: Props) {
  const accounts = useFundAccounts(sdk);
  const [chosen, setChosen] = useState<string>();
  const [symbol, setSymbol] = useState(suggested);
  const [form, setForm] = useState(empty);
  const [confirming, setConfirming] = useState(false);
  const [detail, followDetail] = useAnswer<SecurityDetail | undefined>();
  const [command, run, reset] = useCommand<OrderOutcome>();

  const settled = useDelayed(symbol); // no call for each key
  useEffect(() => {
    if (settled !== '') followDetail(sdk.getSymbolDetail({ symbols: [settled] }).then(([only]) => only));
  }, [sdk, followDetail, settled]);
  const security = detail.data?.symbol === symbol ? detail.data : undefined;

  const fundAccount = chosen ?? accounts.data?.[0]?.fundAccount ?? '';
  const choices = security?.securityType === securityTypes.future ? futureSideNames : sideNames;
  const orderSide = form.orderSide in choices ? form.orderSide : Object.keys(choices)[0]!;
  const isMarket = form.priceType === priceTypes.market;
  const price = isMarket ? '0' : form.price;
  const order = { ...form, fundAccount, symbol, exchange: security?.exchange ?? '', orderSide, price };
  const isWhole = symbol !== '' && security !== undefined && fundAccount !== '' && price !== '' && form.qty !== '';
  const { exchange, priceType, orderTag: tag } = order;
  const asked = { fundAccount, symbol, exchange, side: orderSide, priceType, price, tag };
  const most = useTradable(sdk, security ? asked : undefined);

  const change = (part: Partial<typeof empty>) => {
    setForm({ ...form, ...part });
    setConfirming(false);
    reset();
  };
  useEffect(() => {
    if (suggested === '') return;
    setSymbol(suggested);
    change({});
  }, [suggested]);
  const askBack = (event: FormEvent) => {
    event.preventDefault();
    if (isWhole && command.phase !== 'busy') setConfirming(true);
  };
  const place = () => {
    setConfirming(false);
    run(() => sdk.insertOrder(order));
  };

  const choice = (name: 'orderSide' | 'priceType', value: string, text: string, names: typeof sideNames) => (
    <label>
      {text} <small>{name === 'orderSide' ? 'side' : 'price type'}</small>
      <select value={value} onChange={(event) => change({ [name]: event.target.value })}>
        {Object.entries(names).map(([code, shown]) => (
          <option key={code} value={code}>
            {shown}
          </option>
        ))}
      </select>
    </label>
  );
  const field = (name: 'price' | 'qty' | 'orderTag', text: string, hint: string, value: string, disabled = false) => (
    <label>
      {text} <small>{hint}</small>
      <input
        value={value}
        disabled={disabled}
        inputMode={name === 'orderTag' ? 'text' : 'decimal'}
        spellCheck={false}
        onChange={(event) => change({ [name]: event.target.value.trim() })}
      />
    </label>
  );

  return (
    <Panel title="下单" hint="Order ticket" testId="ticket">
      <form className="fields" onSubmit={askBack}>
        <AccountSelect
          accounts={accounts}
          value={fundAccount}
          onChange={(account) => {
            setChosen(account);
            change({});
          }}
        />
        <label>
          证券标识 <small>symbol</small>
          <input
            value={symbol}
            spellCheck={false}
            onChange={(event) => {
              setSymbol(event.target.value.trim());
              change({});
            }}
          />
        </label>
        <TicketPrices
          feed={feed}
          symbol={security ? symbol : ''}
          name={security?.displayName ?? ''}
          precision={security?.precision ?? 2}
          onPrice={(text) => change({ price: text })}
        />
        {choice('orderSide', orderSide, '买卖', choices)}
        {choice('priceType', form.priceType, '价格类型', priceTypeNames)}
        {field('price', '价格', 'price', isMarket ? '市价' : form.price, isMarket)}
        {field('qty', '数量', 'quantity', form.qty)}
        {field('orderTag', '标签', 'tag', form.orderTag)}
        <p className="quiet wide">
          可交易量 <small>tradable</small>{' '}
          <output className="number" data-testid="ticket-tradable">
            {most}
          </output>
        </p>
        <button type="submit" disabled={!isWhole || confirming || command.phase === 'busy'}>
          {command.phase === 'busy' ? '发送中…' : '下单 Place'}
        </button>
      </form>
      {confirming && (
        <Confirm
          question={
            <>
              {fundAccount} <strong>{choices[orderSide]}</strong> {symbol} {security?.displayName}{' '}
              {priceTypeNames[form.priceType]} {isMarket ? '' : price} × {form.qty} <small>{form.orderTag}</small>
            </>
          }
          onYes={place}
          onNo={() => setConfirming(false)}
        />
      )}
      <div className="outcome" data-testid="ticket-outcome">
        <CommandOutcome command={command}>{(order) => <PlacedOutcome order={order} />}</CommandOutcome>
      </div>
    </Panel>
  );
}
