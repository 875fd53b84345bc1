#!/usr/bin/env node
// Lists what the packages consist of, for those who must know what they run: bills of materials (CycloneDX 1.5) of the
// library, of the simulator and of the simulator for Windows, and the licences of the npm packages whose code the simulator's pages contain.
// Everything is read from this machine: the installed npm packages and Debian packages that it was built from.
//
//   node tools/sbom.mjs FOLDER
import { execFileSync } from 'node:child_process';
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('..', import.meta.url));
const read = (path) => readFileSync(join(root, path), 'utf8');
const version = /^project\(VarnelWebSDK VERSION ([\d.]+)/m.exec(read('CMakeLists.txt'))[1];

const linked = 'linked dynamically';
const compiled = 'headers, compiled in';
const lgpl = 'LGPL-3.0-only';
const gcc = 'GPL-3.0-or-later WITH GCC-exception-3.1';

/** Debian packages: how they are used, and the licence under which they are. */
const library = {
  libqt5core5a: [linked, lgpl],
  libqt5widgets5: [linked, lgpl],
  'libstdc++6': [`${linked}; its templates are compiled in`, gcc],
  libc6: [linked, 'LGPL-2.1-or-later'],
};
const headers = { 'libboost-dev': [compiled, 'BSL-1.0'], 'rapidjson-dev': [compiled, 'MIT'] };
const simulator = {
  ...library,
  ...headers,
  libqt5gui5: [linked, lgpl],
  libqt5webenginewidgets5: [`${linked} by the window`, lgpl],
  libqt5webchannel5: [`${linked} by the window; its script is compiled in`, lgpl],
};
const windowsSimulator = {
  ...headers,
  libqt5core5a: ['DLLs of Qt, built from its source package qtbase-opensource-src', lgpl],
  'gcc-mingw-w64-base': ['DLLs of the compiler', gcc],
  'mingw-w64-x86-64-dev': ['the DLL libwinpthread; start code, compiled in', 'MIT AND ZPL-2.1'],
};

/** Its version on this machine; undefined when it is not installed. */
function debianVersion(name) {
  try {
    const [state, found] = execFileSync('dpkg-query', ['-W', '-f', '${db:Status-Status} ${Version}', name], {
      encoding: 'utf8',
      stdio: ['ignore', 'pipe', 'ignore'],
    }).split(' ');
    return state === 'installed' ? found : undefined;
  } catch {
    return undefined;
  }
}

function debianComponents(table) {
  return Object.entries(table).flatMap(([name, [description, licence]]) => {
    const found = debianVersion(name);
    if (!found) return [];
    const purl = `pkg:deb/debian/${encodeURIComponent(name)}@${encodeURIComponent(found)}`;
    return [component(name, found, purl, description, licence)];
  });
}

function component(name, version, purl, description, licence) {
  const licences = [/ (OR|AND|WITH) /.test(licence) ? { expression: licence } : { license: { id: licence } }];
  return { type: 'library', 'bom-ref': purl, name, version, description, licenses: licences, purl };
}

/** The packages that the page may contain: those it depends on, and those that they depend on. */
function npmPackages(page) {
  const found = new Map();
  const visit = (folder) => {
    const { dependencies = {} } = JSON.parse(readFileSync(join(folder, 'package.json'), 'utf8'));
    for (const name of Object.keys(dependencies)) {
      const place = folderOf(name, folder);
      if (name.startsWith('@varnel/') || found.has(place)) continue;
      const { version, license } = JSON.parse(readFileSync(join(place, 'package.json'), 'utf8'));
      found.set(place, { name, version, license });
      visit(place);
    }
  };
  visit(join(root, page));
  return found;
}

function folderOf(name, from) {
  const places = createRequire(join(from, 'package.json')).resolve.paths(name);
  for (const place of places) {
    try {
      readFileSync(join(place, name, 'package.json'));
      return join(place, name);
    } catch {
      // the next folder
    }
  }
  throw new Error(`${name}, which ${from} needs, is not installed: npm ci`);
}

function npmComponents(packages) {
  return [...packages.values()].map(({ name, version, license }) => {
    const purl = `pkg:npm/${name.replace('@', '%40')}@${version}`;
    return component(name, version, purl, "code in the simulator's pages", license);
  });
}

const byName = (one, other) => (one.name < other.name ? -1 : Number(one.name > other.name));

/** The same machine and sources give the same file: no time and no random number is in it. */
function bill(name, type, components) {
  const unique = new Map(components.map((component) => [component.purl, component]));
  return {
    bomFormat: 'CycloneDX',
    specVersion: '1.5',
    version: 1,
    metadata: { component: { type, 'bom-ref': name, name, version } },
    components: [...unique.values()].sort(byName),
  };
}

/** The licence texts, each with its packages. */
function licenceTexts(packages) {
  const texts = new Map();
  for (const [folder, { name, version, license }] of packages) {
    const files = readdirSync(folder).filter((entry) => /^(licen[cs]e|notice)/i.test(entry));
    const text =
      files.map((file) => readFileSync(join(folder, file), 'utf8').trim()).join('\n\n') ||
      `${license} (the package has no licence text)`;
    texts.set(text, [...(texts.get(text) ?? []), `${name} ${version} (${license})`]);
  }
  const parts = [...texts].map(([text, names]) => `${names.sort().join('\n')}\n\n${text}\n`).sort();
  return `The pages of the simulator contain code of these npm packages.\n\n${parts.join(`\n${'-'.repeat(80)}\n\n`)}`;
}

const folder = process.argv[2];
if (!folder) {
  process.stderr.write('usage: node tools/sbom.mjs FOLDER\n');
  process.exit(2);
}
const packages = new Map([...npmPackages('web/workbench'), ...npmPackages('web/inspector')]);
const pages = npmComponents(packages);
const files = {
  'library.cdx.json': bill('varnel-websdk', 'library', debianComponents(library)),
  'simulator.cdx.json': bill('varnel-simulator', 'application', [...debianComponents(simulator), ...pages]),
  'simulator-windows.cdx.json': bill('varnel-simulator', 'application', [
    ...debianComponents(windowsSimulator),
    ...pages,
  ]),
};
mkdirSync(folder, { recursive: true });
for (const [name, content] of Object.entries(files))
  writeFileSync(join(folder, name), `${JSON.stringify(content, null, 2)}\n`);
writeFileSync(join(folder, 'npm-licences.txt'), licenceTexts(packages));
