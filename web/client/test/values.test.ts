import { describe, expect, it } from 'vitest';
import { addAmounts, compareAmounts, displayText, formatAmount, rawNumber, rawValue } from '../src/index.js';

describe('a cell', () => {
  it.each([
    ['13.70', '13.70'],
    [null, ''],
    [7, '7'],
    [true, 'true'],
    [{ a: 1 }, '{"a":1}'],
  ])('that shows %j has the text %j', (displayRole, text) => {
    expect(displayText({ displayRole, userRole: 0 })).toBe(text);
  });

  it.each([
    [13.7, 13.7],
    [0, 0],
    ['13.70', 13.7],
    ['-0.5', -0.5],
    [null, undefined],
    ['', undefined],
    [' ', undefined],
    ['1e3', undefined],
    ['Limit', undefined],
    [true, undefined],
  ])('with the value %j has the number %j', (userRole, number) => {
    expect(rawNumber({ displayRole: '', userRole })).toBe(number);
  });

  it('gives its value with its type', () => {
    const side: 'Buy' | null = rawValue({ displayRole: '买入', userRole: 'Buy' as const });
    expect(side).toBe('Buy');
    expect(rawValue({ displayRole: null, userRole: null })).toBeNull();
  });
});

describe('amounts', () => {
  it.each([
    ['1.00', '1', 0],
    ['-0.00', '0', 0],
    ['0.1', '0.09', 1],
    ['-2757088.91', '-2757088.90', -1],
    ['9007199254740993.01', '9007199254740993.02', -1],
    ['+5', '4.99', 1],
  ])('%s and %s compare as %d', (one, other, order) => {
    expect(compareAmounts(one, other)).toBe(order);
    expect(compareAmounts(other, one)).toBe(order === 0 ? 0 : -order);
  });

  it.each([
    [['0.10', '0.20'], '0.30'],
    [['9007199254740993.01', '0.02'], '9007199254740993.03'],
    [['1', '-1.005'], '-0.005'],
    [['-0.01', '0.01'], '0.00'],
    [['36141.74'], '36141.74'],
    [[], '0'],
  ])('%j add up to %s', (amounts, sum) => {
    expect(addAmounts(...amounts)).toBe(sum);
  });

  it.each([
    ['1234567.89', {}, '1,234,567.89'],
    ['-123456.7', { decimals: 2 }, '-123,456.70'],
    ['999.995', { decimals: 2 }, '1,000.00'],
    ['-0.125', { decimals: 2 }, '-0.13'],
    ['-0.004', { decimals: 2 }, '0.00'],
    ['0.5', { decimals: 0 }, '1'],
    ['1000', { separator: ' ' }, '1 000'],
    ['100', {}, '100'],
    ['0.12345', {}, '0.12345'],
  ])('%s with %j is shown as %s', (amount, style, text) => {
    expect(formatAmount(amount, style)).toBe(text);
  });

  it.each(['', '1,000', '1.', '.5', '1e3', 'NaN', ' 1', '１'])('%j is none', (text) => {
    expect(() => addAmounts('1', text)).toThrow(`"${text}" is no amount`);
    expect(() => compareAmounts(text, '1')).toThrow(TypeError);
    expect(() => formatAmount(text)).toThrow(TypeError);
  });
});
