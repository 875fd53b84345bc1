import type { LogLine } from '../log';
import { Panel } from './Panel';

interface Props {
  title: string;
  hint: string;
  log: readonly LogLine[];
  testId: string;
}

export function LogPanel({ title, hint, log, testId }: Props) {
  return (
    <Panel title={title} hint={hint} className="fill" testId={testId}>
      {log.length === 0 ? (
        <p className="quiet">暂无 nothing yet</p>
      ) : (
        <ol className="scroll log" tabIndex={0} aria-label={`${title} ${hint}，新的在前 newest first`}>
          {log.map(({ id, text }) => (
            <li key={id}>{text}</li>
          ))}
        </ol>
      )}
    </Panel>
  );
}
