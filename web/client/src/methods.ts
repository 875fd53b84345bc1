import {
  methods,
  oneWayMethods,
  type Call,
  type Method,
  type OneWayCall,
  type OneWayMethod,
} from './protocol/calls.js';
import type { AnsweredCall } from './protocol.js';
import { answers, parameters } from './readings.js';
import type { Shape } from './shapes.js';

export { methods, oneWayMethods, type Call, type OneWayCall } from './protocol/calls.js';
export type { Answer, Arguments } from './types.js';

const allMethods: Readonly<Record<Call | OneWayCall, OneWayMethod>> = { ...methods, ...oneWayMethods };

/** The argument list of a call, identifier first. Throws an error that names a parameter with an unusable value. */
export function argumentList(
  call: Call | OneWayCall,
  uuid: string,
  values: Readonly<Record<string, unknown>>,
): unknown[] {
  const written = Object.entries(allMethods[call].parameters).map(([name, reading]) => {
    try {
      return parameters[reading](values[name] as never);
    } catch (error) {
      const Kind = error instanceof RangeError ? RangeError : TypeError;
      throw new Kind(`${call}: ${name} ${(error as Error).message}`);
    }
  });
  return [uuid, ...written];
}

/** A row of the table with the shape of its answer. */
export interface DescribedMethod extends Omit<Method, 'method' | 'answer'> {
  readonly method: AnsweredCall;
  readonly answer: Shape<unknown>;
}

export function describe(call: Call): DescribedMethod {
  const row: Method & { readonly method: AnsweredCall } = methods[call];
  return { ...row, answer: answers[row.answer] };
}
