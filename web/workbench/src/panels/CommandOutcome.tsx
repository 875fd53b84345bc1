import { FailedCallError, type OrderOutcome } from '@varnel/web-client';
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
      return <Refused reason={reasonOf(command.error)} />;
    case 'unknown':
      return <Unknown />;
  }
}

export function Refused({ reason }: { reason: string }) {
  return (
    <p className="problem" role="alert">
      {reason}
    </p>
  );
}

export function Unknown() {
  return (
    <p className="problem" role="alert">
      结果未知，请先查委托，勿重复提交。Outcome unknown: look at the orders before you send anything again.
    </p>
  );
}

/** What became of one order. */
export function PlacedOutcome({ order }: { order: OrderOutcome }) {
  switch (order.outcome) {
    case 'accepted':
      return (
        <p>
          已受理 accepted <code>{order.orderID}</code>
        </p>
      );
    case 'refused':
      return <Refused reason={order.reason} />;
    case 'refusedWithoutReason':
      return <p className="problem">终端未受理，亦未说明原因 not taken, and no reason was given</p>;
    case 'unknown':
      return <Unknown />;
  }
}

/** The terminal's own reason, if it gave one. */
function reasonOf(error: Error): string {
  return error instanceof FailedCallError && error.msg !== '' ? error.msg : error.message;
}
