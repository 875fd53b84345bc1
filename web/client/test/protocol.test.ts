import { readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';
import { methods, oneWayMethods } from '../src/index.js';
import { answeredCalls, pushEvents, reservedEvents, unansweredCalls } from '../src/protocol.js';
import { quoted, readDocument, tableAfter } from './markdown.js';

const header = readFileSync(new URL('../../../src/common/WebConstants.h', import.meta.url), 'utf8');
const isProtocolName = /^(?:\w+_(?:REQ|RES)|on_\w+|Notify_\w+)$/;

function namesInHeader(): string[] {
  const literals = [...header.matchAll(/"((?:[^"\\]|\\.)*)"/g)].map(([, text]) => text!);
  return literals.filter((text) => isProtocolName.test(text));
}

const calls = Object.entries({ ...answeredCalls, ...unansweredCalls });
const namesHere = [...calls.flat(), ...pushEvents, ...reservedEvents];

describe('protocol names', () => {
  it('are exactly those of the library', () => {
    expect(namesInHeader().length).toBeGreaterThan(0);
    expect([...namesHere].sort()).toEqual(namesInHeader().sort());
  });

  it('are all offered, except the calls that nobody handles', () => {
    const offered = Object.values({ ...methods, ...oneWayMethods }).map(({ method }) => method);
    const unhandled = ['Data_getBuffer_REQ', 'Data_saveBuffer_REQ'];
    expect([...offered, ...unhandled].sort()).toEqual(calls.map(([method]) => method).sort());
  });

  it('are unique', () => {
    expect(new Set(namesHere).size).toBe(namesHere.length);
  });

  it.each(calls)('%s is answered under its own name', (method, reply) => {
    expect(reply).toBe(method.replace(/_REQ$/, '_RES'));
  });
});

describe('the protocol page', () => {
  const page = readDocument('protocol.md');

  it('documents the calls that a connection offers', () => {
    const documented = tableAfter(page, '## Calls').flatMap(([method]) => quoted(method!));
    expect(documented.sort()).toEqual(
      Object.values({ ...methods, ...oneWayMethods })
        .map(({ method }) => method)
        .sort(),
    );
  });

  it('documents the pushes', () => {
    const documented = tableAfter(page, '## Pushes').flatMap(([push]) => quoted(push!));
    expect(documented.sort()).toEqual([...pushEvents].sort());
  });

  it('has no name that the library does not have', () => {
    const mentioned = [...page.matchAll(/\b(?:\w+_(?:REQ|RES)|on_\w+|Notify_\w+)\b/g)].map(([name]) => name);
    expect(mentioned.length).toBeGreaterThan(0);
    expect(mentioned.filter((name) => !namesHere.includes(name as (typeof namesHere)[number]))).toEqual([]);
  });
});
