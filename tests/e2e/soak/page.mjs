// A page without a browser, which counts: every call that it waits for must have exactly one answer.

import { WebSocket } from 'ws';

/** What all pages have seen. */
export class Tally {
  pages = 0;
  calls = 0;
  answers = 0;
  refusals = 0;
  pushes = 0;
  /** Calls of pages that went before the answer came. */
  abandoned = 0;
  /** Connections that the simulator ended, because the page had stopped reading. */
  dropped = 0;
  roundTrips = [];
  faults = [];
  /** Those that are there, to see what they wait for. */
  living = new Set();

  /** Calls that wait for their answers. */
  get waiting() {
    return [...this.living].flatMap((page) => page.waiting);
  }
}

export class Page {
  static count = 0;
  #waiting = new Map();
  #calls = 0;
  #isLeaving = false;

  constructor(url, tally) {
    const { origin, host } = new URL(url);
    this.tally = tally;
    this.name = `p${++Page.count}`;
    this.socket = new WebSocket(`ws://${host}/view`, { origin });
    this.socket.on('message', (data) => this.#receive(String(data)));
    this.socket.on('error', () => {}); // "close" follows
    this.closed = new Promise((resolve) => this.socket.on('close', resolve));
    void this.closed.then((code) => this.#abandon(code));
  }

  static async open(url, tally) {
    const page = new Page(url, tally);
    const opened = new Promise((resolve) => page.socket.on('open', resolve));
    if ((await Promise.race([opened, page.closed])) !== undefined) throw new Error('the simulator accepts no page');
    tally.pages += 1;
    tally.living.add(page);
    return page;
  }

  /** Makes a call and waits for its envelope; undefined when the page ends before. */
  async call(method, ...args) {
    const uuid = `${this.name}-${++this.#calls}`;
    const begin = performance.now();
    this.tally.calls += 1;
    const answer = new Promise((resolve) => this.#waiting.set(uuid, { method, resolve }));
    this.socket.send(JSON.stringify({ invoke: method, args: [uuid, ...args] }));
    const reply = await answer;
    if (reply) this.lastRoundTrip = performance.now() - begin;
    return reply;
  }

  /** The result of a call that must succeed. */
  async result(method, ...args) {
    const reply = await this.call(method, ...args);
    if (reply?.code !== '0') throw new Error(`${method}: ${reply ? reply.msg : 'the page has ended'}`);
    return reply.resultData;
  }

  get waiting() {
    return [...this.#waiting.values()].map(({ method }) => method);
  }

  stall() {
    this.socket.pause();
  }

  readAgain() {
    this.socket.resume();
  }

  /** Ends as a browser does that closes a page. By then every call must have its answer. */
  async close() {
    if (this.#waiting.size > 0 && !this.isDropped) this.#fault(`${this.#waiting.size} calls without an answer`);
    this.#isLeaving = true;
    this.socket.close();
    await this.closed;
  }

  /** Ends as a browser does that crashes: nothing more is sent or read. */
  async crash() {
    this.#isLeaving = true;
    this.socket.terminate();
    await this.closed;
  }

  /** Sends half a frame and nothing more, as a machine that has lost its network. */
  vanish() {
    const announcedBytes = 100;
    const masked = 0x80;
    this.socket._socket.write(Buffer.from([0x81, masked | announcedBytes, 0, 0, 0, 0, 0x7b]));
    this.socket.pause();
  }

  #receive(text) {
    if (!text.endsWith('_RES"}')) {
      this.tally.pushes += 1;
      return;
    }
    const { event, args } = JSON.parse(text);
    const reply = JSON.parse(args[0]);
    const call = this.#waiting.get(reply.uuid);
    if (!call) return this.#fault(`${event} for ${reply.uuid}, which waits for nothing: a second answer, or another's`);
    if (event !== call.method.replace('_REQ', '_RES')) this.#fault(`${event} answers ${call.method}`);
    this.#waiting.delete(reply.uuid);
    this.tally.answers += 1;
    if (reply.code !== '0') this.tally.refusals += 1;
    call.resolve(reply);
  }

  #abandon(code) {
    this.tally.living.delete(this);
    this.isDropped = !this.#isLeaving;
    if (this.isDropped) {
      this.tally.dropped += 1;
      if (code !== 1006) this.#fault(`ended with code ${code}`);
    }
    this.tally.abandoned += this.#waiting.size;
    for (const { resolve } of this.#waiting.values()) resolve(undefined);
    this.#waiting.clear();
  }

  #fault(what) {
    this.tally.faults.push(`${this.name}: ${what}`);
  }
}
