import { useEffect, useLayoutEffect, useRef } from 'react';

/** What the hot keys of the trade view do. `text` names the explanation in the help dialog. */
export const hotKeys = [
  { action: 'ticket', code: 'KeyT', shift: false, shown: 'Alt+T', text: 'keyTicket' },
  { action: 'buy', code: 'KeyB', shift: false, shown: 'Alt+B', text: 'keyBuy' },
  { action: 'sell', code: 'KeyS', shift: false, shown: 'Alt+S', text: 'keySell' },
  { action: 'price', code: 'KeyP', shift: false, shown: 'Alt+P', text: 'keyPrice' },
  { action: 'qty', code: 'KeyQ', shift: false, shown: 'Alt+Q', text: 'keyQty' },
  { action: 'ladder', code: 'KeyL', shift: false, shown: 'Alt+L', text: 'keyLadder' },
  { action: 'blotter', code: 'KeyO', shift: false, shown: 'Alt+O', text: 'keyBlotter' },
  { action: 'cancelLast', code: 'KeyC', shift: false, shown: 'Alt+C', text: 'keyCancelLast' },
  { action: 'cancelAll', code: 'KeyC', shift: true, shown: 'Alt+Shift+C', text: 'keyCancelAll' },
  { action: 'help', code: 'KeyK', shift: false, shown: 'Alt+K', text: 'keyHelp' },
] as const;

export type HotKeyAction = (typeof hotKeys)[number]['action'];

type Pressed = Pick<KeyboardEvent, 'code' | 'altKey' | 'shiftKey' | 'ctrlKey' | 'metaKey' | 'repeat'>;

/** The action of a pressed key. The repeats of a held key have none. */
export function actionOf({ code, altKey, shiftKey, ctrlKey, metaKey, repeat }: Pressed): HotKeyAction | undefined {
  if (!altKey || ctrlKey || metaKey || repeat) return undefined;
  return hotKeys.find((key) => key.code === code && key.shift === shiftKey)?.action;
}

/** Carries out hot keys while the component is shown and no dialog is open. */
export function useHotKeys(actions: Readonly<Record<HotKeyAction, () => void>>): void {
  const latest = useRef(actions);
  // With the picture, not after it: a key acts on what the user sees.
  useLayoutEffect(() => {
    latest.current = actions;
  });
  useEffect(() => {
    const press = (event: KeyboardEvent) => {
      const action = actionOf(event);
      if (!action || document.querySelector('[role="dialog"], [role="alertdialog"]')) return;
      event.preventDefault();
      latest.current[action]();
    };
    window.addEventListener('keydown', press);
    return () => window.removeEventListener('keydown', press);
  }, []);
}
