import { handshakeStatus, Peer, viewOf, type BridgeEvent } from './support/peer';
import { login, symbols, traderIds } from './support/scenario';
import { Simulator } from './support/simulator';
import { expect, test } from './support/test';

const mebibyte = 1024 * 1024;
const dayKLines = (uuid: string, symbol: string) => ['Data_getKLineData_REQ', uuid, symbol, '', '', '2'] as const;

/** A call whose frame has exactly this many bytes. */
function frameOf(bytes: number, uuid: string): string {
  const [head, tail] = [`{"invoke":"Data_getToken_REQ","args":["${uuid}","`, '"]}'];
  return head + 'x'.repeat(bytes - head.length - tail.length) + tail;
}

test.describe('a frame that is not a call', () => {
  const frames: [string, string | Buffer, { binary?: boolean }][] = [
    ['no JSON', 'invoke', {}],
    ['empty', '', {}],
    ['cut short', '{"invoke":"Data_getToken_REQ","args":["u1"]', {}],
    ['with text after it', '{"invoke":"Data_getToken_REQ","args":["u1"]}x', {}],
    ['an array', '["Data_getToken_REQ","u1"]', {}],
    ['null', 'null', {}],
    ['a text', '"Data_getToken_REQ"', {}],
    ['an empty object', '{}', {}],
    ['without "invoke"', '{"args":["u1"]}', {}],
    ['with a number for "invoke"', '{"invoke":7,"args":["u1"]}', {}],
    ['with null for "invoke"', '{"invoke":null,"args":["u1"]}', {}],
    ['without "args"', '{"invoke":"Data_getToken_REQ"}', {}],
    ['with a text for "args"', '{"invoke":"Data_getToken_REQ","args":"u1"}', {}],
    ['with an object for "args"', '{"invoke":"Data_getToken_REQ","args":{"0":"u1"}}', {}],
    ['deeper than any call', `{"invoke":"Data_getToken_REQ","args":${'['.repeat(5000)}${']'.repeat(5000)}}`, {}],
    ['binary', Buffer.from('{"invoke":"Data_getToken_REQ","args":["u1"]}'), { binary: true }],
  ];

  for (const [name, frame, options] of frames) {
    test(`${name}: closes its own connection with 1007 and a reason`, async ({ url }) => {
      const bystander = await Peer.connect(url);
      const offender = await Peer.connect(url);
      offender.socket.send(frame, options);
      offender.call('Data_getToken_REQ', 'after');
      const { code, reason } = await offender.closed;
      expect(code).toBe(1007);
      expect(reason).toMatch(/\w/);
      expect(offender.events).toEqual([]);

      bystander.call('Data_getToken_REQ', 'still here');
      expect((await bystander.reply('Data_getToken_RES', 'still here')).resultData).toBe(login.token);
      bystander.close();
    });
  }

  test('text that is not UTF-8: closes with 1007', async ({ url }) => {
    const offender = await Peer.connect(url);
    offender.socket.send(Buffer.from([0x22, 0xff, 0xfe, 0x22]), { binary: false });
    expect((await offender.closed).code).toBe(1007);
  });
});

test.describe('size of a frame', () => {
  test('one mebibyte is accepted', async ({ url }) => {
    const peer = await Peer.connect(url);
    peer.socket.send(frameOf(mebibyte, 'large'));
    expect((await peer.reply('Data_getToken_RES', 'large')).resultData).toBe(login.token);
    peer.close();
  });

  test('one byte more closes with 1009 and does not affect others', async ({ url }) => {
    const bystander = await Peer.connect(url);
    const offender = await Peer.connect(url);
    offender.socket.send(frameOf(mebibyte + 1, 'too large'));
    expect((await offender.closed).code).toBe(1009);
    expect(offender.events).toEqual([]);
    await bystander.drain();
    bystander.close();
  });

  test('counts all pieces of a frame', async ({ url }) => {
    const offender = await Peer.connect(url);
    const frame = frameOf(mebibyte + 1, 'pieces');
    const half = mebibyte / 2;
    offender.socket.send(frame.slice(0, half), { fin: false });
    offender.socket.send(frame.slice(half), { fin: true });
    expect((await offender.closed).code).toBe(1009);
  });
});

test.describe('origin', () => {
  test.use({ options: ['--allow-origin', 'http://desk.example:8080'] });

  const origins: [string, (port: number) => string | undefined, number][] = [
    ['its own address', (port) => `http://127.0.0.1:${port}`, 101],
    ['its own name', (port) => `http://localhost:${port}`, 101],
    ['one that was allowed', () => 'http://desk.example:8080', 101],
    ['none', () => undefined, 403],
    ['empty', () => '', 403],
    ['"null", as of a file', () => 'null', 403],
    ['a foreign site', () => 'http://evil.example', 403],
    ['another port of this machine', (port) => `http://127.0.0.1:${port === 65535 ? 1 : port + 1}`, 403],
    ['another scheme', (port) => `https://127.0.0.1:${port}`, 403],
    ['its own address as the beginning of another', (port) => `http://127.0.0.1:${port}.evil.example`, 403],
    ['the allowed one without its port', () => 'http://desk.example', 403],
  ];

  for (const [name, origin, status] of origins) {
    test(`${name}: ${status}`, async ({ url }) => {
      const value = origin(viewOf(url).port);
      const headers = value === undefined ? {} : { Origin: value };
      expect(await handshakeStatus(url, { headers })).toBe(status);
    });
  }
});

test.describe('pages', () => {
  test('that disconnect during calls do not affect others', async ({ url }) => {
    const bystander = await Peer.connect(url);
    for (let round = 0; round < 10; ++round) {
      const vanishing = await Promise.all(Array.from({ length: 10 }, () => Peer.connect(url)));
      for (const [index, peer] of vanishing.entries()) {
        peer.call(...dayKLines('k', symbols[index % symbols.length]!));
        peer.call('Data_getTraderList_REQ', 't');
        // Half of them leave with the calls still under way to the simulator, half when it has begun to answer.
        if (index % 2) await peer.reply('Data_getTraderList_RES', 't');
        peer.socket.terminate();
      }
      bystander.call('Data_getTraderList_REQ', `${round}`);
      expect((await bystander.reply('Data_getTraderList_RES', `${round}`)).resultData).toEqual(traderIds);
    }
    expect(bystander.events).toHaveLength(10);
    bystander.close();
  });

  test('fifty at once get only their own replies', async ({ url }) => {
    const peers = await Promise.all(Array.from({ length: 50 }, () => Peer.connect(url)));
    // Identifiers name their page, so that a reply to the wrong page is noticed.
    const expected = peers.map((peer, page) => {
      const uuids: string[] = [];
      for (let call = 0; call < 6; ++call) {
        const uuid = `page ${page} call ${call}`;
        const symbol = symbols[(page + call) % symbols.length]!;
        if (call % 2) peer.call('Data_getKLineData_REQ', uuid, symbol, '20250220', '20250228', '2');
        else peer.call('Data_getTraderList_REQ', uuid);
        uuids.push(uuid);
      }
      return uuids;
    });
    for (const [page, peer] of peers.entries()) {
      await peer.count(expected[page]!.length);
      await peer.drain();
      expect(peer.events.map(({ reply }) => reply!.uuid).sort()).toEqual(expected[page]);
      for (const { event, reply } of peer.events as BridgeEvent[]) {
        const candles = event === 'Data_getKLineData_RES';
        const data = reply!.resultData as { symbol: string }[];
        if (!candles) expect(data).toEqual(traderIds);
        else expect(new Set(data.map(({ symbol }) => symbol))).toEqual(new Set([symbolAsked(reply!.uuid)]));
      }
    }
    peers.forEach((peer) => peer.close());
  });

  function symbolAsked(uuid: string): string {
    const [page, call] = uuid.match(/\d+/g)!.map(Number) as [number, number];
    return symbols[(page + call) % symbols.length]!;
  }

  // Identifiers come back unchanged, so a long identifier makes a long answer.
  const long = 'x'.repeat(1_000_000);

  test('that stop reading do not block the others', async ({ url }) => {
    const deaf = await Peer.connect(url);
    deaf.socket.pause();
    const calls = 12; // more than sockets hold, less than the simulator's limit
    for (let call = 0; call < calls; ++call) deaf.call('Data_getToken_REQ', long);
    const peer = await Peer.connect(url);
    for (let call = 0; call < 2 * calls; ++call) await peer.drain();
    deaf.socket.resume();
    await deaf.count(calls);
    deaf.close();
    peer.close();
  });

  test('that never read are disconnected before the memory fills up', async ({ simulator, url }) => {
    const deaf = await Peer.connect(url);
    const peer = await Peer.connect(url);
    deaf.socket.pause();
    const calls = 60;
    for (let call = 0; call < calls; ++call) deaf.call('Data_getToken_REQ', long);
    await simulator.logged(/has stopped reading: dropped/);
    deaf.socket.resume();
    expect((await deaf.closed).code).toBe(1006);
    expect(deaf.events.length).toBeLessThan(calls);
    await peer.drain();
    peer.close();
  });
});

test.describe('the end', () => {
  for (const signal of ['SIGTERM', 'SIGINT'] as const) {
    test(`${signal} with pages connected and calls under way: connections close with 1001, status 0`, async ({
      simulator,
      url,
    }) => {
      const peers = await Promise.all([Peer.connect(url), Peer.connect(url)]);
      peers.forEach((peer) => peer.call(...dayKLines('k', symbols[0]!)));
      await peers[0]!.drain();
      expect(await simulator.stop(signal)).toEqual({ code: 0, signal: null });
      for (const peer of peers) expect((await peer.closed).code).toBe(1001);
    });
  }

  test('a second simulator on the same port prints one line and exits with an error', async ({ url }) => {
    const { port } = viewOf(url);
    const second = new Simulator(['--port', String(port)]);
    const { code } = await second.ended;
    expect(code).toBeGreaterThan(0);
    expect(second.stdout).toBe('');
    expect(second.stderr.trim().split('\n')).toHaveLength(1);
    expect(second.stderr).toContain(`${port}: Address already in use`);
    // The first one goes on.
    const peer = await Peer.connect(url);
    await peer.drain();
    peer.close();
  });
});
