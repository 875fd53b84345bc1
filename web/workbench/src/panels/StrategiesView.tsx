import type { Connection } from '@varnel/web-client';
import { useState } from 'react';
import { usePush } from '../live/hooks';
import { withLine, type LogLine } from '../log';
import { CustomMessagePanel } from './CustomMessagePanel';
import { LogPanel } from './LogPanel';
import { StartStrategyPanel } from './StartStrategyPanel';
import { StrategyListPanel, type StrategyState } from './StrategyListPanel';

/** The strategies of the terminal's platform that this page has received a status of. */
export function StrategiesView({ sdk }: { sdk: Connection }) {
  const [states, setStates] = useState<ReadonlyMap<string, StrategyState>>(new Map());
  const [log, setLog] = useState<readonly LogLine[]>([]);

  const note = (strategyID: string, status: string) =>
    setStates((before) => new Map([...before, [strategyID, { strategyID, status }]]));
  usePush(sdk, 'on_vlxStrategyStatusUpdate', (strategyID, status) => {
    note(strategyID, status);
    setLog((before) => withLine(before, `${strategyID} ${status}`));
  });

  return (
    <>
      <div className="column">
        <StartStrategyPanel sdk={sdk} onStarted={note} />
        <CustomMessagePanel sdk={sdk} />
      </div>
      <div className="column">
        <StrategyListPanel sdk={sdk} states={[...states.values()]} onStatus={note} />
        <LogPanel title="状态记录" hint="Status log" log={log} testId="status-log" />
      </div>
    </>
  );
}
