import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';
import { quoted, readDocument, tableAfter } from './markdown.js';

const root = new URL('../../../', import.meta.url);
const read = (path: string) => readFileSync(new URL(path, root), 'utf8');

describe('the page of the first hour', () => {
  const page = readDocument('first-hour.md');

  it('shows the code of the first example as it is', () => {
    const section = /^## 2\.[^]*?^## 3\./m.exec(page)![0];
    const blocks = [...section.matchAll(/^`([\w.]+)` [^`]*?```(?:cpp|cmake)\n([^]*?)```/gm)];
    expect(blocks.map(([, file]) => file)).toEqual(['CMakeLists.txt', 'QvCore.cpp', 'QCefView.cpp', 'main.cpp']);
    for (const [, file, code] of blocks) expect(read(`examples/01-embed/${file}`)).toContain(code);
  });

  it('shows what the first example prints', () => {
    const printed = /```text\n([^]*?)```/.exec(page)![1]!;
    expect(read('examples/01-embed/README.md')).toContain(printed);
  });

  it('has a step for each file of the starter', () => {
    const steps = tableAfter(page, '## 4.').flatMap(([, files]) => quoted(files!));
    const starter = readdirSync(new URL('starter/', root)).filter((file) => file.endsWith('.cpp'));
    expect([...new Set(steps)].sort()).toEqual(starter.sort());
  });

  it('names examples that exist', () => {
    const named = [...page.matchAll(/\b0\d-\w+\b/g)].map(([name]) => name);
    expect(named.length).toBeGreaterThan(0);
    expect(named.filter((name) => !existsSync(new URL(`examples/${name}`, root)))).toEqual([]);
  });
});
