import { useCallback, useEffect, useMemo, useSyncExternalStore } from 'react';
import { useDesk } from '../desk/DeskContext';

/** A new value, or a function of the value before. */
export type ChangeOf<T> = T | ((before: T) => T);

export interface SettingInfo {
  /** Whether the saved value has been read. A change before that is kept and applied to what is read. */
  isKnown: boolean;
  /** Why the setting could not be read or saved. */
  error: Error | undefined;
}

/** The value behind a saved text. A text that is no JSON, or that `read` does not accept, gives `initial`. */
export function readSetting<T>(text: string, read: (value: unknown) => T | undefined, initial: T): T {
  try {
    return read(JSON.parse(text)) ?? initial;
  } catch {
    return initial;
  }
}

/**
 * A value that the terminal keeps for the login, and a function that changes it. `read` checks what was saved, which may
 * come from an older desk; `initial` holds until something is saved. Both must stay the same from one rendering to the
 * next.
 */
export function useSetting<T>(
  key: string,
  read: (value: unknown) => T | undefined,
  initial: T,
): [T, (change: ChangeOf<T>) => void, SettingInfo] {
  const setting = useDesk().settings.setting(key);
  useEffect(() => void setting.read(), [setting]);
  const { text, isKnown, error } = useSyncExternalStore(setting.watch, setting.current);
  const value = useMemo(() => readSetting(text, read, initial), [text, read, initial]);
  const change = useCallback(
    (next: ChangeOf<T>) =>
      setting.change((before) =>
        JSON.stringify(
          typeof next === 'function' ? (next as (before: T) => T)(readSetting(before, read, initial)) : next,
        ),
      ),
    [setting, read, initial],
  );
  return [value, change, { isKnown, error }];
}
