import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { Simulator } from './support/simulator';
import { expect, test } from './support/test';

// Desktops start the user's browser by this program, and so does Wine.
const browser = `#!/bin/sh
printf '%s' "$1" >"$OPENED.partial"
mv -- "$OPENED.partial" "$OPENED"
`;

test('--open shows the address in the browser of the desktop', async ({ home }) => {
  const opened = join(home.folder, 'opened');
  writeFileSync(join(home.folder, 'xdg-open'), browser, { mode: 0o755 });
  const environment = { PATH: `${home.folder}:${process.env.PATH}`, OPENED: opened };
  const simulator = new Simulator(['--port', '0', '--open'], home.program, environment);
  const url = await simulator.listening();
  await expect.poll(() => existsSync(opened)).toBe(true);
  expect(readFileSync(opened, 'utf8')).toBe(url);
  expect(await simulator.stop()).toEqual({ code: 0, signal: null });
});
