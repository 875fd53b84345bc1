import { beforeEach, describe, expect, it, vi } from 'vitest';
import { SettingsStore } from '../src/settings/SettingsStore';
import { readSetting } from '../src/settings/useSetting';

class Terminal {
  readonly saved: [key: string, value: string][] = [];
  readonly reads: { resolve: (text: string) => void; reject: (error: Error) => void }[] = [];
  readonly getSetting = () =>
    new Promise<string>((resolve, reject) => {
      this.reads.push({ resolve, reject });
    });
  readonly saveSetting = ({ key, value }: { key: string; value: string }) => {
    this.saved.push([key, value]);
    return Promise.resolve('');
  };
}

const delayMs = 400;
let terminal: Terminal;
let store: SettingsStore;

beforeEach(() => {
  vi.useFakeTimers();
  terminal = new Terminal();
  store = new SettingsStore(terminal, delayMs);
  return () => vi.useRealTimers();
});

const append = (more: string) => (before: string) => before + more;

describe('a setting', () => {
  it('is read once, however many parts of the desk ask', async () => {
    const reads = [store.setting('k').read(), store.setting('k').read()];
    terminal.reads[0]!.resolve('saved');
    await Promise.all(reads);
    await store.setting('k').read();
    expect(terminal.reads).toHaveLength(1);
    expect(store.setting('k').current()).toEqual({ text: 'saved', isKnown: true, error: undefined });
  });

  it('keeps changes that come before it has been read, and applies them to what is read', async () => {
    const setting = store.setting('k');
    const read = setting.read();
    setting.change(append('1'));
    setting.change(append('2'));
    expect(setting.current()).toMatchObject({ text: '12', isKnown: false });
    await vi.advanceTimersByTimeAsync(10 * delayMs);
    expect(terminal.saved).toEqual([]);
    terminal.reads[0]!.resolve('saved');
    await read;
    expect(setting.current()).toMatchObject({ text: 'saved12', isKnown: true });
    await vi.advanceTimersByTimeAsync(delayMs);
    expect(terminal.saved).toEqual([['k', 'saved12']]);
  });

  it('is saved once for a burst of changes', async () => {
    const setting = store.setting('k');
    const read = setting.read();
    terminal.reads[0]!.resolve('');
    await read;
    for (let change = 0; change < 100; ++change) {
      setting.change(append('x'));
      await vi.advanceTimersByTimeAsync(delayMs / 10);
    }
    await vi.advanceTimersByTimeAsync(delayMs);
    expect(terminal.saved).toEqual([['k', 'x'.repeat(100)]]);
  });

  it('is saved at once when the page goes, and only if something waits', async () => {
    const setting = store.setting('k');
    const read = setting.read();
    terminal.reads[0]!.resolve('');
    await read;
    store.flush();
    setting.change(append('x'));
    store.flush();
    store.flush();
    expect(terminal.saved).toEqual([['k', 'x']]);
    await vi.advanceTimersByTimeAsync(2 * delayMs);
    expect(terminal.saved).toHaveLength(1);
  });

  it('that cannot be read loses no change, and is read again when asked', async () => {
    const setting = store.setting('k');
    const read = setting.read();
    setting.change(append('1'));
    terminal.reads[0]!.reject(new Error('no answer'));
    await read;
    expect(setting.current()).toMatchObject({ text: '1', isKnown: false, error: new Error('no answer') });
    store.flush();
    await vi.advanceTimersByTimeAsync(2 * delayMs);
    expect(terminal.saved).toEqual([]);
    store.retry();
    terminal.reads[1]!.resolve('saved');
    await vi.advanceTimersByTimeAsync(delayMs);
    expect(setting.current()).toEqual({ text: 'saved1', isKnown: true, error: undefined });
    expect(terminal.saved).toEqual([['k', 'saved1']]);
  });

  it('says when it could not be saved', async () => {
    const saveSetting = () => Promise.reject(new Error('refused'));
    const failing = new SettingsStore({ getSetting: terminal.getSetting, saveSetting }, delayMs);
    const setting = failing.setting('k');
    const read = setting.read();
    terminal.reads[0]!.resolve('');
    await read;
    setting.change(append('x'));
    await vi.advanceTimersByTimeAsync(delayMs);
    expect(setting.current()).toMatchObject({ text: 'x', error: new Error('refused') });
  });

  it('tells its watchers of each change', async () => {
    const setting = store.setting('k');
    const seen: string[] = [];
    const stop = setting.watch(() => seen.push(setting.current().text));
    const read = setting.read();
    terminal.reads[0]!.resolve('a');
    await read;
    setting.change(append('b'));
    stop();
    setting.change(append('c'));
    expect(seen).toEqual(['a', 'ab']);
  });
});

describe('a saved text', () => {
  const readNumber = (value: unknown) => (typeof value === 'number' ? value : undefined);
  it.each([
    ['7', 7],
    ['', 1],
    ['"7"', 1],
    ['{', 1],
    ['null', 1],
  ])('%j gives %i', (text, value) => {
    expect(readSetting(text, readNumber, 1)).toBe(value);
  });
});
