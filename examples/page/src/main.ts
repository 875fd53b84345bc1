import { connect } from '@varnel/web-client';
import { connectSimulator } from '@varnel/web-client/simulator';

// The terminal puts its bridge into every page. Elsewhere the page connects to a simulator on this machine.
const sdk = window.CallBridge ? connect() : connectSimulator({ url: import.meta.env.VITE_SIMULATOR });

const last = document.getElementById('last')!;
const state = document.getElementById('state')!;

sdk.watchQuotes(['609801.SH'], ({ changed: [quote] }) => {
  if (quote) last.textContent = `${quote.last} at ${quote.time}`;
});
sdk.onOpen(() => (state.textContent = ''));
sdk.onClose(({ reason }) => (state.textContent = `no connection to the simulator ${reason}`));
