import { spawn, type ChildProcessByStdio } from 'node:child_process';
import { once } from 'node:events';
import type { Readable, Writable } from 'node:stream';

/** A simulator that takes longer to start or to end counts as stuck. */
const stuckMs = 60_000;

export interface Ended {
  code: number | null;
  signal: NodeJS.Signals | null;
}

/** A running simulator process and everything that it prints. */
export class Simulator {
  stdout = '';
  stderr = '';
  readonly ended: Promise<Ended>;
  private readonly child: ChildProcessByStdio<Writable, Readable, Readable>;

  constructor(args: readonly string[], program = process.env.VARNEL_SIMULATOR!, environment: NodeJS.ProcessEnv = {}) {
    const env = { ...process.env, ...environment };
    this.child = spawn(program, args, { stdio: ['pipe', 'pipe', 'pipe'], env });
    this.child.stdout.setEncoding('utf8').on('data', (text: string) => (this.stdout += text));
    this.child.stderr.setEncoding('utf8').on('data', (text: string) => (this.stderr += text));
    // "close", not "exit": by then all output has been read.
    this.ended = once(this.child, 'close').then(([code, signal]) => ({ code, signal }) as Ended);
  }

  /** The address, once the simulator answers there. */
  async listening(): Promise<string> {
    const line = this.printed('stdout', /^listening on (http:\/\/127\.0\.0\.1:\d+\/)$/m).then(([, url]) => url!);
    const failed = this.ended.then(({ code, signal }) => {
      throw new Error(`the simulator ended (${code ?? signal}) before it listened:\n${this.stderr}`);
    });
    return this.unlessStuck(Promise.race([line, failed]), 'did not start');
  }

  /** Presses Enter that often. */
  enter(times: number): void {
    this.child.stdin.write('\n'.repeat(times));
  }

  /** Waits for a line in the log. */
  async logged(pattern: RegExp): Promise<void> {
    await this.printed('stderr', pattern);
  }

  /** Waits for a line on standard output. */
  async said(pattern: RegExp): Promise<void> {
    await this.printed('stdout', pattern);
  }

  /** Sends the signal and waits for the end. */
  async stop(signal: 'SIGTERM' | 'SIGINT' | 'SIGKILL' = 'SIGTERM'): Promise<Ended> {
    this.child.kill(signal);
    return this.unlessStuck(this.ended, `did not end on ${signal}`);
  }

  /** Lets the process stand still: it takes what is sent to it, and answers nothing until `thaw`. */
  freeze(): void {
    this.child.kill('SIGSTOP');
  }

  thaw(): void {
    this.child.kill('SIGCONT');
  }

  private printed(where: 'stdout' | 'stderr', pattern: RegExp): Promise<RegExpExecArray> {
    return new Promise((resolve) => {
      const look = () => {
        const found = pattern.exec(this[where]);
        if (!found) return;
        this.child[where].off('data', look);
        resolve(found);
      };
      this.child[where].on('data', look);
      look();
    });
  }

  /** Waits, but not for a simulator that is stuck. How long the simulator runs afterwards is the test's business. */
  private async unlessStuck<T>(awaited: Promise<T>, what: string): Promise<T> {
    let timer: NodeJS.Timeout | undefined;
    const stuck = new Promise<never>((_, reject) => {
      timer = setTimeout(() => {
        this.child.kill('SIGKILL');
        reject(new Error(`the simulator ${what} within ${stuckMs} ms:\n${this.stderr}`));
      }, stuckMs);
    });
    try {
      return await Promise.race([awaited, stuck]);
    } finally {
      clearTimeout(timer);
    }
  }
}
