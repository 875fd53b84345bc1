import { defineConfig } from 'vitest/config';

// Some tests run the TypeScript compiler, which takes long on a busy machine.
export default defineConfig({ test: { name: 'client', include: ['test/**/*.test.ts'], testTimeout: 60_000 } });
