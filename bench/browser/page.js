// Runs in the measured page and carries out the orders of bench.mjs, one at a time. Both sides of a comparison, the
// simulator and the echo, are measured by the same code on plain WebSockets.

/** Those that later orders use, by their names. */
const connections = new Map();

/** Opens a connection and sends its first frame. What comes is kept until somebody wants it. */
const connect = (url, first) =>
  new Promise((resolve, reject) => {
    const socket = new WebSocket(url);
    socket.kept = [];
    socket.onmessage = ({ data }) => {
      socket.kept.push(data);
      socket.onkept?.();
    };
    socket.onopen = () => {
      socket.send(first);
      resolve(socket);
    };
    socket.onclose = ({ code }) => reject(new Error(`${url} closed the connection (${code})`));
  });

const nextFrame = async (socket) => {
  while (socket.kept.length === 0) await new Promise((resolve) => (socket.onkept = resolve));
  return socket.kept.shift();
};

const disconnect = (socket) =>
  new Promise((resolve) => {
    socket.onmessage = null;
    socket.onclose = resolve;
    socket.close();
  });

const orders = {
  /** How fine the page's clock is. */
  clock: () => {
    const steps = [];
    for (let last = performance.now(); steps.length < 1000;) {
      const now = performance.now();
      if (now > last) steps.push(now - last);
      last = now;
    }
    return { isolated: crossOriginIsolated, finest: Math.min(...steps) * 1000 };
  },

  /** Opens a connection that later orders use by its name, and sends its first frame. */
  open: async ({ name, url, first }) => {
    connections.set(name, await connect(url, first));
  },

  close: ({ name }) => disconnect(connections.get(name)),

  send: ({ name, frame }) => connections.get(name).send(frame),

  /** The next frames that came or come. */
  take: async ({ name, count }) => {
    const frames = [];
    while (frames.length < count) frames.push(await nextFrame(connections.get(name)));
    return frames;
  },

  /**
   * Sends the frame, waits for the reply, and again: one call is under way at any time. Says how long each took in
   * microseconds, from just before the frame is sent until the reply is heard.
   */
  trips: ({ name, frame, reply, count }) =>
    new Promise((resolve) => {
      const socket = connections.get(name);
      const stamps = new Float64Array(count + 1);
      let done = 0;
      socket.onmessage = ({ data }) => {
        const now = performance.now();
        if (data !== reply) return; // a push
        stamps[++done] = now; // the end of one round trip and the start of the next
        if (done < count) socket.send(frame);
        else resolve(Array.from(stamps.subarray(1), (stamp, i) => (stamp - stamps[i]) * 1000));
      };
      stamps[0] = performance.now();
      socket.send(frame);
    }),

  /**
   * Opens a connection whose first frame makes pushes come, lets it run in, and counts them for so many milliseconds.
   * `all` are those of the whole time.
   */
  pushes: async ({ url, first, runIn, duration }) => {
    const socket = await connect(url, first);
    let all = 0;
    const countFor = (milliseconds) =>
      new Promise((resolve, reject) => {
        const start = performance.now();
        const before = all;
        socket.onclose = () => reject(new Error('the server has ended the connection'));
        socket.onmessage = () => {
          all++;
          const elapsed = performance.now() - start;
          if (elapsed >= milliseconds) resolve({ count: all - before, elapsed });
        };
      });
    await countFor(runIn);
    const counted = await countFor(duration);
    await disconnect(socket);
    return { ...counted, all };
  },
};

for (;;) {
  const { name, parameters } = await (await fetch('order')).json();
  let report;
  try {
    report = { result: await orders[name](parameters) };
  } catch (error) {
    report = { error: String(error) };
  }
  await fetch('report', { method: 'POST', body: JSON.stringify(report) });
}
