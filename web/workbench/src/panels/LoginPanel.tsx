import type { Connection } from '@varnel/web-client';
import { useTexts } from '../texts/useTexts';
import { useAsk } from '../useAsk';
import { Outcome, Panel } from './Panel';

export function LoginPanel({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const login = useAsk(['login'], () => sdk.getLoginTrader());
  const token = useAsk(['token'], () => sdk.getToken());
  const traders = useAsk(['traders'], () => sdk.getTraderList());
  const refresh = (
    <button type="button" className="plain" onClick={() => [login, token, traders].forEach(({ again }) => again())}>
      {t.refresh}
    </button>
  );
  return (
    <Panel title={t.login} tools={refresh} testId="login">
      <dl>
        <dt>{t.loginTrader}</dt>
        <dd data-testid="login-trader">
          <Outcome of={login}>{(account) => account}</Outcome>
        </dd>
        <dt>{t.token}</dt>
        <dd data-testid="token">
          <Outcome of={token}>{(text) => <code>{text}</code>}</Outcome>
        </dd>
        <dt>{t.traders}</dt>
        <dd>
          <Outcome of={traders}>
            {(ids) =>
              ids.length === 0 ? (
                <p className="quiet">{t.none}</p>
              ) : (
                <ul className="tags" data-testid="traders">
                  {ids.map((id) => (
                    <li key={id} aria-current={id === login.data || undefined}>
                      {id}
                    </li>
                  ))}
                </ul>
              )
            }
          </Outcome>
        </dd>
      </dl>
    </Panel>
  );
}
