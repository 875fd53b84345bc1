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
import { direction, figures } from './figures';

// The legend has room for one line, so only the table shows the turnover.
const legendFigures = figures.filter(({ hint }) => hint !== 'amount');

// In China red is up.
const up = '#e5575c';
const down = '#35a97c';

interface Series {
  chart: IChartApi;
  candles: ISeriesApi<'Candlestick'>;
  volumes: ISeriesApi<'Histogram'>;
}

function build(container: HTMLElement): Series {
  const chart = createChart(container, {
    autoSize: true,
    layout: {
      background: { color: 'transparent' },
      textColor: '#9fb0c3',
      fontSize: 11,
      attributionLogo: true,
    },
    grid: { vertLines: { color: '#1d2937' }, horzLines: { color: '#1d2937' } },
    rightPriceScale: { borderColor: '#2a3848' },
    timeScale: { borderColor: '#2a3848', secondsVisible: false },
    localization: { locale: 'zh-CN', dateFormat: 'yyyy-MM-dd' },
  });
  const candles = chart.addSeries(CandlestickSeries, {
    upColor: up,
    downColor: down,
    wickUpColor: up,
    wickDownColor: down,
    borderVisible: false,
  });
  candles.priceScale().applyOptions({ scaleMargins: { top: 0.06, bottom: 0.26 } });
  const volumes = chart.addSeries(HistogramSeries, { priceScaleId: 'volume', priceFormat: { type: 'volume' } });
  volumes.priceScale().applyOptions({ scaleMargins: { top: 0.8, bottom: 0 } });
  return { chart, candles, volumes };
}

/** Decimals that the prices need, up to four. */
function decimals(bars: readonly Bar[]): number {
  for (let digits = 2; digits < 4; ++digits) {
    const unit = 10 ** digits;
    if (bars.every(({ close }) => Math.abs(close * unit - Math.round(close * unit)) < 1e-6 * unit)) return digits;
  }
  return 4;
}

export function KLineChart({ title, bars }: { title: string; bars: readonly Bar[] }) {
  const container = useRef<HTMLDivElement>(null);
  const [series, setSeries] = useState<Series>();
  const [drawn, setDrawn] = useState(0);
  const [pointed, setPointed] = useState<number>(); // index of the candle under the pointer
  const legend = bars[pointed ?? bars.length - 1];

  useEffect(() => {
    const built = build(container.current!);
    setSeries(built);
    return () => {
      setSeries(undefined);
      built.chart.remove();
    };
  }, []);

  useEffect(() => {
    if (!series) return;
    const shown = drawable(bars);
    const time = ({ seconds }: Bar) => seconds as UTCTimestamp;
    const precision = decimals(shown);
    const intraday = shown.some((bar, index) => index > 0 && bar.seconds - shown[index - 1]!.seconds < 86_400);
    series.candles.applyOptions({ priceFormat: { type: 'price', precision, minMove: 10 ** -precision } });
    series.chart.applyOptions({ timeScale: { timeVisible: intraday } });
    series.candles.setData(shown.map((bar) => ({ ...bar, time: time(bar) })));
    series.volumes.setData(
      shown.map((bar) => ({
        time: time(bar),
        value: bar.volume,
        color: bar.close >= bar.open ? `${up}66` : `${down}66`,
      })),
    );
    // The chart opens with the latest hundred candles; dragging shows the rest.
    series.chart.timeScale().setVisibleLogicalRange({ from: Math.max(0, shown.length - 100), to: shown.length + 2 });
    setDrawn(series.candles.data().length);

    const places = new Map(bars.map((bar, index) => [bar.seconds, index]));
    const point = ({ time }: MouseEventParams) => setPointed(places.get(time as UTCTimestamp));
    series.chart.subscribeCrosshairMove(point);
    return () => {
      setPointed(undefined);
      series.chart.unsubscribeCrosshairMove(point);
    };
  }, [series, bars]);

  return (
    <figure className="chart" data-testid="kline-chart" data-candles={drawn}>
      <figcaption>
        <strong>{title}</strong> {drawn} 根K线 <small>candles</small>
        {legend && (
          <p className="legend" data-testid="legend">
            {legendFigures.map(({ name, hint, write }) => (
              <span key={hint} title={hint}>
                <small>{name}</small>{' '}
                <span className={`number ${hint === 'close' ? direction(legend) : ''}`}>{write(legend)}</span>
              </span>
            ))}
          </p>
        )}
      </figcaption>
      <div
        ref={container}
        role="img"
        aria-label={`${title}，${drawn} 根K线，明细见下表 the table below has the figures`}
      />
    </figure>
  );
}
