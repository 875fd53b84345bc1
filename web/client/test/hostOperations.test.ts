import { readdirSync, readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';
import { answeredCalls, unansweredCalls } from '../src/protocol.js';
import { quoted, readDocument } from './markdown.js';

const headers = new URL('../../../src/host/', import.meta.url);

/** The public part of each class that the host defines, without comments. */
function classesIn(header: string): [name: string, body: string][] {
  const code = header.replace(/\/\/.*/g, '').replace(/\s+/g, ' ');
  return [...code.matchAll(/class VARNEL_HOST_API (\w+)[^;{]*\{(.*?)\};/g)].map(([, name, body]) => {
    return [name!, body!.replace(/private:.*/, '')];
  });
}

/** Class, name and the names of the parameters, as in `Class::operation(first, second)`. Destructors are left out. */
function operationsOf([name, body]: [string, string]): string[] {
  const declarations = [...body.matchAll(/([~\w]+)\(([^()]*)\)(?: const| override| = 0)*;/g)];
  return declarations
    .filter(([, operation]) => !operation!.startsWith('~'))
    .map(([, operation, parameters]) => {
      const names = parameters!
        .replace(/<[^<>]*>/g, '')
        .split(',')
        .map((parameter) => /(\w*)(?: = [^,]*)?$/.exec(parameter)![1]);
      return `${name}::${operation}(${names.join(', ')})`;
    });
}

function declared(): string[] {
  const texts = readdirSync(headers).map((file) => readFileSync(new URL(file, headers), 'utf8'));
  return [...new Set(texts.flatMap(classesIn).flatMap(operationsOf))];
}

describe('the page of host operations', () => {
  const page = readDocument('host-operations.md');
  const rows = page.split('\n').filter((line) => /^\| `\w+::/.test(line));
  const cells = rows.map((row) =>
    row
      .split('|')
      .slice(1, -1)
      .map((cell) => cell.trim()),
  );

  it('has each operation that src/host declares, once, and no other', () => {
    const documented = cells.flatMap(([operations]) => quoted(operations!));
    expect(declared().length).toBeGreaterThan(90);
    expect(documented.sort()).toEqual(declared().sort());
  });

  it('names callers that exist', () => {
    const calls = Object.keys({ ...answeredCalls, ...unansweredCalls });
    const callers = cells.flatMap(([, calledFor]) => quoted(calledFor!)).filter((name) => /^[A-Z][a-z]+_\w/.test(name));
    expect(callers.length).toBeGreaterThan(0);
    expect(callers.filter((name) => !calls.includes(`${name}_REQ`))).toEqual([]);
  });

  it('names the threads that it explains', () => {
    const threads = new Set(cells.flatMap(([, , thread]) => thread!.split(', ')));
    expect([...threads].sort()).toEqual(['any', 'bus', 'center', 'host', 'page']);
  });
});
