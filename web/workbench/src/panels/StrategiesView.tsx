import type { Connection } from '@varnel/web-client';
import { useCallback, useSyncExternalStore } from 'react';
import type { StrategyLog } from '../live/StrategyLog';
import { useTexts } from '../texts/useTexts';
import { Split } from '../ui/Split';
import { CustomMessagePanel } from './CustomMessagePanel';
import { LogPanel } from './LogPanel';
import { StartStrategyPanel } from './StartStrategyPanel';
import { StrategyListPanel } from './StrategyListPanel';

/** The strategies of the terminal's platform that this page has received a status of. */
export function StrategiesView({ sdk, log }: { sdk: Connection; log: StrategyLog }) {
  const t = useTexts();
  const { statuses, statusLines, messageLines } = useSyncExternalStore(log.watch, log.current);
  const note = useCallback((strategyID: string, status: string) => log.note(strategyID, status), [log]);
  return (
    <Split
      id="strategies"
      parts={[
        {
          id: 'strategies-actions',
          size: 40,
          min: 260,
          className: 'column',
          content: (
            <>
              <StartStrategyPanel sdk={sdk} onStarted={note} />
              <CustomMessagePanel sdk={sdk} />
              <LogPanel title={t.receivedMessages} log={messageLines} testId="custom-log" />
            </>
          ),
        },
        {
          id: 'strategies-states',
          size: 60,
          min: 300,
          className: 'column',
          content: (
            <>
              <StrategyListPanel sdk={sdk} statuses={statuses} onStatus={note} />
              <LogPanel title={t.statusLog} log={statusLines} testId="status-log" />
            </>
          ),
        },
      ]}
    />
  );
}
