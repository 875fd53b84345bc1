import { beforeEach, describe, expect, it, vi } from 'vitest';
import { Throttled } from '../src/live/Throttled';

const periodMs = 1000;

interface Run {
  at: number;
  end: () => void;
  fail: () => void;
}

let runs: Run[];
let throttled: Throttled;

beforeEach(() => {
  vi.useFakeTimers({ now: 0 });
  runs = [];
  const task = () =>
    new Promise<void>((resolve, reject) =>
      runs.push({ at: Date.now(), end: resolve, fail: () => reject(new Error('failed')) }),
    );
  throttled = new Throttled(task, periodMs);
  return () => vi.useRealTimers();
});

const pass = (ms: number) => vi.advanceTimersByTimeAsync(ms);
const times = () => runs.map(({ at }) => at);

describe('a throttled task', () => {
  it('runs at once, then once in each period, and a last time after the last change', async () => {
    for (let at = 0; at < 2500; at += 100) {
      throttled.trigger();
      runs.at(-1)!.end();
      await pass(100);
    }
    await pass(10 * periodMs);
    expect(times()).toEqual([0, 1000, 2000, 3000]);
  });

  it('never runs twice at the same time', async () => {
    throttled.trigger();
    throttled.trigger();
    await pass(3 * periodMs);
    expect(times()).toEqual([0]);
    runs[0]!.end();
    await pass(0);
    expect(times()).toEqual([0, 3000]);
  });

  it('runs again after a failure', async () => {
    throttled.trigger();
    runs[0]!.fail();
    await pass(periodMs);
    throttled.trigger();
    expect(times()).toEqual([0, 1000]);
  });

  it('does not run after it was stopped', async () => {
    throttled.trigger();
    throttled.trigger();
    throttled.stop();
    runs[0]!.end();
    await pass(3 * periodMs);
    expect(times()).toEqual([0]);
  });
});
