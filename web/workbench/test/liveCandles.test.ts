import { klinePeriods } from '@varnel/web-client';
import { describe, expect, it } from 'vitest';
import { barOf, type Bar } from '../src/candles';
import { barsOf, candlesOf, firstChange, withAnswer, withQuote, type Candles } from '../src/liveCandles';
import { quoteOf } from '../src/quote';

const bar = (time: string, volume = 100, close = 10): Bar =>
  barOf({ time, open: 10, high: 10, low: 10, close, volume, amount: volume * 10 });

const quote = (time: string, last: number, volume: number, but: object = {}) =>
  quoteOf({ time, last, open: 9, high: 12, low: 8, volume, amount: volume * 10, ...but });

const after = (candles: Candles, ...quotes: ReturnType<typeof quote>[]) => quotes.reduce(withQuote, candles);

const lastOf = (candles: Candles) => barsOf(candles).at(-1)!;

describe('the candle of the day', () => {
  const yesterday = candlesOf(klinePeriods.day, [bar('20250302')]);

  it('has the figures of the quote', () => {
    const today = after(yesterday, quote('20250303100000', 11, 500), quote('20250303100003', 11.5, 600, { high: 13 }));
    expect(barsOf(today)).toHaveLength(2);
    expect(lastOf(today)).toEqual(
      barOf({ time: '20250303', open: 9, high: 13, low: 8, close: 11.5, volume: 600, amount: 6000 }),
    );
  });

  it('is followed by that of the next day', () => {
    const later = after(yesterday, quote('20250303150000', 11, 500), quote('20250304093003', 7, 50));
    expect(barsOf(later).map(({ time, close }) => [time, close])).toEqual([
      ['20250302', 10],
      ['20250303', 11],
      ['20250304', 7],
    ]);
  });

  it('begins with the opening: before it a quote has no open, and the close of the day before', () => {
    const none = { open: 0, high: 0, low: 0 };
    const called = after(yesterday, quote('20250303090000', 10, 0, none), quote('20250303091603', 10, 0, none));
    expect(barsOf(called)).toBe(yesterday.finished);
    expect(lastOf(after(called, quote('20250303092500', 11, 500)))).toMatchObject({ open: 9, low: 8, volume: 500 });
  });

  it('that the terminal has finished stays as it is', () => {
    const done = candlesOf(klinePeriods.day, [bar('20250303')]);
    expect(barsOf(after(done, quote('20250303150000', 11, 500)))).toBe(done.finished);
    expect(barsOf(after(done, quote('20250302150000', 11, 500)))).toBe(done.finished);
  });
});

describe('the candle of the minute', () => {
  const known = candlesOf(klinePeriods.minute, [bar('20250228150000', 900), bar('20250303093100', 100)]);

  it('ends with the minute', () => {
    const ends = ['20250303093103', '20250303093157', '20250303093200', '20250303093203'].map((time) =>
      lastOf(after(known, quote(time, 11, 150))).time.slice(8),
    );
    expect(ends).toEqual(['093200', '093200', '093200', '093300']);
  });

  it('has its own volume, open, high and low', () => {
    const minute = after(
      known,
      quote('20250303093103', 11, 150),
      quote('20250303093106', 11.4, 170),
      quote('20250303093109', 10.8, 180),
    );
    const { open, high, low, close, volume, amount } = lastOf(minute);
    expect([open, high, low, close, volume, amount]).toEqual([11, 12, 8, 10.8, 80, 800]);
  });

  it('takes in a high or low of the day that lay between two quotes', () => {
    const same = { high: 10, low: 10 };
    const minute = after(known, quote('20250303093103', 10, 150, same), quote('20250303093106', 10, 160, { high: 11 }));
    expect(lastOf(minute)).toMatchObject({ high: 11, low: 8 });
    expect(lastOf(after(known, quote('20250303093103', 10, 150, same)))).toMatchObject({ high: 10, low: 10 });
  });

  it('begins anew with the next minute, with the volume since the last quote', () => {
    const next = after(known, quote('20250303093157', 11, 150), quote('20250303093203', 11.2, 170));
    expect(barsOf(next).map(({ time, volume }) => [time.slice(8), volume])).toEqual([
      ['150000', 900],
      ['093100', 100],
      ['093200', 50],
      ['093300', 20],
    ]);
    expect(lastOf(next).open).toBe(11.2);
  });

  it('that is the first of the day takes in the opening', () => {
    const opening = { open: 9, high: 9, low: 9 };
    const called = after(known, quote('20250304091603', 10, 0, { open: 0, high: 0, low: 0 }));
    expect(barsOf(called)).toBe(known.finished);
    const opened = after(called, quote('20250304092500', 9, 500, opening));
    expect(lastOf(opened)).toMatchObject({ time: '20250304093100', open: 9, high: 9, low: 9, close: 9, volume: 500 });
    const later = after(opened, quote('20250304093003', 9.5, 520, { ...opening, high: 9.5 }));
    expect(barsOf(later)).toHaveLength(barsOf(opened).length);
    expect(lastOf(later)).toMatchObject({ time: '20250304093100', open: 9, high: 9.5, close: 9.5, volume: 520 });
  });

  it('has its own volume alone, even when no quotes came for a while', () => {
    const missed = [bar('20250303093200', 50), bar('20250303093300', 50)];
    const early = after(known, quote('20250303093103', 11, 110));
    // The next quote comes before the candles that were missed, or after them.
    const before = withAnswer(after(early, quote('20250303093303', 11, 230)), [bar('20250303093100', 100), ...missed]);
    const behind = after(withAnswer(early, missed), quote('20250303093303', 11, 230));
    for (const candles of [before, behind])
      expect(barsOf(candles).map(({ time, volume, amount }) => [time.slice(8), volume, amount])).toEqual([
        ['150000', 900, 9000],
        ['093100', 100, 1000],
        ['093200', 50, 500],
        ['093300', 50, 500],
        ['093400', 30, 300],
      ]);
  });

  it('counts from zero on the next day', () => {
    const next = after(known, quote('20250303150000', 11, 800), quote('20250304093003', 10, 30));
    expect(lastOf(next)).toMatchObject({ time: '20250304093100', volume: 30 });
  });

  it('counts from the first quote on when the beginning of the day is not known', () => {
    const part = candlesOf(klinePeriods.minute, [bar('20250303100000')]);
    const minute = after(part, quote('20250303100003', 11, 5000), quote('20250303100006', 11, 5040));
    expect(lastOf(minute).volume).toBe(40);
  });

  it('ignores quotes that are late, repeated or unreadable', () => {
    const minute = after(known, quote('20250303093106', 11, 150));
    const again = after(
      minute,
      quote('20250303093103', 7, 140),
      quote('20250303093106', 11, 150),
      quote('', 11, 160),
      quoteOf({}),
    );
    expect(barsOf(again)).toEqual(barsOf(minute));
  });

  it('gives way to that of the terminal', () => {
    const running = after(known, quote('20250303093157', 11, 150), quote('20250303093203', 11.2, 170));
    const answered = withAnswer(running, [bar('20250303093100', 100), bar('20250303093200', 55)]);
    expect(barsOf(answered).map(({ time, volume }) => [time.slice(8), volume])).toEqual([
      ['150000', 900],
      ['093100', 100],
      ['093200', 55],
      ['093300', 15],
    ]);
    expect(withAnswer(running, [])).toBe(running);
  });
});

describe('bars that changed', () => {
  const bars = [bar('20250301'), bar('20250302'), bar('20250303')];

  it.each([
    ['nothing', bars, 3],
    ['the last one', [...bars.slice(0, 2), bar('20250303')], 2],
    ['one more', [...bars, bar('20250304')], 3],
    ['others', [bar('20250301')], 0],
    ['fewer', bars.slice(0, 1), 1],
  ])('%s', (_, later, at) => {
    expect(firstChange(bars, later)).toBe(at);
  });
});
