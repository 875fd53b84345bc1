import { useSyncExternalStore } from 'react';
import type { ConnectionState, ConnectionWatch } from '../bridge';
import { useSetting } from '../settings/useSetting';
import { languageNames, languages, type Language } from '../texts';
import { languageKey, preferredLanguage, readLanguage, useTexts } from '../texts/useTexts';
import { themes, useThemeSetting, type Theme } from '../theme';

function ConnectionLamp({ state }: { state: ConnectionState }) {
  const t = useTexts();
  const phases = {
    connecting: t.connecting,
    open: t.connected,
    reconnecting: t.reconnecting,
    closed: t.disconnected,
  };
  return (
    <p className={`lamp ${state.phase}`} role="status" data-testid="connection" data-state={state.phase}>
      {phases[state.phase]}
      {state.phase === 'closed' && ` (${[state.code, state.reason].filter(Boolean).join(' ')}) · ${t.pleaseReload}`}
    </p>
  );
}

function LanguageSwitch() {
  const t = useTexts();
  const [language, change] = useSetting<Language>(languageKey, readLanguage, preferredLanguage());
  return (
    <select
      value={language}
      aria-label={t.language}
      data-testid="language"
      onChange={(event) => change(event.target.value as Language)}
    >
      {languages.map((each) => (
        <option key={each} value={each} lang={each}>
          {languageNames[each]}
        </option>
      ))}
    </select>
  );
}

function ThemeSwitch() {
  const t = useTexts();
  const [theme, change] = useThemeSetting();
  const names = { system: t.themeSystem, light: t.themeLight, dark: t.themeDark };
  return (
    <select
      value={theme}
      aria-label={t.theme}
      data-testid="theme"
      onChange={(event) => change(event.target.value as Theme)}
    >
      {themes.map((each) => (
        <option key={each} value={each}>
          {names[each]}
        </option>
      ))}
    </select>
  );
}

/** What the desk shows without a connection looks as before, so it says that it is old. */
function Lost({ phase }: Pick<ConnectionState, 'phase'>) {
  const t = useTexts();
  const isForGood = phase === 'closed';
  return (
    <div role="alert">
      {(isForGood || phase === 'reconnecting') && (
        <p className="lost" data-testid="lost">
          {isForGood ? t.lostForGood : t.lostForNow}
          {isForGood && (
            <button type="button" onClick={() => window.location.reload()}>
              {t.reload}
            </button>
          )}
        </p>
      )}
    </div>
  );
}

export function Header({ connection, login }: { connection: ConnectionWatch; login: string | undefined }) {
  const t = useTexts();
  const state = useSyncExternalStore(connection.watch, connection.current);
  return (
    <header>
      <div className="bar">
        <h1>{t.title}</h1>
        <p className="simulation">{t.simulation}</p>
        <ConnectionLamp state={state} />
        <p className="who">
          {t.loginTrader} <strong>{login ?? '—'}</strong>
        </p>
        <LanguageSwitch />
        <ThemeSwitch />
      </div>
      <Lost phase={state.phase} />
    </header>
  );
}
