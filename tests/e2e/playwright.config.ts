import { defineConfig } from '@playwright/test';

if (!process.env.VARNEL_SIMULATOR) throw new Error('VARNEL_SIMULATOR must name the simulator binary');

export default defineConfig({
  testMatch: '**/*.test.ts',
  workers: 2,
  fullyParallel: true,
  forbidOnly: !!process.env.CI,
  reporter: 'list',
  // Wide enough for a sanitizer build on a busy machine. Nothing waits that long when all is well.
  timeout: 120_000,
  expect: { timeout: 30_000 },
  use: {
    viewport: { width: 1280, height: 800 },
    // The desk is Chinese here; tests of English say so themselves.
    locale: 'zh-CN',
    screenshot: 'only-on-failure',
    launchOptions: {
      executablePath: process.env.VARNEL_CHROMIUM ?? '/usr/bin/chromium',
      args: [
        ...(process.getuid?.() === 0 ? ['--no-sandbox'] : []),
        '--disable-gpu',
        '--disable-quic',
        '--no-first-run',
        '--disable-background-networking',
        '--disable-component-update',
        '--disable-sync',
      ],
    },
  },
});
