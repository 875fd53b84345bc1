import { connect } from '@varnel/web-client';
import { StrictMode } from 'react';
import { createRoot } from 'react-dom/client';
import { App } from './App';
import { ConnectionWatch, loadBridge } from './bridge';
import { Providers } from './desk/Providers';
import { Journal } from './journal';
import { StrategyLog } from './live/StrategyLog';
import { SettingsStore } from './settings/SettingsStore';
import { readSetting } from './settings/useSetting';
import { textsOf } from './texts';
import { languageKey, preferredLanguage } from './texts/useTexts';
import { applyTheme, readTheme, themeKey } from './theme';
import './theme.css';
import './tables.css';
import './panels.css';
import './trade.css';
import './desk.css'; // last: it has the rules for narrow windows

applyTheme('system');
const root = createRoot(document.getElementById('desk')!);

// The connection may open as soon as the bridge is loaded, so listen before that.
const early: [string, ...unknown[]][] = [];
let note = (...event: [string, ...unknown[]]): void => {
  early.push(event);
};
const connection = new ConnectionWatch(window, (...event) => note(...event));

/** The desk appears in its language and theme at once, unless the terminal takes longer than this to tell them. */
const patienceMs = 500;

try {
  const journal = new Journal(await loadBridge());
  note = (...event) => journal.noteConnection(...event);
  early.forEach((event) => note(...event));
  const sdk = connect(journal);
  const settings = new SettingsStore(sdk);
  window.addEventListener('pagehide', () => settings.flush());

  const look = Promise.all([languageKey, themeKey].map((key) => settings.setting(key).read()));
  await Promise.race([look, new Promise((resolve) => setTimeout(resolve, patienceMs))]);
  applyTheme(readSetting(settings.setting(themeKey).current().text, readTheme, 'system'));

  root.render(
    <StrictMode>
      <Providers desk={{ sdk, settings }}>
        <App sdk={sdk} journal={journal} connection={connection} strategyLog={new StrategyLog(sdk)} />
      </Providers>
    </StrictMode>,
  );
} catch (error) {
  const t = textsOf(preferredLanguage());
  root.render(
    <main className="halt" role="alert">
      <h1>{t.cannotStart}</h1>
      <p>{(error as Error).message}</p>
      <p>{t.openFromSimulator}</p>
    </main>,
  );
}
