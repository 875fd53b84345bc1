// Writes the call bridges of the simulator, bridge.js that it serves and that of its window, from the same source as the
// client's own connection to the simulator. The files are checked in, so that building the simulator needs no npm; a test
// compares them.
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { format, resolveConfig } from 'prettier';
import ts from 'typescript';
import { build } from 'vite';

const inClient = (path) => fileURLToPath(new URL(`../${path}`, import.meta.url));

/** Source in this folder to the file that is made of it. */
export const scripts = {
  bridge: inClient('../../simulator/gateway/bridge.js'),
  windowBridge: inClient('../../simulator/window/bridge.js'),
};

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

export async function textOf(script) {
  const entry = inClient(`bridge/${script}.ts`);
  const [{ output }] = await build({
    configFile: false,
    logLevel: 'error',
    esbuild: false,
    plugins: [typescript],
    build: { write: false, minify: false, lib: { entry, formats: ['iife'], name: 'callBridge' } },
  });
  const header = readFileSync(inClient(`bridge/${script}.header.txt`), 'utf8');
  return format(header + output[0].code, { ...(await resolveConfig(scripts[script])), parser: 'babel' });
}

if (process.argv[1] === fileURLToPath(import.meta.url))
  for (const [script, target] of Object.entries(scripts)) writeFileSync(target, await textOf(script));
