// Prints the first quote of a symbol: `node quote.mjs URL SYMBOL ws` with the package ws, without "ws" with Node's own
// WebSocket.
import { connectSimulator } from '@varnel/web-client/simulator';
import { WebSocket } from 'ws';

const [url, symbol, library] = process.argv.slice(2);
const createSocket = (address) => new WebSocket(address, { origin: new URL(url).origin });

const sdk = connectSimulator(library === 'ws' ? { url, createSocket } : { url });
for await (const { items } of sdk.watchQuotes([symbol])) {
  console.log(`${symbol} ${items.get(symbol).last}`);
  break;
}
sdk.close();
