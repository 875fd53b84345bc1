import { describe, expect, it } from 'vitest';
import {
  candleFields,
  fundProperties,
  klinePeriods,
  orderStatuses,
  priceTypes,
  quoteFields,
  securityTypes,
  sides,
  strategyLanguages,
  strategyStatuses,
} from '../src/index.js';
import { quoted, readDocument, tableAfter } from './markdown.js';

const page = readDocument('vocabulary.md');

describe('the documented vocabulary', () => {
  it('has the same candle fields', () => {
    const documented = tableAfter(page, 'Fields of a candle').flatMap(([fields]) => quoted(fields!));
    expect(documented.sort()).toEqual(Object.values<string>(candleFields).sort());
  });

  it('has the same quote fields', () => {
    const documented = tableAfter(page, 'Fields of a quote').flatMap(([fields]) => quoted(fields!));
    expect(documented.sort()).toEqual(Object.values<string>(quoteFields).sort());
  });

  it('has the same types of securities', () => {
    const documented = tableAfter(page, '## Securities').flatMap(([, type]) => quoted(type!));
    expect([...new Set(documented)].sort()).toEqual(Object.values<string>(securityTypes).sort());
  });

  it.each([
    ['States of an order', orderStatuses],
    ['Sides, the values', sides],
    ['Price types:', priceTypes],
    ['Statuses, in', strategyStatuses],
  ])('has the same codes under "%s"', (heading, codes) => {
    const documented = tableAfter(page, heading).flatMap(([code]) => quoted(code!));
    expect(documented).toEqual(Object.values<string>(codes));
  });

  it('has the same languages of strategies', () => {
    const numbers = tableAfter(page, 'Languages:').map(([number]) => Number(number));
    expect(numbers).toEqual(Object.values(strategyLanguages));
  });

  it('has the same fund properties', () => {
    const documented = tableAfter(page, 'Fund properties')
      .filter(([number]) => /^\d+$/.test(number!))
      .map(([number, inScenario]) => [quoted(inScenario!)[0]?.replace(/"/g, '') ?? 'all', Number(number)]);
    expect(Object.fromEntries(documented)).toEqual(fundProperties);
  });

  it('has the same period flags', () => {
    const [minute, day] = tableAfter(page, '`Data_getKLineData_REQ` takes');
    expect(minute).toEqual([`\`"${klinePeriods.minute}"\``, 'of one minute']);
    expect(day).toEqual(['any other text', 'of one day']);
    expect(klinePeriods.day).not.toBe(klinePeriods.minute);
  });
});
