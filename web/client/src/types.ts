import type { OrderOutcome } from './outcomes.js';
import type { CallOptions } from './pendingCall.js';
import type { Call, Methods, OneWayCall, OneWayMethods } from './protocol/calls.js';
import type { PushArguments, PushEvent, PushName, pushes } from './protocol/pushes.js';
import type { AnswerTypes, ArgumentTypes } from './readings.js';
import type { SimulatorVocabulary, Vocabulary } from './vocabulary.js';

/**
 * The types of calls and pushes, from their tables. The mapped types here run over the tables themselves, so that editors
 * show the comments of the tables at the calls and their arguments.
 */

type ParametersOf<C extends Call | OneWayCall> = (Methods & OneWayMethods)[C]['parameters'];

/** The arguments of a call. */
export type Arguments<C extends Call | OneWayCall, V extends Vocabulary = SimulatorVocabulary> = {
  [Name in keyof ParametersOf<C>]: ArgumentTypes<V>[ParametersOf<C>[Name] & keyof ArgumentTypes];
};

/** What the terminal answers to a call. */
export type Answer<C extends Call, V extends Vocabulary = SimulatorVocabulary> = AnswerTypes<V>[Methods[C]['answer']];

/** What the promise of a call gives: the answer, or what became of each order. */
export type Result<C extends Call, V extends Vocabulary = SimulatorVocabulary> = C extends 'insertOrder'
  ? OrderOutcome<V>
  : C extends 'insertOrderList'
    ? OrderOutcome<V>[]
    : Answer<C, V>;

/** The function of a call. The arguments may be left out where there are none. */
export type CallFunction<C extends Call, V extends Vocabulary> =
  {} extends Arguments<C, V>
    ? (values?: Record<string, never>, options?: CallOptions) => Promise<Result<C, V>>
    : (values: Arguments<C, V>, options?: CallOptions) => Promise<Result<C, V>>;

/** A function for each call. */
export type Calls<V extends Vocabulary> = { [C in keyof Methods]: CallFunction<C, V> };

/** A function for each call to which the terminal never replies. The promise is resolved when the call has been sent. */
export type OneWayCalls<V extends Vocabulary> = {
  [C in keyof OneWayMethods]: (values: Arguments<C, V>, options?: CallOptions) => Promise<void>;
};

/** The name of a push, from the name or from its event. */
export type PushNameOf<P extends PushName | PushEvent> = P extends PushName
  ? P
  : { [Name in PushName]: (typeof pushes)[Name]['event'] extends P ? Name : never }[PushName];

export type PushListener<P extends PushName | PushEvent, V extends Vocabulary = SimulatorVocabulary> = (
  ...args: PushArguments<V>[PushNameOf<P>]
) => void;
