import { StrictMode } from 'react';
import { createRoot } from 'react-dom/client';
import { App } from './App';
import { Control } from './control';
import { LiveTraffic } from './live';
import { TrafficStore } from './TrafficStore';
import '../../workbench/src/theme.css';
import './inspector.css';
import './control.css';

function socketAddress(path: string): string {
  const address = new URL(path, location.href);
  address.protocol = address.protocol.replace('http', 'ws');
  return address.href;
}

createRoot(document.getElementById('inspector')!).render(
  <StrictMode>
    <App
      live={new LiveTraffic(new TrafficStore(), socketAddress('/traffic'))}
      control={new Control(socketAddress('/control'))}
    />
  </StrictMode>,
);
