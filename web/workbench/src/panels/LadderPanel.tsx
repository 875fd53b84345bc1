import type { Entrust } from '@varnel/web-client';
import { useMemo, useRef, useState, type KeyboardEvent } from 'react';
import { useFormats } from '../formats';
import { ladderOf, type Rung } from '../ladder';
import { useQuote } from '../live/useWatch';
import { isOf } from '../records';
import { quoteOf } from '../quote';
import { valueOf } from '../table/cellColumn';
import { useTexts } from '../texts/useTexts';
import { sideFor, steppedQty, type Direction } from '../ticket';
import { Switch } from '../ui/Switch';
import type { Ticket } from '../useTicket';
import { MarketPhase } from './MarketPhase';
import { Panel } from './Panel';
import { StepField } from './StepField';

interface Props {
  ticket: Ticket;
  /** Open orders of all accounts and securities. Those of the ticket's account and security are shown. */
  openOrders: readonly Entrust[];
}

const moves: Readonly<Record<string, [rows: number, columns: number]>> = {
  ArrowUp: [-1, 0],
  ArrowDown: [1, 0],
  ArrowLeft: [0, -1],
  ArrowRight: [0, 1],
};

/**
 * The five levels of the ticket's security. A press on a level fills in side and price. With one-click sending, which is
 * off until the user turns it on, it sends an order of the shown quantity.
 */
export function LadderPanel({ ticket, openOrders }: Props) {
  const t = useTexts();
  const formats = useFormats();
  const { security, draft } = ticket;
  const [isOneClick, setOneClick] = useState(false);
  const [preset, setPreset] = useState('');
  const [current, setCurrent] = useState<[row: number, column: number]>([4, 0]); // the one that Tab reaches
  const table = useRef<HTMLTableElement>(null);

  const tick = useQuote(security?.symbol ?? '');
  const own = useMemo(
    () =>
      security
        ? openOrders.filter((order) => valueOf(order.fundAccount) === draft.fundAccount && isOf(order, security))
        : [],
    [openOrders, security, draft.fundAccount],
  );
  const precision = security?.precision ?? 2;
  const quote = useMemo(() => tick && quoteOf(tick), [tick]);
  const { rungs, elsewhere } = useMemo(() => ladderOf(quote ?? quoteOf({}), own, precision), [quote, own, precision]);

  const qty = preset || security?.minQty || '';
  const canSend = isOneClick && security !== undefined && Number(qty) > 0;

  function take(direction: Direction, price: number) {
    const orderSide = sideFor(direction, security, '');
    const order = { orderSide, priceType: 'Limit', price: price.toFixed(precision) };
    if (canSend) ticket.sendNow({ ...order, qty });
    else ticket.change(order);
  }

  function move(event: KeyboardEvent<HTMLTableElement>) {
    if (event.repeat && event.key === 'Enter') event.preventDefault(); // a held key chooses once
    const step = moves[event.key];
    if (!step || event.altKey) return;
    event.preventDefault();
    const row = Math.min(rungs.length - 1, Math.max(0, current[0] + step[0]));
    const column = Math.min(1, Math.max(0, current[1] + step[1]));
    setCurrent([row, column]);
    table.current!.querySelectorAll('tbody tr')[row]?.querySelectorAll('button')[column]?.focus();
  }

  const row = Math.min(current[0], rungs.length - 1);
  return (
    <Panel title={t.ladder} className={`ladder ${canSend ? 'armed' : ''}`} testId="ladder">
      <table ref={table} onKeyDown={move} aria-label={t.ladder} aria-describedby="ladder-help">
        <thead>
          <tr>
            <th scope="col">{t.code('side', 'Buy')}</th>
            <th scope="col" className="number">
              {t.price}
            </th>
            <th scope="col" className="number">
              {t.code('side', 'Sell')}
            </th>
          </tr>
        </thead>
        <tbody>
          {rungs.map((rung, at) => (
            <RungRow
              key={rung.id}
              rung={rung}
              price={formats.price(rung.price, precision)}
              reached={at === row ? current[1] : undefined}
              onReach={(column) => setCurrent([at, column])}
              onTake={take}
            />
          ))}
        </tbody>
      </table>
      {rungs.length === 0 && <p className="quiet">{!security ? t.chooseForLadder : quote ? t.noLevels : t.waiting}</p>}
      {quote && <MarketPhase quote={quote} precision={precision} />}
      {elsewhere > 0 && (
        <p className="quiet" data-testid="own-elsewhere">
          {t.ownElsewhere(elsewhere)}
        </p>
      )}
      <p id="ladder-help" className="unseen">
        {t.ladderHelp}
      </p>
      <div className={`one-click ${isOneClick ? 'on' : ''}`}>
        <Switch checked={isOneClick} onChange={setOneClick} testId="one-click">
          {t.oneClick}
        </Switch>
        <StepField
          name="preset"
          label={t.oneClickQty}
          value={qty}
          onChange={setPreset}
          stepped={(steps) => (security ? steppedQty(qty, steps, security) : qty)}
        />
        {isOneClick && (
          <p className="problem" role="status">
            {t.oneClickWarning(qty)} <small>{draft.fundAccount}</small>
          </p>
        )}
      </div>
    </Panel>
  );
}

interface RungProps {
  rung: Rung;
  price: string;
  /** The column that Tab reaches, if it is in this row. */
  reached: number | undefined;
  onReach: (column: number) => void;
  onTake: (direction: Direction, price: number) => void;
}

function RungRow({ rung, price, reached, onReach, onTake }: RungProps) {
  const t = useTexts();
  const { whole } = useFormats();
  const cell = (direction: Direction, column: number, qty: number | undefined, own: number) => (
    <td className={direction}>
      <button
        type="button"
        tabIndex={reached === column ? 0 : -1}
        onFocus={() => onReach(column)}
        onClick={() => onTake(direction, rung.price)}
      >
        <span className="unseen">{direction === 'buy' ? t.buyAt(price) : t.sellAt(price)}</span>
        {own > 0 && (
          <mark data-testid={`own-${direction}`} title={t.ownAt(whole(own), price)}>
            {whole(own)}
          </mark>
        )}
        <span className="number">{qty === undefined ? '' : whole(qty)}</span>
      </button>
    </td>
  );
  return (
    <tr data-level={rung.id} data-price={price}>
      {cell('buy', 0, rung.bidQty, rung.ownBuy)}
      <th scope="row" className="number">
        {price}
      </th>
      {cell('sell', 1, rung.askQty, rung.ownSell)}
    </tr>
  );
}
