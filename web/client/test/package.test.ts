import { checkPackage, Package } from '@arethetypeswrong/core';
import { execFileSync } from 'node:child_process';
import { cpSync, mkdtempSync, readdirSync, readFileSync, rmSync, symlinkSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { publint } from 'publint';
import { formatMessage } from 'publint/utils';
import { afterAll, beforeAll, describe, expect, it } from 'vitest';

const root = fileURLToPath(new URL('../../../', import.meta.url));
const source = join(root, 'web/client');
const description = JSON.parse(readFileSync(join(source, 'package.json'), 'utf8')) as Record<string, unknown> & {
  name: string;
  version: string;
  exports: Record<string, string | Record<'types' | 'default', string>>;
};

/** The sources, without their extension. */
const sources = (readdirSync(join(source, 'src'), { recursive: true }) as string[])
  .filter((path) => path.endsWith('.ts'))
  .map((path) => path.replace(/\.ts$/, '').replace(/\\/g, '/'));

/** A copy of what the build reads: others may be using the built files of the original. */
let copy: string;
/** The copy's package. */
let folder: string;
let packed: string[];
let archive: Buffer;

beforeAll(() => {
  copy = mkdtempSync(join(tmpdir(), 'varnel-client-'));
  folder = join(copy, 'web/client');
  const needed = ['package.json', 'README.md', 'src', 'tsconfig.build.json'].map((name) => `web/client/${name}`);
  for (const path of [...needed, 'web/tsconfig.base.json', 'docs/openrpc.json'])
    cpSync(join(root, path), join(copy, path), { recursive: true });
  symlinkSync(join(root, 'node_modules'), join(copy, 'node_modules'));
  const npm = (...args: string[]) => execFileSync('npm', args, { cwd: folder, encoding: 'utf8', stdio: 'pipe' });
  npm('run', 'build');
  const [made] = JSON.parse(npm('pack', '--json', '--pack-destination', copy)) as [{ files: { path: string }[] }];
  packed = made.files.map(({ path }) => path);
  archive = readFileSync(
    join(
      copy,
      readdirSync(copy).find((name) => name.endsWith('.tgz'))!,
    ),
  );
}, 120_000);

afterAll(() => rmSync(copy, { recursive: true }));

describe('the package', () => {
  it('holds what a page needs, the sources for debuggers, and nothing else', () => {
    const built = sources.flatMap((path) =>
      ['js', 'js.map', 'd.ts', 'd.ts.map'].map((extension) => `dist/${path}.${extension}`),
    );
    const expected = [
      'README.md',
      'package.json',
      'dist/openrpc.json',
      ...built,
      ...sources.map((path) => `src/${path}.ts`),
    ];
    expect([...packed].sort()).toEqual(expected.sort());
  });

  it('has every file that it exports', () => {
    const exported = Object.values(description.exports).flatMap((entry) =>
      typeof entry === 'string' ? [entry] : Object.values(entry),
    );
    expect(exported.filter((path) => !packed.includes(path.replace('./', '')))).toEqual([]);
  });

  it('maps its code and types to the sources', () => {
    for (const extension of ['js', 'd.ts']) {
      const text = readFileSync(join(folder, `dist/index.${extension}`), 'utf8');
      expect(text).toContain(`//# sourceMappingURL=index.${extension}.map`);
      const { sources } = JSON.parse(readFileSync(join(folder, `dist/index.${extension}.map`), 'utf8')) as {
        sources: string[];
      };
      expect(sources).toEqual(['../src/index.ts']);
    }
  });

  it('has the description of the protocol, with the version of the package', () => {
    const shipped = readFileSync(join(folder, 'dist/openrpc.json'), 'utf8');
    expect(shipped).toBe(readFileSync(join(root, 'docs/openrpc.json'), 'utf8'));
    expect(JSON.parse(shipped)).toMatchObject({ info: { version: description.version } });
  });

  it('needs no other package', () => {
    for (const kind of ['dependencies', 'peerDependencies', 'optionalDependencies'])
      expect(description).not.toHaveProperty(kind);
    expect(description).toMatchObject({ type: 'module', sideEffects: false });
  });

  it('has nothing that publint complains about', async () => {
    const tarball = archive.buffer.slice(archive.byteOffset, archive.byteOffset + archive.byteLength);
    const { messages, pkg } = await publint({ pack: { tarball: tarball as ArrayBuffer }, strict: true });
    expect(messages.map((message) => formatMessage(message, pkg))).toEqual([]);
  });

  it('gives every bundler and Node itself the right types', async () => {
    const installed = `/node_modules/${description.name}`;
    const files = packed.map((path) => [`${installed}/${path}`, readFileSync(join(folder, path), 'utf8')] as const);
    const analysis = await checkPackage(new Package(Object.fromEntries(files), description.name, description.version));
    if (!analysis.types) throw new Error('the package has no types');
    expect(Object.keys(analysis.entrypoints).sort()).toEqual(Object.keys(description.exports).sort());
    // The package has ES modules only. Before exports were known, only the package itself could be imported.
    const problems = analysis.problems.filter(
      (problem) => !('resolutionKind' in problem && ['node10', 'node16-cjs'].includes(problem.resolutionKind)),
    );
    expect(problems).toEqual([]);
  });

  it('has its version in the documents', () => {
    for (const document of ['web/client/README.md', 'README.md', 'CONTRIBUTING.md', 'docs/simulator.md']) {
      const names = readFileSync(join(root, document), 'utf8').match(/varnel-web-client-[\w.]+\.tgz/g) ?? [];
      expect(new Set(names)).toEqual(new Set(names.map(() => `varnel-web-client-${description.version}.tgz`)));
    }
  });
});
