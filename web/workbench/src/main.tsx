import { connect, NoBridgeError } from '@varnel/web-client';
import { StrictMode } from 'react';
import { createRoot } from 'react-dom/client';
import { App } from './App';
import { ConnectionWatch, loadBridge } from './bridge';
import { Providers, queries } from './desk/Providers';
import { MarketClock } from './live/MarketClock';
import { StrategyLog } from './live/StrategyLog';
import { SettingsStore } from './settings/SettingsStore';
import { readSetting } from './settings/useSetting';
import { textsOf } from './texts';
import { languageKey, preferredLanguage } from './texts/useTexts';
import { applyTheme, readTheme, themeKey } from './theme';
import { layoutKey } from './ui/Split';
import './theme.css';
import './tables.css';
import './panels.css';
import './trade.css';
import './desk.css'; // last: it has the rules for narrow windows

applyTheme('system');
const root = createRoot(document.getElementById('desk')!);

/** The desk appears in its language, theme and sizes at once, unless the terminal takes longer than this to tell them. */
const patienceMs = 500;

async function start(): Promise<void> {
  const bridge = await loadBridge();
  const sdk = connect(bridge);
  const connection = new ConnectionWatch(sdk);
  const settings = new SettingsStore(sdk);
  window.addEventListener('pagehide', () => settings.flush());

  sdk.onOpen(({ again }) => {
    settings.retry();
    if (again) void queries.invalidateQueries(); // answers of the connection before may be out of date
  });

  const look = Promise.all([languageKey, themeKey, layoutKey].map((key) => settings.setting(key).read()));
  await Promise.race([look, new Promise((resolve) => setTimeout(resolve, patienceMs))]);
  applyTheme(readSetting(settings.setting(themeKey).current().text, readTheme, 'system'));

  root.render(
    <StrictMode>
      <Providers desk={{ sdk, settings, clock: new MarketClock(sdk) }}>
        <App sdk={sdk} bridge={bridge} connection={connection} strategyLog={new StrategyLog(sdk)} />
      </Providers>
    </StrictMode>,
  );
}

function halt(error: unknown): void {
  const t = textsOf(preferredLanguage());
  root.render(
    <main className="halt" role="alert">
      <h1>{t.cannotStart}</h1>
      <p>{error instanceof NoBridgeError ? t.noBridge : (error as Error).message}</p>
      <p>{t.openFromSimulator}</p>
    </main>,
  );
}

start().catch(halt);
