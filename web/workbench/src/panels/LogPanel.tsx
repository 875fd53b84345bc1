import type { LogLine } from '../log';
import { useTexts } from '../texts/useTexts';
import { Panel } from './Panel';

interface Props {
  title: string;
  log: readonly LogLine[];
  testId: string;
}

export function LogPanel({ title, log, testId }: Props) {
  const t = useTexts();
  return (
    <Panel title={title} className="fill" testId={testId}>
      {log.length === 0 ? (
        <p className="quiet">{t.nothingYet}</p>
      ) : (
        <ol className="scroll log" tabIndex={0} aria-label={t.newestFirst(title)}>
          {log.map(({ id, text }) => (
            <li key={id}>{text}</li>
          ))}
        </ol>
      )}
    </Panel>
  );
}
