import { useEffect, useSyncExternalStore } from 'react';
import { useSetting } from './settings/useSetting';

export const themes = ['system', 'light', 'dark'] as const;
export type Theme = (typeof themes)[number];

export const themeKey = 'workbench.theme';

export function readTheme(value: unknown): Theme | undefined {
  return themes.find((theme) => theme === value);
}

const prefersDark = window.matchMedia('(prefers-color-scheme: dark)');

/** What the style sheets know: `system` as the browser has it. */
export function resolved(theme: Theme): 'light' | 'dark' {
  return theme === 'system' ? (prefersDark.matches ? 'dark' : 'light') : theme;
}

/** The style sheets and the charts take the theme from the root element. */
export function applyTheme(theme: Theme): void {
  document.documentElement.dataset.theme = resolved(theme);
}

function watchSystem(watcher: () => void): () => void {
  prefersDark.addEventListener('change', watcher);
  return () => prefersDark.removeEventListener('change', watcher);
}

export function useThemeSetting(): [Theme, (theme: Theme) => void] {
  const [theme, change] = useSetting<Theme>(themeKey, readTheme, 'system');
  return [theme, change];
}

/** The theme on the screen. Charts draw themselves anew when it changes. */
export function useTheme(): 'light' | 'dark' {
  const [theme] = useThemeSetting();
  useSyncExternalStore(watchSystem, () => prefersDark.matches);
  const shown = resolved(theme);
  useEffect(() => applyTheme(theme), [theme, shown]);
  return shown;
}
