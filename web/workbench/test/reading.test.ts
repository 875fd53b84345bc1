import type { SecurityDetail } from '@varnel/web-client';
import { describe, expect, it } from 'vitest';
import { barOf, drawable, readableTime, secondsOf } from '../src/candles';
import { readBasket } from '../src/basket';
import { commaParts, layOut, readArguments, readJson } from '../src/freeCall';
import { withLine, type LogLine } from '../src/log';
import { clockOf, phaseOf, quoteOf } from '../src/quote';
import { formatsOf, toneOf } from '../src/formats';
import { cellColumn, valueOf } from '../src/table/cellColumn';
import { textsOf } from '../src/texts';
import { firstWatched, readWatchList } from '../src/watchList';

describe('arguments typed by hand', () => {
  it.each([
    ['[]', []],
    ['["u1", 1, null, {"a": [true]}]', ['u1', 1, null, { a: [true] }]],
  ])('%s is taken', (text, args) => {
    expect(readArguments(text)).toEqual({ ok: true, args });
  });

  it.each(['', '[', '["u1",]'])('"%s" is refused with a reason', (text) => {
    expect(readArguments(text)).toEqual({ ok: false, reason: expect.stringMatching(/\S/) });
  });

  it.each(['"u1"', '{}', 'null', '7'])('"%s" is no array', (text) => {
    expect(readArguments(text)).toEqual({ ok: false });
  });
});

describe('a text with commas', () => {
  it.each([
    ['', []],
    [' ', []],
    ['a', ['a']],
    ['a, b ,,c', ['a', 'b', '', 'c']],
  ])('"%s" has its parts', (text, parts) => {
    expect(commaParts(text)).toEqual(parts);
  });
});

describe('JSON typed by hand', () => {
  it.each([
    ['{"a":1}', { ok: true, value: { a: 1 } }],
    ['null', { ok: true, value: null }],
    ['', { ok: false }],
    ['{a:1}', { ok: false }],
  ])('%s is read', (text, read) => {
    expect(readJson(text)).toEqual(read);
  });
});

describe('the value of a cell', () => {
  it.each([
    ['020250303000001', '020250303000001'],
    [1234567, '1234567'],
    [0, '0'],
    [null, ''],
  ])('%j goes back to the terminal as it came, not as a person reads it', (userRole, text) => {
    expect(valueOf({ displayRole: 'shown', userRole })).toBe(text);
  });
});

describe('the price of an order', () => {
  const order = (price: string, priceType: string) => ({
    price: { displayRole: price, userRole: null },
    priceType: { displayRole: '', userRole: priceType },
  });

  it.each([
    ['en', order('17.50', 'Limit'), '17.50'],
    ['en', order('市价', 'Market'), 'Market'],
    ['zh', order('市价', 'Market'), '市价'],
    ['en', { price: { displayRole: null, userRole: null } }, '—'],
  ] as const)('is written in the language of the desk: %s, %j', (language, row, text) => {
    expect(cellColumn('price', textsOf(language)).write!(row as never)).toBe(text);
  });
});

describe('a watch list', () => {
  it.each([[[]], [['609801.SH', 'yl2503.cf']]])('%j is read as it was written', (symbols) => {
    expect(readWatchList(symbols)).toEqual(symbols);
  });

  it('has each symbol once; spelling and case make a difference', () => {
    expect(readWatchList(['a', 'A', 'a'])).toEqual(['a', 'A']);
  });

  it.each([undefined, {}, null, [1], 'a'])('cannot be read from %j', (saved) => {
    expect(readWatchList(saved)).toBeUndefined();
  });

  it('begins with the first two securities of each type', () => {
    const types = ['Share', 'Fund', 'Share', 'Share', 'Fund', 'Fund', 'Bond'];
    const securities = types.map((securityType, at) => ({ securityType, symbol: `${at}` }) as SecurityDetail);
    expect(firstWatched(securities)).toEqual(['0', '1', '2', '4', '6']);
    expect(firstWatched([])).toEqual([]);
  });
});

describe('a basket', () => {
  it('has an order for each line, without a price a market order', () => {
    expect(readBasket('609801.SH,Buy,100,18.30\n\n 009811.SZ , Sell , 200 \n')).toEqual({
      ok: true,
      lines: [
        { symbol: '609801.SH', orderSide: 'Buy', priceType: 'Limit', price: '18.30', qty: '100' },
        { symbol: '009811.SZ', orderSide: 'Sell', priceType: 'Market', price: '0', qty: '200' },
      ],
    });
  });

  it('of blank lines is empty', () => {
    expect(readBasket(' \n\n')).toEqual({ ok: true, lines: [] });
  });

  it.each(['609801.SH', '609801.SH,Buy', ',Buy,100', '609801.SH,,100', '609801.SH,Buy,,1', 'a,Buy,1,2,3'])(
    'with the line "%s" is refused, and the line is named',
    (line) => {
      expect(readBasket(`609801.SH,Buy,100\n${line}`)).toEqual({ ok: false, line: 2 });
    },
  );
});

describe('a log', () => {
  it('has the latest line first and keeps no more than 200', () => {
    let log: readonly LogLine[] = [];
    for (let line = 1; line <= 250; ++line) log = withLine(log, `line ${line}`);
    expect(log).toHaveLength(200);
    expect(log[0]).toEqual({ id: 250, text: 'line 250' });
    expect(new Set(log.map(({ id }) => id)).size).toBe(200);
  });
});

describe('laid out text', () => {
  it.each([
    ['{"a":[1]}', '{\n  "a": [\n    1\n  ]\n}'],
    ['plain', 'plain'],
    [{ a: 1 }, '{\n  "a": 1\n}'],
    [7, '7'],
    [undefined, 'undefined'],
  ])('of %j', (value, text) => {
    expect(layOut(value)).toBe(text);
  });
});

describe('candles', () => {
  const candle = { time: '20250303093100', open: 1, high: 4, low: 0.5, close: 2, volume: 100, amount: 150 };

  it.each([
    ['20250303', Date.UTC(2025, 2, 3) / 1000],
    ['2025-03-03', Date.UTC(2025, 2, 3) / 1000],
    ['20250303093100', Date.UTC(2025, 2, 3, 9, 31) / 1000],
    ['2025-03-03 09:31:00', Date.UTC(2025, 2, 3, 9, 31) / 1000],
    ['', Number.NaN],
    ['202503', Number.NaN],
    ['noon', Number.NaN],
  ])('the time "%s" is read', (time, seconds) => {
    expect(secondsOf(time)).toBe(seconds);
  });

  it('become bars', () => {
    expect(barOf(candle)).toEqual({ ...candle, seconds: Date.UTC(2025, 2, 3, 9, 31) / 1000 });
  });

  it.each([
    ['20250303', '2025-03-03'],
    ['20250303093100', '2025-03-03 09:31'],
    ['noon', 'noon'],
  ])('show the time %s as %s', (time, text) => {
    expect(readableTime(barOf({ ...candle, time }))).toBe(text);
  });

  it('that a chart cannot draw are left out', () => {
    const times = ['20250303', 'noon', '20250303', '20250302', '20250304'];
    const drawn = drawable(times.map((time) => barOf({ ...candle, time })));
    expect(drawn.map(({ time }) => time)).toEqual(['20250303', '20250304']);
  });

  it.each(['open', 'high', 'low', 'close', 'volume'])('without %s are left out of the chart', (field) => {
    const broken = [null, '', 'none', true, [1], undefined].map((value) =>
      barOf({ ...candle, [field]: value as never }),
    );
    expect(drawable(broken)).toEqual([]);
    expect(drawable([barOf({ ...candle, [field]: '1.5' })])).toHaveLength(1);
  });
});

describe('quotes', () => {
  const tick = {
    symbol: 's',
    time: '20250303100000',
    previousClose: 10,
    open: 10.1,
    high: 10.4,
    low: 9.9,
    last: 10.2,
    upperLimit: 11,
    lowerLimit: 9,
    volume: 5000,
    amount: 51000,
    bidPrices: [10.2, 10.1, 0],
    bidQtys: [300, 200, 0],
    askPrices: [10.3],
    askQtys: [400],
  };

  it('become figures and levels without the empty levels', () => {
    expect(quoteOf(tick)).toEqual({
      time: '20250303100000',
      previousClose: 10,
      figures: {
        last: 10.2,
        open: 10.1,
        high: 10.4,
        low: 9.9,
        upperLimit: 11,
        lowerLimit: 9,
        volume: 5000,
        amount: 51000,
      },
      bids: [
        { price: 10.2, qty: 300 },
        { price: 10.1, qty: 200 },
      ],
      asks: [{ price: 10.3, qty: 400 }],
    });
  });

  it('of a security without a quote are empty', () => {
    const { time, figures, bids, asks } = quoteOf({});
    expect([time, bids, asks]).toEqual(['', [], []]);
    expect(new Set(Object.values(figures))).toEqual(new Set([Number.NaN]));
  });

  it.each([
    ['20250303100003', '10:00:03'],
    ['10:00', '10:00'],
    ['', ''],
  ])('show the time "%s" as "%s"', (time, shown) => {
    expect(clockOf(time)).toBe(shown);
  });

  const early = { open: 0, high: 0, low: 0, volume: 0, bidQtys: [0], askQtys: [0] };
  it.each([
    ['20250303090000', early, '', 'noTrades'],
    ['20250303091503', { ...early, bidQtys: [300], askQtys: [300] }, '', 'openingCall'],
    ['20250303092500', {}, '', 'opened'],
    ['20250303093003', {}, '', 'trading'],
    ['20250303113000', {}, '', 'noonBreak'],
    ['20250303130003', {}, '', 'trading'],
    ['20250303150000', {}, '', 'closed'],
    ['20250303100000', {}, '20250303100057', 'trading'],
    ['20250303100000', {}, '20250303100100', 'standsStill'],
    ['20250303090000', early, '20250303091603', 'standsStill'],
    ['20250303150000', {}, '20250304090000', 'closed'],
  ])('of %s with %j, when the newest of all is of "%s", say %s', (time, but, newest, phase) => {
    expect(phaseOf(quoteOf({ ...tick, time, ...but }), newest)).toBe(phase);
  });

  it('with more prices than quantities keep the complete levels', () => {
    expect(quoteOf({ ...tick, bidQtys: [300] }).bids).toEqual([{ price: 10.2, qty: 300 }]);
  });
});

describe.each(['zh', 'en'] as const)('values in %s', (language) => {
  const formats = formatsOf(language);

  it.each([
    [null, '—'],
    [undefined, '—'],
    ['', ''],
    ['1e3', '1e3'],
    [1234567.891, '1,234,567.891'],
    [0.00001, '0'],
    [true, 'true'],
    [[1], '[1]'],
  ])('%j is written %s', (value, text) => {
    expect(formats.value(value)).toBe(text);
  });

  it.each([
    [0.0123, '+1.23%'],
    [-1, '-100.00%'],
    [0, '0.00%'],
    [null, '—'],
  ])('%j is the rate %s', (value, text) => {
    expect(formats.rate(value)).toBe(text);
  });

  it.each([
    ['2757088.91', '2,757,088.91'],
    ['-0.5', '-0.50'],
    [3, '3.00'],
    ['no number', 'no number'],
    ['', ''],
    [null, '—'],
  ])('%j is the amount %s', (value, text) => {
    expect(formats.money(value)).toBe(text);
  });

  it.each([
    [12.5, 2, '12.50'],
    [12345.6789, 3, '12345.679'],
    [0, 2, '—'],
    [Number.NaN, 2, '—'],
    [undefined, 2, '—'],
    [1, -1, '1'],
  ])('%j with %i decimals is the price %s', (value, precision, text) => {
    expect(formats.price(value, precision)).toBe(text);
  });

  it('that are not numbers are missing', () => {
    expect([formats.whole(1234.4), formats.whole(Number.NaN)]).toEqual(['1,234', '—']);
  });
});

describe('tones', () => {
  it.each([
    [1, 'up'],
    [-0.01, 'down'],
    [0, ''],
    ['12.50', 'up'],
    ['-0.01', 'down'],
    ['0.00', ''],
    ['none', ''],
    [null, ''],
    [undefined, ''],
  ] as const)('%j has the tone "%s"', (value, tone) => {
    expect(toneOf(value)).toBe(tone);
  });
});
