import { beforeEach, describe, expect, it, vi } from 'vitest';
import { Paced } from '../src/live/frame';

const frameMs = 10;
const pauseMs = 100;

let paced: Paced;
let runs: [task: string, at: number][];

beforeEach(() => {
  vi.useFakeTimers({ now: 0 });
  runs = [];
  paced = new Paced(pauseMs, (task) => void setTimeout(task, frameMs));
  return () => vi.useRealTimers();
});

const ask = (task: string) => paced.run(() => runs.push([task, Date.now()]));

describe('paced tasks', () => {
  it('run with the next frame after a pause', () => {
    ask('one');
    vi.advanceTimersByTime(1000);
    ask('two');
    vi.advanceTimersByTime(1000);
    expect(runs).toEqual([
      ['one', 10],
      ['two', 1010],
    ]);
  });

  it('share the frame after the pause when they come during it', () => {
    ask('one');
    vi.advanceTimersByTime(20);
    ask('two');
    vi.advanceTimersByTime(20);
    ask('three');
    vi.advanceTimersByTime(1000);
    expect(runs).toEqual([
      ['one', 10],
      ['two', 120],
      ['three', 120],
    ]);
  });

  it('share one frame when they come before it', () => {
    ask('one');
    vi.advanceTimersByTime(5);
    ask('two');
    vi.advanceTimersByTime(1000);
    expect(runs).toEqual([
      ['one', 10],
      ['two', 10],
    ]);
  });

  it('wait for the next frame when they come from a task', () => {
    paced.run(() => ask('inner'));
    vi.advanceTimersByTime(1000);
    expect(runs).toEqual([['inner', 120]]);
  });
});
