import type { CancelledOrder, Connection } from '@varnel/web-client';

/** Identifiers of one call. */
export const portion = 1000;

export interface Cancels {
  cancelled: number;
  /** Orders that the terminal did not cancel, with its reasons. */
  refused: readonly { orderId: string; reason: string }[];
  /** Orders of calls without an answer: nobody knows whether they are cancelled. */
  unknown: readonly string[];
  /** The first error of these calls. */
  error?: Error;
}

/** Cancels any number of orders, so many in one call, one call after the other. No call is repeated. */
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
      return { ...counted(answers), unknown: orderIds.slice(at, at + size), error: error as Error };
    }
  }
  return { ...counted(answers), unknown: [] };
}

function counted(answers: readonly CancelledOrder[]): Pick<Cancels, 'cancelled' | 'refused'> {
  const failed = answers.filter(({ code }) => code !== '0');
  const refused = failed.map(({ orderId, msg }) => ({ orderId: String(orderId), reason: String(msg) }));
  return { cancelled: answers.length - refused.length, refused };
}
