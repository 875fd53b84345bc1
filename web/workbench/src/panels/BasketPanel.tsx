import type { Connection, FundAccount, OrderOutcome } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { readBasket, type BasketLine } from '../basket';
import { useTexts } from '../texts/useTexts';
import { tagMaker } from '../ticket';
import type { Answered } from '../useAnswer';
import { useCommand } from '../useCommand';
import { AccountSelect } from './AccountSelect';
import { CommandOutcome } from './CommandOutcome';
import { Confirm } from './Confirm';
import { LookUp } from './OrderOutcomeView';

const newTag = tagMaker();

interface Props {
  sdk: Connection;
  accounts: Answered<FundAccount[]>;
  /** A symbol for the example of a line. */
  example: string | undefined;
}

interface Sent {
  fundAccount: string;
  orderTag: string;
  lines: readonly BasketLine[];
  outcomes: readonly OrderOutcome[];
}

/** Several orders of an account in one call. */
export function BasketPanel({ sdk, accounts, example }: Props) {
  const t = useTexts();
  const [chosen, setChosen] = useState<string>();
  const [text, setText] = useState('');
  const [confirming, setConfirming] = useState<readonly BasketLine[]>();
  const [command, run, reset] = useCommand<Sent>();
  const fundAccount = chosen ?? accounts.data?.[0]?.fundAccount ?? '';
  const read = readBasket(text);
  const count = read.ok ? read.lines.length : 0;
  const isBusy = command.phase === 'busy';

  function edit(after: string) {
    setText(after);
    setConfirming(undefined);
    reset();
  }

  function askBack(event: FormEvent) {
    event.preventDefault();
    if (read.ok && count > 0 && !isBusy) setConfirming(read.lines);
  }

  function place(lines: readonly BasketLine[]) {
    setConfirming(undefined);
    run(async () => {
      const symbols = [...new Set(lines.map(({ symbol }) => symbol))];
      const details = await sdk.getSymbolDetail({ symbols });
      const exchanges = new Map(details.map(({ exchange }, place) => [symbols[place]!, exchange]));
      const orders = lines.map((line) => ({ ...line, exchange: exchanges.get(line.symbol) ?? '' }));
      const orderTag = newTag('basket');
      const outcomes = await sdk.insertOrderList({ fundAccount, orderTag, orders });
      return { fundAccount, orderTag, lines, outcomes };
    });
  }

  return (
    <div data-testid="basket" className="basket">
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
          {t.basketOrders}
          <textarea
            rows={4}
            name="basket"
            value={text}
            placeholder={example && `${example},Buy,100,13.30`}
            spellCheck={false}
            aria-invalid={!read.ok}
            onChange={(event) => edit(event.target.value)}
          />
        </label>
        <button type="submit" disabled={count === 0 || confirming !== undefined || isBusy}>
          {isBusy ? t.sending : t.placeBasket(count)}
        </button>
        <p className="problem" role="status">
          {read.ok ? '' : t.basketLine(read.line)}
        </p>
      </form>
      {confirming && (
        <Confirm
          question={t.basketQuestion(fundAccount, confirming.length)}
          onYes={() => place(confirming)}
          onNo={() => setConfirming(undefined)}
        />
      )}
      <div className="outcome" data-testid="basket-outcome">
        <CommandOutcome command={command}>{(sent) => <Outcomes sdk={sdk} sent={sent} />}</CommandOutcome>
      </div>
    </div>
  );
}

function Outcomes({ sdk, sent: { fundAccount, orderTag, lines, outcomes } }: { sdk: Connection; sent: Sent }) {
  const t = useTexts();
  const count = (kind: OrderOutcome['outcome']) => outcomes.filter(({ outcome }) => outcome === kind).length;
  const unknown = count('unknown');
  const refused = outcomes.flatMap((outcome, at) => {
    if (outcome.outcome === 'refused') return [{ line: lines[at], reason: outcome.reason, orderID: outcome.orderID }];
    if (outcome.outcome !== 'refusedWithoutReason') return [];
    return [{ line: lines[at], reason: t.refusedWithoutReason, orderID: undefined }];
  });
  return (
    <>
      {unknown < outcomes.length && <p role="status">{t.basketOutcome(count('accepted'), refused.length)}</p>}
      {refused.length > 0 && (
        <ul className="reasons">
          {refused.slice(0, 20).map(({ line, reason, orderID }, place) => (
            <li key={place} className="problem">
              {line?.symbol} {orderID} {reason}
            </li>
          ))}
        </ul>
      )}
      {unknown > 0 && (
        <>
          <p className="problem" role="alert">
            {t.outcomeUnknownOf(unknown)}
          </p>
          <LookUp sdk={sdk} orderTag={orderTag} fundAccount={fundAccount} />
        </>
      )}
    </>
  );
}
