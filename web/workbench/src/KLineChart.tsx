import {
  CandlestickSeries,
  createChart,
  HistogramSeries,
  type IChartApi,
  type ISeriesApi,
  type MouseEventParams,
  type UTCTimestamp,
} from 'lightweight-charts';
import { useEffect, useRef, useState } from 'react';
import { drawable, type Bar } from './candles';
import { chartColours, type ChartColours } from './chartColours';
import { lastOf } from './lastOf';
import { direction, useFigures } from './figures';
import { useFormats } from './formats';
import { firstChange } from './liveCandles';
import { locales } from './texts';
import { useTexts } from './texts/useTexts';
import { useTheme } from './theme';

interface Series {
  chart: IChartApi;
  candles: ISeriesApi<'Candlestick'>;
  volumes: ISeriesApi<'Histogram'>;
}

function build(container: HTMLElement): Series {
  const chart = createChart(container, {
    autoSize: true,
    layout: { background: { color: 'transparent' }, fontSize: 11, attributionLogo: true },
    timeScale: { secondsVisible: false },
  });
  const candles = chart.addSeries(CandlestickSeries, { borderVisible: true });
  candles.priceScale().applyOptions({ scaleMargins: { top: 0.06, bottom: 0.26 } });
  const volumes = chart.addSeries(HistogramSeries, { priceScaleId: 'volume', priceFormat: { type: 'volume' } });
  volumes.priceScale().applyOptions({ scaleMargins: { top: 0.8, bottom: 0 } });
  return { chart, candles, volumes };
}

/** Rising candles are hollow and falling ones filled, so that nobody needs the colours. */
function colour({ chart, candles }: Series, { text, line, ground, up, down }: ChartColours): void {
  chart.applyOptions({
    layout: { textColor: text },
    grid: { vertLines: { color: line }, horzLines: { color: line } },
    rightPriceScale: { borderColor: line },
    timeScale: { borderColor: line },
  });
  candles.applyOptions({
    upColor: ground,
    downColor: down,
    borderUpColor: up,
    borderDownColor: down,
    wickUpColor: up,
    wickDownColor: down,
  });
}

/** Decimals that the prices need, up to four. */
function decimals(bars: readonly Bar[]): number {
  for (let digits = 2; digits < 4; ++digits) {
    const unit = 10 ** digits;
    if (bars.every(({ close }) => Math.abs(close * unit - Math.round(close * unit)) < 1e-6 * unit)) return digits;
  }
  return 4;
}

/** Changes of more bars than these are drawn as new data. */
const updatedAtMost = 10;

const timeOf = ({ seconds }: Bar) => seconds as UTCTimestamp;

interface Props {
  title: string;
  bars: readonly Bar[];
  /** What the chart waits for, while other candles than these are asked for. */
  awaited: string | undefined;
}

/** A chart that follows its bars: where only the latest ones have changed, only those are drawn anew. */
export function KLineChart({ title, bars, awaited }: Props) {
  const t = useTexts();
  const { whole } = useFormats();
  const figures = useFigures();
  const theme = useTheme();
  const container = useRef<HTMLDivElement>(null);
  const [series, setSeries] = useState<Series>();
  const drawn = useRef<{ bars: readonly Bar[]; title: string; series: Series | undefined }>({
    bars: [],
    title: '',
    series: undefined,
  });
  const [count, setCount] = useState(0);
  const [pointed, setPointed] = useState<number>(); // seconds of the candle under the pointer
  const legend = bars.find(({ seconds }) => seconds === pointed) ?? bars[bars.length - 1];

  useEffect(() => {
    const built = build(container.current!);
    setSeries(built);
    built.chart.subscribeCrosshairMove(({ time }: MouseEventParams) => setPointed(time as number | undefined));
    return () => {
      setSeries(undefined);
      built.chart.remove();
    };
  }, []);

  useEffect(() => {
    if (!series) return;
    colour(series, chartColours(container.current!));
    drawn.current = { bars: [], title: '', series: undefined }; // volumes have their colours in the data
  }, [series, theme]);

  useEffect(() => {
    series?.chart.applyOptions({ localization: { locale: locales[t.language], dateFormat: 'yyyy-MM-dd' } });
  }, [series, t]);

  useEffect(() => {
    if (!series) return;
    const { up, down } = chartColours(container.current!);
    const volume = (bar: Bar) => ({
      time: timeOf(bar),
      value: bar.volume,
      color: `${bar.close >= bar.open ? up : down}66`,
    });
    const shown = drawable(bars);
    const before = drawn.current;
    const at = before.series === series && before.title === title ? firstChange(before.bars, shown) : 0;
    drawn.current = { bars: shown, title, series };
    setCount(shown.length);

    // The chart changes bars that it has and takes new ones at its end, but none between the others.
    const isAppended = before.bars.slice(at).every(({ seconds }, index) => shown[at + index]?.seconds === seconds);
    if (at > 0 && isAppended && shown.length - at <= updatedAtMost) {
      for (const bar of shown.slice(at)) {
        const isOld = bar.seconds < (lastOf(before.bars)?.seconds ?? 0);
        series.candles.update({ ...bar, time: timeOf(bar) }, isOld);
        series.volumes.update(volume(bar), isOld);
      }
      return;
    }
    const precision = decimals(shown);
    const isIntraday = shown.some((bar, index) => index > 0 && bar.seconds - shown[index - 1]!.seconds < 86_400);
    series.candles.applyOptions({ priceFormat: { type: 'price', precision, minMove: 10 ** -precision } });
    series.chart.applyOptions({ timeScale: { timeVisible: isIntraday } });
    series.candles.setData(shown.map((bar) => ({ ...bar, time: timeOf(bar) })));
    series.volumes.setData(shown.map(volume));
    // The chart opens with the latest hundred candles; dragging shows the rest.
    if (at === 0)
      series.chart.timeScale().setVisibleLogicalRange({ from: Math.max(0, shown.length - 100), to: shown.length + 2 });
  }, [series, bars, title, theme]);

  return (
    <figure className="chart" data-testid="kline-chart" data-candles={count} aria-busy={awaited !== undefined}>
      <figcaption>
        <strong>{title}</strong>{' '}
        <span className="quiet" role="status">
          {awaited ?? t.candles(whole(count))}
        </span>
        {legend && (
          <p className="legend" data-testid="legend">
            {figures
              .filter(({ key }) => key !== 'amount') // the legend has room for one line
              .map(({ key, name, write }) => (
                <span key={key} data-key={key}>
                  <small>{name}</small>{' '}
                  <span className={`number ${key === 'close' ? direction(legend) : ''}`}>{write(legend)}</span>
                </span>
              ))}
          </p>
        )}
      </figcaption>
      <div ref={container} role="group" aria-label={t.chartDescription(title, whole(count))} />
    </figure>
  );
}
