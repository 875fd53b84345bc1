import type { Connection } from '@varnel/web-client';
import { createContext, useContext } from 'react';
import type { MarketClock } from '../live/MarketClock';
import type { SettingsStore } from '../settings/SettingsStore';

/** What every part of the desk can use. */
export interface Desk {
  sdk: Connection;
  settings: SettingsStore;
  clock: MarketClock;
}

export const DeskContext = createContext<Desk | undefined>(undefined);

export function useDesk(): Desk {
  const desk = useContext(DeskContext);
  if (!desk) throw new Error('This component must be inside the desk.');
  return desk;
}

export function useSdk(): Connection {
  return useDesk().sdk;
}
