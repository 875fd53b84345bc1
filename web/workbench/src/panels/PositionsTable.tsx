import { positionId, type Connection, type Position, type SecurityDetail } from '@varnel/web-client';
import { useMemo } from 'react';
import { isClosable } from '../closing';
import { toneOf, useFormats } from '../formats';
import { finder, symbolsOf } from '../holdings';
import { useFreshFigures } from '../live/useFreshFigures';
import type { Watched } from '../live/useWatch';
import { DataTable } from '../table/DataTable';
import type { Column } from '../table/types';
import { useTexts } from '../texts/useTexts';
import { useSame } from '../useSame';
import { StreamState } from './StreamState';

interface Props {
  sdk: Connection;
  fundAccounts: readonly string[];
  securities: readonly SecurityDetail[] | undefined;
  positions: Watched<Position>;
  onClose: (position: Position) => void;
}

/** A small list of the positions, each of which can be closed. Profit and loss follow the prices. */
export function PositionsTable({ sdk, fundAccounts, securities, positions, onClose }: Props) {
  const t = useTexts();
  const formats = useFormats();
  const find = useMemo(() => finder(securities ?? []), [securities]);
  const held = useSame(symbolsOf(positions.items, find));
  const items = useFreshFigures(positions.items, positionId, held, () =>
    sdk.getPositionList({ fundAccounts: [...fundAccounts], symbol: '' }),
  );
  const columns = useMemo<readonly Column<Position>[]>(() => {
    const text = (key: 'fundAccount' | 'securityId' | 'securityName'): Column<Position> => ({
      key,
      title: t.field(key),
      kind: 'text',
      value: (position) => String(position[key] ?? ''),
    });
    const figure = (key: 'currentQty' | 'tradableQty' | 'costPrice' | 'lastPrice' | 'profit'): Column<Position> => ({
      key,
      title: t.field(key),
      kind: 'number',
      value: (position) => position[key] as number,
      ...(key === 'profit' && {
        write: (position: Position) => formats.money(position.profit),
        tone: (position: Position) => toneOf(position.profit),
      }),
    });
    return [
      {
        key: 'close',
        title: t.closePosition,
        kind: 'control',
        width: 6,
        value: () => '',
        write: (position) =>
          isClosable(position) && (
            <button
              type="button"
              className="link"
              aria-label={t.closePositionOf(`${String(position.securityName)} ${String(position.fundAccount)}`)}
              onClick={() => onClose(position)}
            >
              {t.closePosition}
            </button>
          ),
      },
      text('securityId'),
      text('securityName'),
      figure('currentQty'),
      figure('tradableQty'),
      figure('costPrice'),
      figure('lastPrice'),
      figure('profit'),
      text('fundAccount'),
    ];
  }, [t, formats, onClose]);

  return (
    <StreamState of={positions}>
      <DataTable
        name="tradePositions"
        label={t.positions}
        columns={columns}
        items={items}
        idOf={positionId}
        testId="trade-positions"
      />
    </StreamState>
  );
}
