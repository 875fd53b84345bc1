import { defineConfig } from 'vite';

const simulator = 'http://127.0.0.1:8900';

export default defineConfig({
  build: {
    target: 'chrome87', // that of Qt WebEngine 5.15
    chunkSizeWarningLimit: 1000,
    modulePreload: { polyfill: false }, // it would watch every change of the page
    rollupOptions: {
      onwarn(warning, report) {
        // Libraries mark modules for servers that render React. The desk is rendered in the browser only.
        if (warning.code !== 'MODULE_LEVEL_DIRECTIVE') report(warning);
      },
    },
  },
  esbuild: { legalComments: 'eof' },
  // `npm start` serves the sources with live reload. The simulator refuses foreign pages, so start it with
  // `--allow-origin http://localhost:5173`.
  server: {
    port: 5173,
    strictPort: true,
    proxy: { '/bridge.js': simulator, '/view': { target: simulator, ws: true } },
  },
});
