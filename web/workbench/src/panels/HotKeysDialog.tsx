import { hotKeys } from '../hotkeys';
import { useTexts } from '../texts/useTexts';
import { Dialog } from '../ui/Dialog';

/** Explains the keys of the trade view. */
export function HotKeysDialog({ open, onClose }: { open: boolean; onClose: () => void }) {
  const t = useTexts();
  const inFields = [
    { shown: t.keysUp, text: t.keyStep },
    { shown: t.keysEnter, text: t.keyReview },
    { shown: t.keysEscape, text: t.keyBack },
  ];
  return (
    <Dialog open={open} onClose={onClose} title={t.hotKeys} testId="hot-keys">
      <table>
        <tbody>
          {[...hotKeys.map(({ shown, text }) => ({ shown, text: t[text] })), ...inFields].map(({ shown, text }) => (
            <tr key={text}>
              <th scope="row">
                <kbd>{shown}</kbd>
              </th>
              <td>{text}</td>
            </tr>
          ))}
        </tbody>
      </table>
    </Dialog>
  );
}
