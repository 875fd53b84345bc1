import type { BrowserContext } from '@playwright/test';
import { readFileSync } from 'node:fs';
import { WireCheck, type OpenRpcDocument } from '../../../web/client/tools/wireCheck';
import type { Received, Sent } from './frames';

const document = JSON.parse(
  readFileSync(new URL('../../../docs/openrpc.json', import.meta.url), 'utf8'),
) as OpenRpcDocument;

const wire = new WireCheck(document, {
  // The simulator has empty quotes of symbols that it does not know.
  Tick: { anyOf: [{ $ref: '#/components/schemas/SimulatorTick' }, { type: 'object', maxProperties: 0 }] },
  Candle: { $ref: '#/components/schemas/SimulatorCandle' },
  // Other terminals may show and hold any value. The simulator shows texts.
  Cell: {
    type: 'object',
    properties: { displayRole: { type: ['string', 'null'] }, userRole: { type: ['string', 'number', 'null'] } },
    required: ['displayRole', 'userRole'],
  },
});

/** What is wrong with the frames of this worker's pages. */
export const wrongFrames: string[] = [];

/** How many frames have been compared. */
export const comparedFrames = { sent: 0, received: 0 };

/** Identifiers that the client makes. Tests make calls by hand too, often with wrong arguments on purpose. */
const clientUuid = /^(?:[0-9a-f]{32}|[0-9a-f-]{36})-\d+$/;

/** Compares all frames between the context's pages and the simulator with the description of the protocol. */
export function watchTraffic(context: BrowserContext): void {
  context.on('page', (page) =>
    page.on('websocket', (socket) => {
      if (new URL(socket.url()).pathname !== '/view') return; // of the page's own server, not of the simulator
      socket.on('framesent', ({ payload }) => {
        const { invoke, args } = JSON.parse(String(payload)) as Sent;
        if (!clientUuid.test(String(args[0]))) return;
        comparedFrames.sent += 1;
        note(wire.sent(invoke, args));
      });
      socket.on('framereceived', ({ payload }) => {
        const { event, args } = JSON.parse(String(payload)) as Received;
        comparedFrames.received += 1;
        note(wire.received(event, args));
      });
    }),
  );
}

function note(problem: string | undefined): void {
  if (problem) wrongFrames.push(problem);
}
