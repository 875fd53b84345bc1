import type { Position, SecurityDetail } from '@varnel/web-client';
import { describe, expect, it } from 'vitest';
import { finder, positionColumns, symbolsOf } from '../src/holdings';
import { formatsOf } from '../src/formats';
import { textsOf } from '../src/texts';

const security = (symbol: string, securityId: string, displayName: string, precision = 2) =>
  ({ symbol, securityId, displayName, precision }) as SecurityDetail;
const position = (securityId: string, securityName: string, figures: object = {}) =>
  ({ securityId, securityName, ...figures }) as Position;

const listed = [security('000001.SZ', '000001', 'One'), security('000001.SH', '000001', 'Other', 3)];
const find = finder(listed);

describe('the security of a position', () => {
  it('is the one with the same code and name', () => {
    expect(find(position('000001', 'Other'))?.symbol).toBe('000001.SH');
    expect(find(position('000001', 'Third'))).toBeUndefined();
  });

  it('counts once among the symbols, and not at all when the terminal does not list it', () => {
    const held = [
      position('000001', 'One'),
      position('000001', 'Other'),
      position('000001', 'One'),
      position('7', 'x'),
    ];
    expect(symbolsOf(held, find)).toEqual(['000001.SH', '000001.SZ']);
  });
});

describe('the columns of positions', () => {
  const columns = positionColumns(textsOf('en'), formatsOf('en'), find);
  const written = (key: string, of: Position) => columns.find((column) => column.key === key)!.write!(of);

  it('write amounts, rates and prices with their decimals', () => {
    const held = position('000001', 'Other', { lastPrice: 1.5, costPrice: 1.5, profit: -1234.5, profitRate: 0.01 });
    expect(written('lastPrice', held)).toBe('1.500');
    expect(written('costPrice', held)).toBe('1.5000');
    expect(written('profit', held)).toBe('-1,234.50');
    expect(written('profitRate', held)).toBe('+1.00%');
  });

  it('write the last price of an unknown security as the terminal gave it', () => {
    expect(written('lastPrice', position('7', 'x', { lastPrice: 1.5 }))).toBe('1.5');
  });
});
