import { StrictMode } from 'react';
import { createRoot } from 'react-dom/client';
import { App } from './App';
import { LiveTraffic } from './live';
import { TrafficStore } from './TrafficStore';
import '../../workbench/src/theme.css';
import './inspector.css';

const address = new URL('/traffic', location.href);
address.protocol = address.protocol.replace('http', 'ws');

createRoot(document.getElementById('inspector')!).render(
  <StrictMode>
    <App live={new LiveTraffic(new TrafficStore(), address.href)} />
  </StrictMode>,
);
