import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';

const root = fileURLToPath(new URL('../../../', import.meta.url));

interface Component {
  name: string;
  version: string;
  purl: string;
  licenses: unknown[];
}

describe('the bills of materials', () => {
  let folder: string;
  beforeAll(() => {
    folder = mkdtempSync(join(tmpdir(), 'sbom-'));
    execFileSync(process.execPath, [join(root, 'tools/sbom.mjs'), folder]);
  });
  afterAll(() => rmSync(folder, { recursive: true }));

  const text = (file: string) => readFileSync(join(folder, file), 'utf8');
  const componentsOf = (file: string) => (JSON.parse(text(file)) as { components: Component[] }).components;
  const names = (file: string) => componentsOf(file).map(({ name }) => name);

  test('name every package that the pages depend on, with the version that is installed', () => {
    for (const page of ['workbench', 'inspector']) {
      const { dependencies } = JSON.parse(readFileSync(join(root, `web/${page}/package.json`), 'utf8')) as {
        dependencies: Record<string, string>;
      };
      for (const file of ['simulator.cdx.json', 'simulator-windows.cdx.json']) {
        const found = new Map(componentsOf(file).map(({ name, version }) => [name, version]));
        for (const [name, version] of Object.entries(dependencies))
          if (!name.startsWith('@varnel/')) expect(found.get(name), name).toBe(version);
        expect(found.has('scheduler'), 'a package of a package').toBe(true);
        expect(found.has('vite'), 'a tool').toBe(false);
      }
    }
  });

  test('name the C++ parts, and the pages only with the simulator', () => {
    expect(names('library.cdx.json')).toContain('libqt5core5a');
    expect(names('library.cdx.json')).not.toContain('react');
    for (const name of ['libqt5widgets5', 'libboost-dev', 'rapidjson-dev', 'libstdc++6'])
      expect(names('simulator.cdx.json')).toContain(name);
  });

  test('tell a licence and a version of each part, and no address of a registry', () => {
    for (const file of ['library.cdx.json', 'simulator.cdx.json', 'simulator-windows.cdx.json']) {
      expect(text(file)).not.toMatch(/https?:/);
      for (const part of componentsOf(file)) {
        expect(part.version, part.name).toMatch(/^\d/);
        expect(part.licenses, part.name).toHaveLength(1);
        expect(part.purl).toMatch(/^pkg:(npm|deb\/debian)\//);
      }
    }
  });

  test('come with the licence texts of all npm packages', () => {
    for (const { name, version, purl } of componentsOf('simulator.cdx.json'))
      if (purl.startsWith('pkg:npm/')) expect(text('npm-licences.txt')).toContain(`${name} ${version} (`);
  });
});
