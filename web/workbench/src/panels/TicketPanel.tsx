import type { Connection, FundAccount, SecurityDetail } from '@varnel/web-client';
import { useEffect, useRef, type FormEvent } from 'react';
import { useQuote } from '../live/useWatch';
import { quoteOf } from '../quote';
import { useTexts } from '../texts/useTexts';
import { directionOf, isMarket, priceTypeChoices, sideChoices, steppedPrice, steppedQty } from '../ticket';
import type { Answered } from '../useAnswer';
import type { Ticket } from '../useTicket';
import { useTradable } from '../useTradable';
import { AccountSelect } from './AccountSelect';
import { CommandOutcome } from './CommandOutcome';
import { Confirm } from './Confirm';
import { OrderOutcomeView } from './OrderOutcomeView';
import { Panel } from './Panel';
import { StepField } from './StepField';
import { SymbolField } from './SymbolField';
import { TicketPrices } from './TicketPrices';

interface Props {
  sdk: Connection;
  ticket: Ticket;
  accounts: Answered<FundAccount[]>;
  securities: Answered<readonly SecurityDetail[]>;
}

/** Enters one order: fill in, review, confirm, send once. */
export function TicketPanel({ sdk, ticket, accounts, securities }: Props) {
  const t = useTexts();
  const { draft, security, change, reviewed, command } = ticket;
  const quote = quoteOf(useQuote(security?.symbol ?? '') ?? {});
  const atMarket = isMarket(draft);
  const price = atMarket ? '0' : draft.price;
  const { fundAccount, symbol, orderSide, priceType, tag } = draft;
  const most = useTradable(
    sdk,
    security && { fundAccount, symbol, exchange: security.exchange, side: orderSide, priceType, price, tag },
  );

  const best = directionOf(orderSide) === 'buy' ? quote.asks[0] : quote.bids[0];
  const start = best?.price ?? quote.figures.last;
  const isBusy = command.phase === 'busy';

  // After the confirmation the focus goes back to where the order was entered.
  const submit = useRef<HTMLButtonElement>(null);
  const wasReviewed = useRef(false);
  useEffect(() => {
    if (wasReviewed.current && !reviewed && document.activeElement === document.body) submit.current?.focus();
    wasReviewed.current = reviewed !== undefined;
  }, [reviewed]);

  function review(event: FormEvent) {
    event.preventDefault();
    ticket.review();
  }

  return (
    <Panel title={t.ticket} className={`ticket ${directionOf(orderSide)}`} testId="ticket">
      <form className="fields" onSubmit={review}>
        <AccountSelect
          accounts={accounts}
          value={fundAccount}
          onChange={(account) => change({ fundAccount: account })}
        />
        <SymbolField
          value={symbol}
          securities={securities.data ?? []}
          onChange={(typed) => change({ symbol: typed })}
        />
        <TicketPrices
          quote={quote}
          name={security?.displayName ?? (symbol !== '' && securities.data ? t.noSuchSecurity : '')}
          precision={security?.precision ?? 2}
          onPrice={(text) => change({ price: text })}
        />
        <fieldset className="sides wide">
          <legend>{t.side}</legend>
          {sideChoices(security).map((side) => (
            <label key={side} className={`side ${directionOf(side)} ${side === orderSide ? 'chosen' : ''}`}>
              <input
                type="radio"
                name="orderSide"
                value={side}
                checked={side === orderSide}
                onChange={() => change({ orderSide: side })}
              />
              {t.code('side', side)}
            </label>
          ))}
        </fieldset>
        <label>
          {t.priceType}
          <select name="priceType" value={priceType} onChange={(event) => change({ priceType: event.target.value })}>
            {priceTypeChoices.map((code) => (
              <option key={code} value={code}>
                {t.code('priceType', code)}
              </option>
            ))}
          </select>
        </label>
        <StepField
          name="price"
          label={t.price}
          value={atMarket ? t.marketPrice : draft.price}
          disabled={atMarket}
          onChange={(text) => change({ price: text })}
          stepped={(ticks) => (security ? steppedPrice(draft.price, ticks, security, start) : draft.price)}
        />
        <StepField
          name="qty"
          label={t.quantity}
          value={draft.qty}
          onChange={(text) => change({ qty: text })}
          stepped={(steps) => (security ? steppedQty(draft.qty, steps, security) : draft.qty)}
        />
        <label>
          {t.tag}
          <input
            name="tag"
            value={tag}
            placeholder={t.ownTag}
            autoComplete="off"
            spellCheck={false}
            onChange={(event) => change({ tag: event.target.value.trim() })}
          />
        </label>
        <p className="quiet tradable">
          {t.tradable}{' '}
          <output className="number" data-testid="ticket-tradable">
            {most}
          </output>
        </p>
        <button type="submit" ref={submit} disabled={!ticket.isComplete || reviewed !== undefined || isBusy}>
          {isBusy ? t.sending : t.review}
        </button>
      </form>
      {reviewed && (
        <Confirm
          question={
            <>
              {reviewed.fundAccount}{' '}
              <strong className={directionOf(reviewed.orderSide)}>{t.code('side', reviewed.orderSide)}</strong>{' '}
              {reviewed.symbol} {security?.displayName} {t.code('priceType', reviewed.priceType)}{' '}
              <span className="number">
                {isMarket(reviewed) ? '' : reviewed.price} × {reviewed.qty}
              </span>{' '}
              <small>{reviewed.orderTag}</small>
            </>
          }
          onYes={ticket.confirm}
          onNo={ticket.back}
        />
      )}
      <div className="outcome" data-testid="ticket-outcome">
        <CommandOutcome command={command}>
          {(outcome) => <OrderOutcomeView sdk={sdk} outcome={outcome} fundAccount={fundAccount} />}
        </CommandOutcome>
      </div>
    </Panel>
  );
}
