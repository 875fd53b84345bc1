import { describe, expect, it } from 'vitest';
import { barOf, drawable, readableTime, secondsOf } from '../src/candles';
import { layOut, readArguments } from '../src/freeCall';

describe('arguments typed by hand', () => {
  it.each([
    ['[]', []],
    ['["u1", 1, null, {"a": [true]}]', ['u1', 1, null, { a: [true] }]],
  ])('%s is taken', (text, args) => {
    expect(readArguments(text)).toEqual({ ok: true, args });
  });

  it.each(['', '[', '"u1"', '{}', 'null', '7', '["u1",]'])('"%s" is refused with a reason', (text) => {
    expect(readArguments(text)).toEqual({ ok: false, reason: expect.stringMatching(/\S/) });
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

  it('that a chart cannot place are left out of it', () => {
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
