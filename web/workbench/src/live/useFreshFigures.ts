import type { Tick } from '@varnel/web-client';
import { useEffect, useMemo, useRef, useState } from 'react';
import { useSdk } from '../desk/DeskContext';
import { Throttled } from './Throttled';

const periodMs = 1000;

/** The figures of a record that the terminal gave later than the record itself. */
interface Fresh<Item> {
  of: Item;
  item: Item;
}

/**
 * Records whose figures depend on prices. Prices are not pushed with the records, so the terminal is asked for them again
 * when a quote of the symbols has changed, at most once a second and only while the component is shown. A record that is
 * pushed later than the answer counts again.
 */
export function useFreshFigures<Item>(
  items: readonly Item[],
  idOf: (item: Item) => string,
  symbols: readonly string[],
  ask: () => Promise<readonly Item[]>,
): readonly Item[] {
  const sdk = useSdk();
  const [fresh, setFresh] = useState<ReadonlyMap<string, Fresh<Item>>>(new Map());
  const latest = useRef({ items, ask });
  useEffect(() => {
    latest.current = { items, ask };
  });

  useEffect(() => {
    if (symbols.length === 0) return;
    let isOver = false;
    const asking = new Throttled(async () => {
      const answer = new Map((await latest.current.ask()).map((item) => [idOf(item), item]));
      if (isOver) return;
      const known = latest.current.items.flatMap((of): [string, Fresh<Item>][] => {
        const id = idOf(of);
        const item = answer.get(id);
        return item === undefined ? [] : [[id, { of, item }]];
      });
      setFresh(new Map(known));
    }, periodMs);
    const prices = new Map<string, unknown>();
    const watch = sdk.watchQuotes(symbols, ({ changed }) => {
      const moved = changed.filter(({ symbol, last }: Tick) => prices.has(symbol) && prices.get(symbol) !== last);
      for (const { symbol, last } of changed) prices.set(symbol, last);
      if (moved.length > 0) asking.trigger();
    });
    return () => {
      isOver = true;
      watch.stop();
      asking.stop();
    };
  }, [sdk, symbols, idOf]);

  return useMemo(
    () =>
      items.map((item) => {
        const known = fresh.get(idOf(item));
        return known?.of === item ? known.item : item;
      }),
    [items, fresh, idOf],
  );
}
