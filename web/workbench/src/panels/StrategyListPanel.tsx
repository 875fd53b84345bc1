import type { Connection, StrategyAnswer } from '@varnel/web-client';
import { useState } from 'react';
import { useTexts } from '../texts/useTexts';
import { useCommand } from '../useCommand';
import { CommandOutcome } from './CommandOutcome';
import { Panel } from './Panel';

interface Props {
  sdk: Connection;
  /** The latest status of each strategy by its number. */
  statuses: ReadonlyMap<string, string>;
  onStatus: (strategyID: string, status: string) => void;
}

/** Strategies that this page has started or received a status of. Others can be typed in. */
export function StrategyListPanel({ sdk, statuses, onStatus }: Props) {
  const t = useTexts();
  const [named, setNamed] = useState('');
  const [command, run] = useCommand<StrategyAnswer>();
  const busy = command.phase === 'busy';

  const ask = (call: 'stopStrategy' | 'queryStrategyStatus', strategyID: string) =>
    run(async () => {
      const answer = await sdk[call]({ strategyID, extension: '' });
      onStatus(answer.strategyID, String(answer.strategyStatus));
      return answer;
    });
  const button = (call: 'stopStrategy' | 'queryStrategyStatus', strategyID: string, disabled: boolean) => {
    const title = call === 'stopStrategy' ? t.stop : t.ask;
    return (
      <button
        type="button"
        className="plain"
        aria-label={strategyID === '' ? title : `${title} ${strategyID}`}
        disabled={busy || disabled}
        onClick={() => ask(call, strategyID)}
      >
        {title}
      </button>
    );
  };
  const buttons = (strategyID: string, disabled: boolean) => (
    <span className="inline">
      {button('queryStrategyStatus', strategyID, disabled)}
      {button('stopStrategy', strategyID, disabled)}
    </span>
  );

  return (
    <Panel title={t.strategyList} testId="strategies">
      <div className="tools">
        <label className="inline">
          {t.strategyId}
          <input value={named} spellCheck={false} onChange={(event) => setNamed(event.target.value.trim())} />
        </label>
        {buttons(named, named === '')}
      </div>
      {statuses.size === 0 ? (
        <p className="quiet">{t.noStrategies}</p>
      ) : (
        <table data-testid="strategy-table">
          <thead>
            <tr>
              <th scope="col">{t.strategyId}</th>
              <th scope="col">{t.status}</th>
              <th scope="col">{t.actions}</th>
            </tr>
          </thead>
          <tbody>
            {[...statuses].map(([strategyID, status]) => (
              <tr key={strategyID} data-id={strategyID}>
                <td className="figure">{strategyID}</td>
                <td data-key="status" data-status={status}>
                  {t.code('strategyStatus', status)}
                </td>
                <td>{buttons(strategyID, false)}</td>
              </tr>
            ))}
          </tbody>
        </table>
      )}
      <div className="outcome" data-testid="strategy-outcome">
        <CommandOutcome command={command}>
          {({ strategyID, strategyStatus }) => (
            <p>
              <code>{strategyID}</code> {t.code('strategyStatus', String(strategyStatus))}
            </p>
          )}
        </CommandOutcome>
      </div>
    </Panel>
  );
}
