import { defineConfig } from 'vitest/config';

export default defineConfig({ test: { projects: ['client', 'workbench', 'inspector'] } });
