import { klinePeriods, type Connection } from '@varnel/web-client';
import { useCallback, useEffect, useRef, useState, type FormEvent } from 'react';
import { barOf, type Bar } from '../candles';
import { KLineChart } from '../KLineChart';
import { useLiveCandles, type KLineQuery } from '../useLiveCandles';
import { useTexts } from '../texts/useTexts';
import { useAnswer } from '../useAnswer';
import { KLineTable } from './KLineTable';
import { Outcome, Panel } from './Panel';

interface Props {
  sdk: Connection;
  /** The symbol chosen in another panel, or empty. */
  chosen: string;
}

interface Shown {
  query: KLineQuery;
  bars: readonly Bar[];
}

/** Candles of a security as chart and table. They follow the market when the range has no end. */
export function KLinePanel({ sdk, chosen }: Props) {
  const t = useTexts();
  const [query, setQuery] = useState<KLineQuery>({ symbol: '', startTime: '', stopTime: '', period: klinePeriods.day });
  const [answer, follow] = useAnswer<Shown>();
  const [asked, setAsked] = useState(''); // the symbol whose candles are awaited

  const ask = useCallback(
    (next: KLineQuery) => {
      setAsked(next.symbol);
      follow(sdk.getKLineData(next).then((list) => ({ query: next, bars: list.map(barOf) })));
    },
    [sdk, follow],
  );

  const shownFor = useRef(''); // a view that is shown again keeps its chart
  useEffect(() => {
    if (chosen === '' || chosen === shownFor.current) return;
    shownFor.current = chosen;
    const next = { ...query, symbol: chosen };
    setQuery(next);
    ask(next);
  }, [chosen]);

  function submit(event: FormEvent) {
    event.preventDefault();
    ask(query);
  }

  const field = (name: 'symbol' | 'startTime' | 'stopTime', text: string, placeholder: string) => (
    <label>
      {text}
      <input
        name={name}
        value={query[name]}
        placeholder={placeholder}
        spellCheck={false}
        onChange={(event) => setQuery({ ...query, [name]: event.target.value.trim() })}
      />
    </label>
  );

  return (
    <Panel title={t.klines} className="klines" testId="klines">
      <form className="fields" onSubmit={submit}>
        {field('symbol', t.symbol, '')}
        {field('startTime', t.rangeStart, t.earliest)}
        {field('stopTime', t.rangeStop, t.latest)}
        <label>
          {t.period}
          <select
            name="period"
            value={query.period}
            onChange={(event) => setQuery({ ...query, period: event.target.value })}
          >
            <option value={klinePeriods.minute}>{t.periodMinute}</option>
            <option value={klinePeriods.day}>{t.periodDay}</option>
          </select>
        </label>
        <button type="submit" disabled={query.symbol === ''}>
          {t.ask}
        </button>
      </form>
      <Outcome of={answer}>
        {(shown) => <Bars sdk={sdk} shown={shown} awaited={answer.waiting ? t.klinesAsked(asked) : undefined} />}
      </Outcome>
    </Panel>
  );
}

interface BarsProps {
  sdk: Connection;
  shown: Shown;
  awaited: string | undefined;
}

function Bars({ sdk, shown: { query, bars: answered }, awaited }: BarsProps) {
  const t = useTexts();
  const bars = useLiveCandles(sdk, query, answered);
  const title = query.period === klinePeriods.minute ? t.klineOfMinutes(query.symbol) : t.klineOfDays(query.symbol);
  return (
    <>
      <KLineChart title={title} bars={bars} awaited={awaited} />
      <KLineTable title={title} bars={bars} />
    </>
  );
}
