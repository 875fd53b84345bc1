// A process that serves WebSockets: the simulator or the echo.
import { execFileSync, spawn } from 'node:child_process';
import { once } from 'node:events';
import { readFileSync } from 'node:fs';

const ticksPerSecond = Number(execFileSync('getconf', ['CLK_TCK']));
const running = new Set();
process.on('exit', () => running.forEach((child) => child.kill('SIGKILL')));

export class ServerProcess {
  #child;
  #ended;

  /** Everything that it printed. */
  output = '';

  /** Starts the program and waits until it says where it listens. */
  static async start(program, ...args) {
    const server = new ServerProcess();
    await server.#start(program, args);
    return server;
  }

  async #start(program, args) {
    const environment = { ...process.env, QT_QPA_PLATFORM: 'offscreen' }; // the same event loop in both
    this.#child = spawn(program, args, { stdio: ['pipe', 'pipe', 'pipe'], env: environment });
    running.add(this.#child);
    this.#ended = once(this.#child, 'close').then(() => running.delete(this.#child));
    let log = '';
    this.#child.stderr.setEncoding('utf8').on('data', (text) => (log += text));
    await new Promise((resolve, reject) => {
      this.#child.stdout.setEncoding('utf8').on('data', (text) => {
        this.output += text;
        if (/^listening on /m.test(this.output)) resolve();
      });
      this.#ended.then(() => reject(new Error(`${program} ended before it listened:\n${log}`)), reject);
    });
  }

  /** The address of a WebSocket. */
  url(path) {
    const [, address] = /^listening on \w+:\/\/([^/]+)\/$/m.exec(this.output);
    return `ws://${address}${path}`;
  }

  /** How long its threads have run on a processor so far, in seconds. */
  processorTime() {
    const fields = readFileSync(`/proc/${this.#child.pid}/stat`, 'utf8')
      .replace(/^.*\) /s, '')
      .split(' ');
    return (Number(fields[11]) + Number(fields[12])) / ticksPerSecond; // in user and in system mode
  }

  async stop() {
    this.#child.kill();
    await this.#ended;
  }
}
