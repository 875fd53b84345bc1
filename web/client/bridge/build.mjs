// Writes simulator/gateway/bridge.js, which the simulator serves, from the same source as the client's own connection to
// the simulator. The file is checked in, so that building the simulator needs no npm; a test compares it.
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { format, resolveConfig } from 'prettier';
import ts from 'typescript';
import { build } from 'vite';

const inClient = (path) => fileURLToPath(new URL(`../${path}`, import.meta.url));
const entry = inClient('bridge/bridge.ts');
const target = inClient('../../simulator/gateway/bridge.js');

/** Unlike Vite's own way from TypeScript to JavaScript, this one keeps the comments. */
const typescript = {
  name: 'typescript',
  enforce: 'pre',
  transform: (code, id) => {
    if (!id.endsWith('.ts')) return undefined;
    const compilerOptions = { target: ts.ScriptTarget.ES2020, module: ts.ModuleKind.ESNext };
    return { code: ts.transpileModule(code, { compilerOptions, fileName: id }).outputText, map: null };
  },
};

export async function bridgeScript() {
  const [{ output }] = await build({
    configFile: false,
    logLevel: 'error',
    esbuild: false,
    plugins: [typescript],
    build: { write: false, minify: false, lib: { entry, formats: ['iife'], name: 'callBridge' } },
  });
  const header = readFileSync(inClient('bridge/header.txt'), 'utf8');
  return format(header + output[0].code, { ...(await resolveConfig(target)), parser: 'babel' });
}

if (process.argv[1] === fileURLToPath(import.meta.url)) writeFileSync(target, await bridgeScript());
