import type { Phase } from './connection';

/** A fault of the simulated terminal and its value; 0 means that it is off. */
export interface FaultState {
  name: string;
  kind: 'switch' | 'count' | 'milliseconds';
  most: number;
  value: number;
  /** What it does, in English. */
  sentence: string;
}

export interface ControlState {
  /** Exchange time, in milliseconds since 1970. */
  time: number;
  isPaused: boolean;
  speed: number;
  faults: FaultState[];
}

interface Result {
  kind: 'result';
  id: number;
  /** Why the command was not carried out; empty when it was. */
  problem: string;
}

type Frame = Result | ({ kind: 'state' } & ControlState);

export interface Controlled {
  phase: Phase;
  state: ControlState | undefined;
  /** Why the last command was not carried out. */
  problem: string;
  /** The last command, once it has been carried out. */
  done: string;
}

const retryMs = 1000;

/** The simulator's state and the way to change it. It connects again when the connection has ended. */
export class Control {
  private controlled: Controlled = { phase: 'connecting', state: undefined, problem: '', done: '' };
  private readonly watchers = new Set<() => void>();
  private socket!: WebSocket;
  private last = 0;
  private lastCommand = '';

  constructor(private readonly address: string) {
    this.connect();
  }

  readonly current = (): Controlled => this.controlled;

  readonly watch = (watcher: () => void): (() => void) => {
    this.watchers.add(watcher);
    return () => this.watchers.delete(watcher);
  };

  run(command: string): void {
    if (this.socket.readyState !== WebSocket.OPEN) return;
    this.lastCommand = command;
    this.socket.send(JSON.stringify({ command, id: ++this.last }));
  }

  private connect(): void {
    this.socket = new WebSocket(this.address);
    this.socket.onopen = () => this.change({ phase: 'open' });
    this.socket.onmessage = ({ data }) => this.take(JSON.parse(String(data)) as Frame);
    this.socket.onclose = () => {
      this.change({ phase: 'closed', state: undefined });
      setTimeout(() => this.connect(), retryMs);
    };
  }

  private take(frame: Frame): void {
    if (frame.kind === 'state') this.change({ state: frame });
    else if (frame.id === this.last)
      this.change({ problem: frame.problem, done: frame.problem === '' ? this.lastCommand : '' });
  }

  private change(change: Partial<Controlled>): void {
    this.controlled = { ...this.controlled, ...change };
    this.watchers.forEach((watcher) => watcher());
  }
}
