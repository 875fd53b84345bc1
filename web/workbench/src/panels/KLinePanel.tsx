import { klinePeriods, type Candle, type Connection } from '@varnel/web-client';
import { useEffect, useMemo, useState, type FormEvent } from 'react';
import { barOf } from '../candles';
import { KLineChart } from '../KLineChart';
import { useAnswer } from '../useAnswer';
import { KLineTable } from './KLineTable';
import { Outcome, Panel } from './Panel';

/** The first chart: the past months of the first watched security. */
const opening = { symbol: '', startTime: '20240701', stopTime: '', period: klinePeriods.day as string };

interface Shown {
  title: string;
  candles: Candle[];
}

interface Props {
  sdk: Connection;
  /** The symbol chosen in another panel, or empty. */
  chosen: string;
}

export function KLinePanel({ sdk, chosen }: Props) {
  const [query, setQuery] = useState(opening);
  const [answer, follow] = useAnswer<Shown>();

  useEffect(() => {
    if (chosen === '') return;
    const next = { ...query, symbol: chosen };
    setQuery(next);
    ask(next);
  }, [chosen]);

  function ask(asked: typeof opening) {
    const title = `${asked.symbol} ${asked.period === klinePeriods.minute ? '分钟线' : '日线'}`;
    follow(sdk.getKLineData(asked).then((candles) => ({ title, candles })));
  }

  function submit(event: FormEvent) {
    event.preventDefault();
    ask(query);
  }

  const field = (name: 'symbol' | 'startTime' | 'stopTime', text: string, hint: string, placeholder: string) => (
    <label>
      {text} <small>{hint}</small>
      <input
        value={query[name]}
        placeholder={placeholder}
        spellCheck={false}
        onChange={(event) => setQuery({ ...query, [name]: event.target.value.trim() })}
      />
    </label>
  );

  return (
    <Panel title="K线" hint="K-lines" className="klines" testId="klines">
      <form className="fields" onSubmit={submit}>
        {field('symbol', '证券代码', 'symbol', '')}
        {field('startTime', '开始', 'start', '最早 earliest')}
        {field('stopTime', '结束', 'stop', '最新 latest')}
        <label>
          周期 <small>period</small>
          <select value={query.period} onChange={(event) => setQuery({ ...query, period: event.target.value })}>
            <option value={klinePeriods.minute}>1 分钟 minute</option>
            <option value={klinePeriods.day}>2 日 day</option>
          </select>
        </label>
        <button type="submit">{answer.waiting ? '查询中…' : '查询 Ask'}</button>
      </form>
      <Outcome of={answer}>{(shown) => <Bars {...shown} />}</Outcome>
    </Panel>
  );
}

function Bars({ title, candles }: Shown) {
  const bars = useMemo(() => candles.map(barOf), [candles]);
  return (
    <>
      <KLineChart title={title} bars={bars} />
      <KLineTable title={title} bars={bars} />
    </>
  );
}
