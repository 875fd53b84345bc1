import type { Row } from './entry';

function collectOrderIds(value: unknown, found: Set<string>): void {
  if (typeof value !== 'object' || value === null) return;
  for (const [key, part] of Object.entries(value)) {
    if (key === 'orderID' && typeof part === 'string' && part) found.add(part);
    else collectOrderIds(part, found);
  }
}

/** The orders that the reply to a trade call names. */
function ordersOf(call: Row | undefined): Set<string> {
  const orders = new Set<string>();
  const text = call?.entry.name?.startsWith('Trade_') ? call.reply?.entry.args?.[0] : undefined;
  if (typeof text !== 'string') return orders;
  try {
    collectOrderIds(JSON.parse(text), orders);
  } catch {
    // A reply that was cut, or that is empty, names no orders.
  }
  return orders;
}

/** Pushes and events on the bus name an order as a whole text. */
function namesOneOf(row: Row, orders: ReadonlySet<string>): boolean {
  const text = row.kind === 'push' ? String(row.entry.args?.[0]) : JSON.stringify(row.entry.args ?? []);
  for (const order of orders) if (text.includes(`"${order}"`)) return true;
  return false;
}

/**
 * What belongs to the call of the row, in order: the call, what the library asked of the host, the reply, and what came
 * later of the same orders. A row without a call stands alone.
 */
export function follow(row: Row, rows: readonly Row[]): Row[] {
  const number = row.entry.call;
  if (!number) return [row];
  const call = rows.find(({ entry }) => entry.number === number);
  const orders = ordersOf(call);
  return rows.filter((each) => {
    if (each.entry.call === number) return true;
    if (orders.size === 0 || each.entry.number < number) return false;
    const isOfPage = each.kind === 'push' && each.entry.page === call!.entry.page;
    return (isOfPage || each.entry.kind === 'hostEvent') && namesOneOf(each, orders);
  });
}
