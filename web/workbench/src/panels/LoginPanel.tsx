import type { Answered } from '../useAnswer';
import { Outcome, Panel } from './Panel';

interface Props {
  login: Answered<string>;
  token: Answered<string>;
  traders: Answered<string[]>;
  onRefresh: () => void;
}

export function LoginPanel({ login, token, traders, onRefresh }: Props) {
  const refresh = (
    <button type="button" className="plain" onClick={onRefresh}>
      刷新 Refresh
    </button>
  );
  return (
    <Panel title="登录" hint="Login" tools={refresh} testId="login">
      <dl>
        <dt>
          登录交易员 <small>login trader</small>
        </dt>
        <dd data-testid="login-trader">
          <Outcome of={login}>{(account) => account}</Outcome>
        </dd>
        <dt>
          令牌 <small>token</small>
        </dt>
        <dd data-testid="token">
          <Outcome of={token}>{(text) => <code>{text}</code>}</Outcome>
        </dd>
        <dt>
          交易员 <small>traders</small>
        </dt>
        <dd>
          <Outcome of={traders}>
            {(ids) =>
              ids.length === 0 ? (
                <p className="quiet">无 none</p>
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
