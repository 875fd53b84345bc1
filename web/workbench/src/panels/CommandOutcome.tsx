import { FailedCallError } from '@varnel/web-client';
import type { ReactNode } from 'react';
import type { Command } from '../useCommand';

/** Shows the outcome of a call that trades, starts or stops something. */
export function CommandOutcome<T>({ command, children }: { command: Command<T>; children: (data: T) => ReactNode }) {
  switch (command.phase) {
    case 'idle':
      return null;
    case 'busy':
      return <p className="quiet">等待应答 waiting…</p>;
    case 'done':
      return <>{children(command.data)}</>;
    case 'refused':
      return (
        <p className="problem" role="alert">
          {reasonOf(command.error)}
        </p>
      );
    case 'unknown':
      return (
        <p className="problem" role="alert">
          结果未知，请先查委托，勿重复提交。Outcome unknown: look at the orders before you send anything again.
        </p>
      );
  }
}

/** The terminal's own reason, if it gave one. */
function reasonOf(error: Error): string {
  return error instanceof FailedCallError && error.msg !== '' ? error.msg : error.message;
}
