import { useEffect, useSyncExternalStore } from 'react';
import { useChoice } from './choice';
import type { Phase } from './connection';
import { languageNames, languages, useTexts, type Language } from './texts';

const themes = ['system', 'light', 'dark'] as const;

const prefersDark = window.matchMedia('(prefers-color-scheme: dark)');

function watchSystem(watcher: () => void): () => void {
  prefersDark.addEventListener('change', watcher);
  return () => prefersDark.removeEventListener('change', watcher);
}

function ThemeSwitch() {
  const t = useTexts();
  const [theme, change] = useChoice('inspector.theme', themes, 'system');
  const isDark = useSyncExternalStore(watchSystem, () => prefersDark.matches);
  const shown = theme === 'system' ? (isDark ? 'dark' : 'light') : theme;
  useEffect(() => {
    document.documentElement.dataset.theme = shown; // theme.css takes it from there
  }, [shown]);
  const names = { system: t.themeSystem, light: t.themeLight, dark: t.themeDark };
  return (
    <select
      value={theme}
      aria-label={t.theme}
      data-testid="theme"
      onChange={(event) => change(event.target.value as (typeof themes)[number])}
    >
      {themes.map((each) => (
        <option key={each} value={each}>
          {names[each]}
        </option>
      ))}
    </select>
  );
}

interface Props {
  phase: Phase;
  language: Language;
  onLanguage: (language: Language) => void;
}

export function Header({ phase, language, onLanguage }: Props) {
  const t = useTexts();
  return (
    <header className="bar">
      <h1>{t.title}</h1>
      <p className="quiet">{t.about}</p>
      <p className={`lamp ${phase}`} role="status" data-testid="connection" data-state={phase}>
        {t[phase]}
      </p>
      <select
        value={language}
        aria-label={t.language}
        data-testid="language"
        onChange={(event) => onLanguage(event.target.value as Language)}
      >
        {languages.map((each) => (
          <option key={each} value={each} lang={each}>
            {languageNames[each]}
          </option>
        ))}
      </select>
      <ThemeSwitch />
    </header>
  );
}
