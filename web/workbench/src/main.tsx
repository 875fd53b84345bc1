import { connect } from '@varnel/web-client';
import { StrictMode } from 'react';
import { createRoot } from 'react-dom/client';
import { App } from './App';
import { ConnectionWatch, loadBridge } from './bridge';
import { Journal } from './journal';
import { TickFeed } from './live/TickFeed';
import './theme.css';
import './panels.css';
import './desk.css'; // last: it has the rules for narrow windows

const root = createRoot(document.getElementById('desk')!);

// The connection may open as soon as the bridge is loaded, so listen before that.
const early: [string, ...unknown[]][] = [];
let note = (...event: [string, ...unknown[]]): void => {
  early.push(event);
};
const connection = new ConnectionWatch(window, (...event) => note(...event));

try {
  const journal = new Journal(await loadBridge());
  note = (...event) => journal.noteConnection(...event);
  early.forEach((event) => note(...event));
  const sdk = connect(journal);
  root.render(
    <StrictMode>
      <App sdk={sdk} feed={new TickFeed(sdk)} journal={journal} connection={connection} />
    </StrictMode>,
  );
} catch (error) {
  root.render(
    <main className="halt" role="alert">
      <h1>模拟工作台无法启动</h1>
      <p>The workbench cannot start: {(error as Error).message}.</p>
      <p>请从模拟终端打开此页面。Open this page from the simulator.</p>
    </main>,
  );
}
