// Figures of a running process, from Linux's /proc.

import { readdirSync, readFileSync } from 'node:fs';
import { setTimeout as pause } from 'node:timers/promises';

export function figuresOf(pid) {
  const status = readFileSync(`/proc/${pid}/status`, 'utf8');
  const number = (name) => Number(new RegExp(`^${name}:\\s+(\\d+)`, 'm').exec(status)[1]);
  return {
    residentMiB: Math.round((number('VmRSS') / 1024) * 10) / 10,
    threads: number('Threads'),
    descriptors: readdirSync(`/proc/${pid}/fd`).length,
  };
}

/** The figures once all connections have ended, which takes the simulator a moment after the last page has gone. */
export async function figuresAtRest(pid, descriptors) {
  for (let tries = 300; tries > 0 && figuresOf(pid).descriptors > descriptors; tries -= 1) await pause(100);
  return figuresOf(pid);
}
