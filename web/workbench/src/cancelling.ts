import { OutcomeUnknownError, UnexpectedReplyError, type CancelledOrder, type Connection } from '@varnel/web-client';

/** Identifiers of one call. */
export const portion = 1000;

export interface Cancels {
  /** How many orders are to be cancelled. Their states tell what becomes of that. */
  accepted: number;
  /** Orders that the terminal did not take to cancel, with its reasons. */
  refused: readonly { orderId: string; reason: string }[];
  /** Orders of a call without an answer: nobody knows whether they are cancelled. */
  unknown: readonly string[];
  /** Orders whose cancels were not sent. */
  unsent: readonly string[];
  /** Why the calls ended early. */
  error?: Error;
}

/** Cancels any number of orders, so many in one call, one call after the other. A call that fails is the last one. */
export async function cancelOrders(
  sdk: Pick<Connection, 'cancelOrders'>,
  orderIds: readonly string[],
  size = portion,
): Promise<Cancels> {
  const answers: CancelledOrder[] = [];
  for (let at = 0; at < orderIds.length; at += size) {
    try {
      answers.push(...(await sdk.cancelOrders({ orderIds: orderIds.slice(at, at + size) })));
    } catch (error) {
      const [waiting, rest] = [orderIds.slice(at, at + size), orderIds.slice(at + size)];
      const isUnknown = error instanceof OutcomeUnknownError || error instanceof UnexpectedReplyError;
      const lost = isUnknown ? { unknown: waiting, unsent: rest } : { unknown: [], unsent: [...waiting, ...rest] };
      return { ...counted(answers), ...lost, error: error as Error };
    }
  }
  return { ...counted(answers), unknown: [], unsent: [] };
}

function counted(answers: readonly CancelledOrder[]): Pick<Cancels, 'accepted' | 'refused'> {
  const failed = answers.filter(({ code }) => code !== '0');
  const refused = failed.map(({ orderId, msg }) => ({ orderId: String(orderId), reason: String(msg) }));
  return { accepted: answers.length - refused.length, refused };
}
