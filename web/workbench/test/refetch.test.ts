import { describe, expect, it } from 'vitest';
import { Refetch } from '../src/live/Refetch';

/** Lets all waiting promises settle. */
const settle = () => new Promise<void>((resolve) => setTimeout(resolve));

describe('asking again', () => {
  it('makes one call at a time, and one more for all changes during a call', async () => {
    const ends: (() => void)[] = [];
    const refetch = new Refetch(() => new Promise<void>((resolve) => ends.push(resolve)));
    for (let change = 0; change < 1000; ++change) refetch.trigger();
    expect(ends).toHaveLength(1);
    ends[0]!();
    await settle();
    expect(ends).toHaveLength(2);
    ends[1]!();
    await settle();
    expect(ends).toHaveLength(2);
    refetch.trigger();
    expect(ends).toHaveLength(3);
  });

  it('goes on after a call that failed', async () => {
    let calls = 0;
    const refetch = new Refetch(() => {
      ++calls;
      return Promise.reject(new Error('no'));
    });
    refetch.trigger();
    refetch.trigger();
    await settle();
    expect(calls).toBe(2);
  });
});
