import type { Connection } from '@varnel/web-client';
import { expect, it } from 'vitest';
import { MarketClock } from '../src/live/MarketClock';

it('the clock of the market has the newest time of all quotes', () => {
  let push: (tick: object) => void = () => {};
  const on = ((_: string, listener: typeof push) => {
    push = listener;
    return () => {};
  }) as Connection['on'];
  const tasks: (() => void)[] = [];
  const clock = new MarketClock({ on }, (task) => tasks.push(task));
  let told = 0;
  clock.watch(() => (told += 1));
  for (const time of ['20250303100003', '20250303100006', '20250303100003', undefined]) push({ symbol: 's', time });
  expect(clock.current()).toBe('');
  tasks.forEach((task) => task());
  expect(clock.current()).toBe('20250303100006');
  expect(told).toBe(1);
});
