import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { format, resolveConfig } from 'prettier';
import { describe, expect, it } from 'vitest';
import { assetKeys, entrustKeys, executionKeys, methods, oneWayMethods, positionKeys } from '../src/index.js';
import { Comments } from '../tools/comments.js';
import { clientTables, protocolTables, withTables } from '../tools/tables.js';
import { quoted, tableAfter } from './markdown.js';

const root = new URL('../../../', import.meta.url);
const read = (path: string) => readFileSync(new URL(path, root), 'utf8');
const comments = new Comments();

describe('the tables of calls and pushes are those of the client in', () => {
  it('docs/protocol.md; npm run documents -w web/client writes them anew', async () => {
    const written = withTables(read('docs/protocol.md'), protocolTables(comments));
    await expect(written).toMatchFileSnapshot('../../../docs/protocol.md');
  });

  it('web/client/README.md; npm run documents -w web/client writes them anew', async () => {
    const written = withTables(read('web/client/README.md'), clientTables(comments));
    const path = fileURLToPath(new URL('web/client/README.md', root));
    const style = await resolveConfig(path, { editorconfig: true });
    const formatted = await format(written, { ...style, filepath: path });
    await expect(formatted).toMatchFileSnapshot('../README.md');
  });
});

it('README.md names every call once', () => {
  const named = tableAfter(read('README.md'), '## What pages can call').flatMap(([calls]) => quoted(calls!));
  const calls = Object.values({ ...methods, ...oneWayMethods }).map(({ method }) => method);
  expect(named.sort()).toEqual(calls.sort());
});

it.each([
  ['Entrust', entrustKeys],
  ['Execution', executionKeys],
  ['Position', [...positionKeys, 'stockInterest']],
  ['Asset', assetKeys],
] as const)('docs/protocol.md lists every field of %s', (record, keys) => {
  const listed = new RegExp(`^- [\\w ]+ \\(\`${record}\`\\).*(?:\n  .*)*`, 'm').exec(read('docs/protocol.md'))!;
  expect(quoted(listed[0]).slice(1).sort()).toEqual([...keys].sort());
});
