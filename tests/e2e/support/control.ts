import { once } from 'node:events';
import { WebSocket, type RawData } from 'ws';

/** Gives the simulator at this address a command, as docs/simulator.md has them, and waits until it was carried out. */
export async function command(url: string, text: string): Promise<void> {
  const { origin, host } = new URL(url);
  const socket = new WebSocket(`ws://${host}/control`, { origin });
  const result = new Promise<string>((resolve, reject) => {
    socket.on('error', reject);
    socket.on('close', () => reject(new Error(`${text}: the connection has ended`)));
    socket.on('message', (data: RawData) => {
      const frame = JSON.parse(String(data)) as { kind: string; problem?: string };
      if (frame.kind === 'result') resolve(frame.problem ?? '');
    });
  });
  await once(socket, 'open');
  socket.send(JSON.stringify({ command: text, id: 1 }));
  const problem = await result;
  socket.close();
  if (problem !== '') throw new Error(`${text}: ${problem}`);
}
