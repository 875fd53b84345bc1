import type { Calls, ReadAnswer } from './calls.js';
import { CallError, FailedCallError, NotSentError } from './errors.js';
import type { Arguments } from './methods.js';
import type { CallOptions } from './pendingCall.js';
import { placedOrder, type ListedOrder, type PlacedOrder } from './records.js';
import type { SimulatorVocabulary, Vocabulary } from './vocabulary.js';

/** What became of an order that was sent. */
export type OrderOutcome<V extends Vocabulary = SimulatorVocabulary> =
  | {
      readonly outcome: 'accepted';
      /** The terminal's number of the order. */
      readonly orderID: string;
      readonly order: PlacedOrder<V> | ListedOrder<V>;
    }
  | {
      readonly outcome: 'refused';
      /** The terminal's reason, for a person. */
      readonly reason: string;
      /** The number under which the terminal keeps the refusal. Without it the request as a whole was refused. */
      readonly orderID?: string;
      readonly order?: PlacedOrder<V> | ListedOrder<V>;
    }
  | {
      /** There is no order, and the terminal does not say why. */
      readonly outcome: 'refusedWithoutReason';
      readonly order?: PlacedOrder<V> | ListedOrder<V>;
    }
  | {
      /**
       * No answer came, or an unreadable one. The order may be in the terminal's books: look it up with `findOrders`,
       * and never place it again without a look.
       */
      readonly outcome: 'unknown';
      readonly orderTag: string;
      readonly error: CallError;
    };

const succeeded = '0';
const failed = '-1';

/** Places one order. Rejects only when nothing was sent. */
export async function insertOrder(
  calls: Calls,
  values: Arguments<'insertOrder'>,
  options?: CallOptions,
): Promise<OrderOutcome> {
  const { orderTag } = values;
  const read: ReadAnswer = (order, unexpected) => outcomeOf(orderTag, order as PlacedOrder, succeeded, '', unexpected);
  try {
    return (await calls.ask('insertOrder', { ...values }, options, { read })) as OrderOutcome;
  } catch (error) {
    return outcomeOfRejection(orderTag, error, (data) => placedOrder(data));
  }
}

/** Places a list of orders. Gives an outcome for each of them, in their order. Rejects only when nothing was sent. */
export async function insertOrderList(
  calls: Calls,
  values: Arguments<'insertOrderList'>,
  options?: CallOptions,
): Promise<OrderOutcome[]> {
  const { orderTag } = values;
  const orders = Array.isArray(values.orders) ? [...values.orders] : values.orders; // the page may change its list
  const read: ReadAnswer = (answer, unexpected) => {
    const listed = answer as ListedOrder[];
    // Without an outcome for each order nobody knows which outcome is whose.
    if (listed.length !== orders.length) throw unexpected(`${listed.length} outcomes for ${orders.length} orders`);
    return listed.map((order) => outcomeOf(orderTag, order, order.code, order.msg, unexpected));
  };
  try {
    return (await calls.ask('insertOrderList', { ...values, orders }, options, { read })) as OrderOutcome[];
  } catch (error) {
    const ofAll = outcomeOfRejection(orderTag, error, () => undefined);
    return orders.map(() => ofAll);
  }
}

function outcomeOf(
  orderTag: string,
  order: PlacedOrder | ListedOrder | undefined,
  code: string,
  msg: string,
  unexpected: (reason: string) => CallError,
): OrderOutcome {
  const orderID = order?.orderID;
  const about = order && { order };
  if (code === succeeded && orderID) return { outcome: 'accepted', orderID, order: order! };
  if (code === succeeded && orderID === undefined) return { outcome: 'refusedWithoutReason', ...about };
  if (code === succeeded) return { outcome: 'unknown', orderTag, error: unexpected('an accepted order has no number') };
  if (code !== failed) return { outcome: 'unknown', orderTag, error: unexpected(`an order has the code "${code}"`) };
  if (msg === '') return { outcome: 'refusedWithoutReason', ...about };
  return { outcome: 'refused', reason: msg, ...(orderID && { orderID }), ...about };
}

/** Throws again when nothing was sent. */
function outcomeOfRejection(
  orderTag: string,
  error: unknown,
  readOrder: (resultData: unknown) => PlacedOrder | undefined,
): OrderOutcome {
  if (!(error instanceof CallError) || error instanceof NotSentError) throw error;
  if (!(error instanceof FailedCallError)) return { outcome: 'unknown', orderTag, error };
  let order: PlacedOrder | undefined;
  try {
    order = readOrder(error.resultData);
  } catch {
    // The request was refused as a whole, for example for an unknown fund account.
  }
  return outcomeOf(orderTag, order, error.code, error.msg, () => error);
}
