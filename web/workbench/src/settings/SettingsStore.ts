import type { Connection } from '@varnel/web-client';

type Sdk = Pick<Connection, 'getSetting' | 'saveSetting'>;
type Change = (text: string) => string;

export interface SettingState {
  /** The text with all changes, saved or not. */
  text: string;
  /** Whether the saved text has been read. */
  isKnown: boolean;
  error: Error | undefined;
}

/**
 * One text that the terminal keeps. It is read once. Changes that come before it has been read are applied to what is
 * read, so that they neither get lost nor overwrite it. Changes are saved after a pause, the last one of a burst only.
 */
class Setting {
  private state: SettingState = { text: '', isKnown: false, error: undefined };
  private readonly early: Change[] = [];
  private readonly watchers = new Set<() => void>();
  private reading = false;
  private timer: ReturnType<typeof setTimeout> | undefined;

  constructor(
    private readonly sdk: Sdk,
    private readonly key: string,
    private readonly delayMs: number,
  ) {}

  readonly current = (): SettingState => this.state;

  readonly watch = (watcher: () => void): (() => void) => {
    this.watchers.add(watcher);
    return () => this.watchers.delete(watcher);
  };

  /** Reads the saved text, unless it is known. After a failure the next call tries again. */
  async read(): Promise<void> {
    if (this.state.isKnown || this.reading) return;
    this.reading = true;
    try {
      const saved = await this.sdk.getSetting({ key: this.key });
      const text = this.early.reduce((before, change) => change(before), saved);
      this.early.length = 0;
      this.set({ text, isKnown: true, error: undefined });
      if (text !== saved) this.saveSoon();
    } catch (error) {
      this.set({ ...this.state, error: error as Error });
    } finally {
      this.reading = false;
    }
  }

  change(change: Change): void {
    if (!this.state.isKnown) this.early.push(change);
    this.set({ ...this.state, text: change(this.state.text) });
    if (this.state.isKnown) this.saveSoon();
  }

  /** Saves at once what still waits. */
  flush(): void {
    if (this.timer === undefined) return;
    clearTimeout(this.timer);
    this.save();
  }

  private saveSoon(): void {
    clearTimeout(this.timer);
    this.timer = setTimeout(() => this.save(), this.delayMs);
  }

  private save(): void {
    this.timer = undefined;
    this.sdk.saveSetting({ key: this.key, value: this.state.text }).then(
      () => this.set({ ...this.state, error: undefined }),
      (error: Error) => this.set({ ...this.state, error }),
    );
  }

  private set(state: SettingState): void {
    this.state = state;
    this.watchers.forEach((watcher) => watcher());
  }
}

/** The settings of the desk. Every part of the page that uses a key shares it. */
export class SettingsStore {
  private readonly settings = new Map<string, Setting>();

  constructor(
    private readonly sdk: Sdk,
    private readonly delayMs = 400,
  ) {}

  setting(key: string): Setting {
    let setting = this.settings.get(key);
    if (!setting) this.settings.set(key, (setting = new Setting(this.sdk, key, this.delayMs)));
    return setting;
  }

  /** Reads again what could not be read. */
  retry(): void {
    for (const setting of this.settings.values()) void setting.read();
  }

  /** Saves at once what still waits, before the page goes. */
  flush(): void {
    for (const setting of this.settings.values()) setting.flush();
  }
}
