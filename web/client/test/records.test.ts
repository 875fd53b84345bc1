import { readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';
import { assetKeys, entrustKeys, executionKeys, orderFilterKeys, positionKeys } from '../src/index.js';

const source = (path: string) => readFileSync(new URL(`../../../src/${path}`, import.meta.url), 'utf8');

/** The text of every page key, by the name of its constant. */
const keys = new Map(
  [...source('common/WebConstants.h').matchAll(/QString (\w+) = QStringLiteral\("(\w+)"\)/g)]
    .map(([, name, text]) => [name!, text!] as const)
    .filter(([name, text]) => name === text),
);

const tables = source('dataservice/FieldTables.cpp');
const keyOfColumn = new Map(
  [...tables.matchAll(/\{Column::(\w+), Key::(\w+)\}/g)].map(([, column, key]) => [column!, key!]),
);

const lists = source('common/ReportColumns.h');

/** The page keys of a list of columns, in its order. */
function columns(list: string): string[] {
  const body = new RegExp(`\\bQStringList ${list}\\(\\)[^{]*\\{[^{]*\\{([^}]*)\\}`).exec(lists)![1]!;
  return [...body.matchAll(/Column::(\w+)/g)].map(([, column]) => keys.get(keyOfColumn.get(column!)!)!);
}

describe('record keys', () => {
  it.each([
    ['orders', entrustKeys, 'entrust'],
    ['executions', executionKeys, 'execution'],
    ['positions', positionKeys, 'position'],
  ] as const)('of %s are those of the library, in its order', (_, here, list) => {
    expect([...here]).toEqual(columns(list));
  });

  it('of assets and filters are keys of the library', () => {
    const unknown = [...assetKeys, ...orderFilterKeys].filter((key) => !keys.has(key));
    expect(unknown).toEqual([]);
  });
});
