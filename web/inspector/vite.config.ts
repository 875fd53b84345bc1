import { defineConfig } from 'vite';

export default defineConfig({
  base: './', // the simulator serves it below /inspector/
  build: { target: 'chrome87', modulePreload: { polyfill: false } },
  esbuild: { legalComments: 'eof' },
  // `npm start` serves the sources with live reload. The simulator refuses foreign pages, so start it with
  // `--allow-origin http://localhost:5174`.
  server: {
    port: 5174,
    strictPort: true,
    proxy: { '^/(traffic|control)$': { target: 'http://127.0.0.1:8900', ws: true } },
  },
});
