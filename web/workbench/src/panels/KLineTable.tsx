import { memo } from 'react';
import type { Bar } from '../candles';
import { direction, figures } from '../figures';

/** Newest first, as traders read it. */
export const KLineTable = memo(function KLineTable({ title, bars }: { title: string; bars: readonly Bar[] }) {
  return (
    <div className="scroll" tabIndex={0} role="region" aria-label={`${title} 明细 table`}>
      <table data-testid="kline-table">
        <thead>
          <tr>
            {figures.map(({ name, hint }) => (
              <th key={hint} scope="col" title={hint} className="number">
                {name}
              </th>
            ))}
          </tr>
        </thead>
        <tbody>
          {[...bars].reverse().map((bar, index) => (
            <tr key={index} className={direction(bar)}>
              {figures.map(({ hint, write }) => (
                <td key={hint} className="number">
                  {write(bar)}
                </td>
              ))}
            </tr>
          ))}
        </tbody>
      </table>
    </div>
  );
});
