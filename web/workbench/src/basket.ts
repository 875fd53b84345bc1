import { priceTypes, type OrderLine } from '@varnel/web-client';

/** An order of a basket as typed. The exchange is looked up later. */
export type BasketLine = Omit<OrderLine, 'exchange'>;

/** `line` is the first line that is no order, counted from 1. */
export type ReadBasket = { ok: true; lines: BasketLine[] } | { ok: false; line: number };

/**
 * Reads one order from each line: symbol, side, quantity, price. Without a price it is a market order. The terminal
 * checks the values.
 */
export function readBasket(text: string): ReadBasket {
  const lines: BasketLine[] = [];
  for (const [index, raw] of text.split('\n').entries()) {
    if (raw.trim() === '') continue;
    const parts = raw.split(',').map((part) => part.trim());
    const [symbol = '', orderSide = '', qty = '', price = ''] = parts;
    if (parts.length > 4 || symbol === '' || orderSide === '' || qty === '') return { ok: false, line: index + 1 };
    const priceType = price === '' ? priceTypes.market : priceTypes.limit;
    lines.push({ symbol, orderSide, priceType, price: price === '' ? '0' : price, qty });
  }
  return { ok: true, lines };
}
