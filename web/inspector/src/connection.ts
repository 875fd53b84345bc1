import type { Entry, Lost } from './entry';

export type Phase = 'connecting' | 'open' | 'closed';

const retryMs = 1000;

interface Listener {
  onPhase(phase: Phase): void;
  onEntries(entries: (Entry | Lost)[]): void;
}

/** Listens to the simulator, and connects again when the connection has ended. */
export function listenTo(address: string, listener: Listener): void {
  listener.onPhase('connecting');
  const socket = new WebSocket(address);
  socket.onopen = () => listener.onPhase('open');
  socket.onmessage = ({ data }) => listener.onEntries(JSON.parse(String(data)) as (Entry | Lost)[]);
  socket.onclose = () => {
    listener.onPhase('closed');
    setTimeout(() => listenTo(address, listener), retryMs);
  };
}
