import type { Texts } from '../texts';
import type { Column } from './types';

export const symbolOf = ({ symbol }: { symbol: string }) => symbol;

/** The column of the symbols of securities, with which the desk chooses one. */
export function symbolColumn<Row extends { symbol: string }>(
  t: Texts,
  onChoose: (symbol: string) => void,
): Column<Row> {
  return {
    key: 'symbol',
    title: t.symbol,
    kind: 'text',
    width: 11,
    value: symbolOf,
    write: ({ symbol }) => (
      <button type="button" className="link" onClick={() => onChoose(symbol)}>
        {symbol}
      </button>
    ),
  };
}
