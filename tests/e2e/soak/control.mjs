// Commands to the simulator, as docs/simulator.md has them.

import { once } from 'node:events';
import { WebSocket } from 'ws';

export class Control {
  #commands = 0;
  #waiting = new Map();

  static async open(url) {
    const control = new Control();
    const { origin, host } = new URL(url);
    control.socket = new WebSocket(`ws://${host}/control`, { origin });
    control.socket.on('message', (data) => control.#receive(JSON.parse(String(data))));
    await once(control.socket, 'open');
    return control;
  }

  /** Returns when the command has been carried out. */
  async run(command) {
    const id = ++this.#commands;
    const result = new Promise((resolve) => this.#waiting.set(id, resolve));
    this.socket.send(JSON.stringify({ command, id }));
    const { problem } = await result;
    if (problem) throw new Error(`${command}: ${problem}`);
  }

  #receive({ kind, id, ...result }) {
    if (kind === 'result') this.#waiting.get(id)(result);
    this.#waiting.delete(id);
  }
}
