import type { Cancels } from '../cancelling';
import { useTexts } from '../texts/useTexts';

const named = 20;

/** What became of cancels. */
export function CancelOutcome({ cancels: { accepted, refused, unknown, unsent } }: { cancels: Cancels }) {
  const t = useTexts();
  return (
    <>
      {accepted > 0 && <p role="status">{t.cancelsAccepted(accepted)}</p>}
      {refused.length > 0 && (
        <div className="problem" role="alert">
          {t.cancelRefused(refused.length)}
          <ul className="reasons">
            {refused.slice(0, named).map(({ orderId, reason }) => (
              <li key={orderId}>
                <code>{orderId}</code> {reason}
              </li>
            ))}
          </ul>
        </div>
      )}
      {unknown.length > 0 && (
        <p className="problem" role="alert">
          {t.cancelUnknown(unknown.length)}
        </p>
      )}
      {unsent.length > 0 && (
        <p className="problem" role="alert">
          {t.cancelUnsent(unsent.length)}
        </p>
      )}
    </>
  );
}
