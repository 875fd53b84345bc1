import { methods, oneWayMethods, type Call, type OneWayCall, type OneWayMethod } from '../protocol/calls.js';
import type { ArgumentTypes } from '../readings.js';

export type AnyCall = Call | OneWayCall;

const table: Readonly<Record<AnyCall, OneWayMethod>> = { ...methods, ...oneWayMethods };

/** How values that travel as text are read back. All others travel unchanged. */
const readBack: { readonly [Reading in keyof ArgumentTypes]?: (text: string) => unknown } = {
  commaList: (text) => text.split(','),
  orderFilter: (text) => JSON.parse(text) as unknown,
  securityClasses: (text) => (JSON.parse(text) as { symbolFilter: unknown }).symbolFilter,
  orderLines: (text) => JSON.parse(text) as unknown,
  subscription: (text) => text === '1',
};

/** Finds a call by its name in the client or on the wire. */
export function callNamed(name: string): AnyCall {
  const found = (Object.keys(table) as AnyCall[]).find((call) => call === name || table[call].method === name);
  if (!found) throw new TypeError(`there is no call "${name}"`);
  return found;
}

/** The arguments of a call as the page passed them, by name. */
export function namedArguments(call: AnyCall, args: readonly unknown[]): Record<string, unknown> {
  return Object.fromEntries(
    Object.entries(table[call].parameters).map(([name, reading], index) => {
      const read = readBack[reading];
      return [name, read ? read(args[index] as string) : args[index]];
    }),
  );
}
