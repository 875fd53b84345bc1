import type { TextTable } from './table';

/** Order ticket, basket, blotter, orders, K-lines and inspector. */
export const trading = {} as const satisfies TextTable;
