import type { Connection, StrategyAnswer } from '@varnel/web-client';
import { useState } from 'react';
import { useCommand } from '../useCommand';
import { CommandOutcome } from './CommandOutcome';
import { Panel } from './Panel';

export interface StrategyState {
  strategyID: string;
  status: string;
}

interface Props {
  sdk: Connection;
  states: readonly StrategyState[];
  onStatus: (strategyID: string, status: string) => void;
}

/** Strategies that this page has started or received a status of. Others can be typed in. */
export function StrategyListPanel({ sdk, states, onStatus }: Props) {
  const [named, setNamed] = useState('');
  const [command, run] = useCommand<StrategyAnswer>();
  const busy = command.phase === 'busy';

  const ask = (call: 'stopStrategy' | 'queryStrategyStatus', strategyID: string) =>
    run(async () => {
      const answer = await sdk[call]({ strategyID, extension: '' });
      onStatus(answer.strategyID, String(answer.strategyStatus));
      return answer;
    });
  const buttons = (strategyID: string, disabled: boolean) => (
    <span className="inline">
      <button
        type="button"
        className="plain"
        disabled={busy || disabled}
        onClick={() => ask('queryStrategyStatus', strategyID)}
      >
        查询 Ask
      </button>
      <button
        type="button"
        className="plain"
        disabled={busy || disabled}
        onClick={() => ask('stopStrategy', strategyID)}
      >
        停止 Stop
      </button>
    </span>
  );

  return (
    <Panel title="策略" hint="Strategies" testId="strategies">
      <div className="tools">
        <label className="inline">
          策略编号 <small>identifier</small>
          <input value={named} spellCheck={false} onChange={(event) => setNamed(event.target.value.trim())} />
        </label>
        {buttons(named, named === '')}
      </div>
      {states.length === 0 ? (
        <p className="quiet">尚无策略 none yet</p>
      ) : (
        <table data-testid="strategy-table">
          <thead>
            <tr>
              <th scope="col">编号</th>
              <th scope="col">状态</th>
              <th scope="col">操作</th>
            </tr>
          </thead>
          <tbody>
            {states.map(({ strategyID, status }) => (
              <tr key={strategyID} data-id={strategyID}>
                <td className="number">{strategyID}</td>
                <td data-key="status">{status}</td>
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
              <code>{strategyID}</code> {String(strategyStatus)}
            </p>
          )}
        </CommandOutcome>
      </div>
    </Panel>
  );
}
