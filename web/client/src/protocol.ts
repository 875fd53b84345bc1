import { methods, oneWayMethods, type Call, type OneWayCall } from './protocol/calls.js';
import { pushes, type PushEvent } from './protocol/pushes.js';

/**
 * Every name of the page protocol, from the tables of calls and pushes. A test compares them with the library's own
 * constants, name by name.
 */

/** The event that carries the reply to a method. */
export type ReplyTo<M extends string> = M extends `${infer Name}_REQ` ? `${Name}_RES` : never;

export function replyTo<M extends string>(method: M): ReplyTo<M> {
  return method.replace(/_REQ$/, '_RES') as ReplyTo<M>;
}

function withReplies<M extends string>(names: readonly M[]): { readonly [Name in M]: ReplyTo<Name> } {
  return Object.fromEntries(names.map((name) => [name, replyTo(name)])) as { [Name in M]: ReplyTo<Name> };
}

const methodsOf = <M extends string>(table: Readonly<Record<string, { method: M }>>): M[] =>
  Object.values(table).map(({ method }) => method);

/** Calls that nobody handles. */
export const unhandledCalls = ['Data_getBuffer_REQ', 'Data_saveBuffer_REQ'] as const;

export type AnsweredCall = (typeof methods)[Call]['method'];
export type UnansweredCall = (typeof oneWayMethods)[OneWayCall]['method'] | (typeof unhandledCalls)[number];
export type MethodName = AnsweredCall | UnansweredCall;
export type ReplyEvent = ReplyTo<AnsweredCall>;

/** Calls that the terminal answers: method name and the event that carries the reply. */
export const answeredCalls = withReplies<AnsweredCall>(methodsOf(methods));

/** Calls without an answer. The reply names here are reserved and never sent. */
export const unansweredCalls = withReplies<UnansweredCall>([...methodsOf(oneWayMethods), ...unhandledCalls]);

/** Events without a call. */
export const pushEvents: readonly PushEvent[] = Object.values(pushes).map(({ event }) => event);

/** Reserved names, never sent. */
export const reservedEvents = ['on_callError', 'Notify_WebReady'] as const;

export type { PushEvent };
