import type { ReactNode } from 'react';
import { reasonOf } from '../errors';
import { useTexts } from '../texts/useTexts';
import type { Command } from '../useCommand';

/** Shows the outcome of a call that trades, starts or stops something. */
export function CommandOutcome<T>({ command, children }: { command: Command<T>; children: (data: T) => ReactNode }) {
  const t = useTexts();
  switch (command.phase) {
    case 'idle':
      return null;
    case 'busy':
      return <p className="quiet">{t.waiting}</p>;
    case 'done':
      return <>{children(command.data)}</>;
    case 'refused':
      return (
        <p className="problem" role="alert">
          {reasonOf(command.error, t)}
        </p>
      );
    case 'unknown':
      return (
        <p className="problem" role="alert">
          {t.commandUnknown}
        </p>
      );
  }
}
