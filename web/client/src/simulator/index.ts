import { connect, type ConnectOptions, type Connection } from '../connection.js';
import type { SimulatorVocabulary, Vocabulary } from '../vocabulary.js';
import { simulatorBridge, type SimulatorOptions } from './simulatorBridge.js';

export { simulatorBridge, type SimulatorBridge, type SimulatorOptions } from './simulatorBridge.js';
export { type Socket } from './SocketBridge.js';

/**
 * Connects to a running simulator, from a page of any origin that it allows, or from a script. `close()` of the connection
 * ends the WebSocket too.
 */
export function connectSimulator<V extends Vocabulary = SimulatorVocabulary>(
  options: SimulatorOptions & ConnectOptions = {},
): Connection<V> {
  const bridge = simulatorBridge(options);
  const sdk = connect<V>(bridge, options);
  const { close } = sdk;
  sdk.close = () => {
    close();
    bridge.close();
  };
  return sdk;
}
