import { describe, expect, it } from 'vitest';
import { candleFields, fundProperties, klinePeriods } from '../src/index.js';
import { quoted, readDocument, tableAfter } from './markdown.js';

const page = readDocument('vocabulary.md');

describe('the documented vocabulary', () => {
  it('has the same candle fields', () => {
    const documented = tableAfter(page, 'Fields of a candle').flatMap(([fields]) => quoted(fields!));
    expect(documented.sort()).toEqual(Object.values<string>(candleFields).sort());
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
