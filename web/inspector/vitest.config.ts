import { fileURLToPath } from 'node:url';
import { defineConfig } from 'vitest/config';

export default defineConfig({
  // The client's sources, so that its tests and these look at the same state of it.
  resolve: { alias: { '@varnel/web-client': fileURLToPath(new URL('../client/src/index.ts', import.meta.url)) } },
  test: { name: 'inspector', include: ['test/**/*.test.ts'] },
});
