import { defineConfig } from 'vite';

const simulator = 'http://127.0.0.1:8900';

export default defineConfig({
  // The polyfill of module preloading would watch every change of the page.
  build: { target: 'chrome90', chunkSizeWarningLimit: 600, modulePreload: { polyfill: false } },
  esbuild: { legalComments: 'eof' },
  // `npm start` serves the sources with live reload. The simulator refuses foreign pages, so start it with
  // `--allow-origin http://localhost:5173`.
  server: {
    port: 5173,
    strictPort: true,
    proxy: { '/bridge.js': simulator, '/view': { target: simulator, ws: true } },
  },
});
