import type { Calls } from '../calls.js';
import type { CloseEvent, Link } from '../link.js';
import type { PushHub } from '../pushes.js';
import type { Listeners } from '../safely.js';
import type { Subscriptions } from '../subscriptions.js';

/** What watches use of the connection. */
export interface Terminal {
  readonly calls: Calls;
  readonly link: Pick<Link, 'state'>;
  readonly on: PushHub['on'];
  readonly subscriptions: Subscriptions;
  readonly opened: Listeners<void>;
  readonly closed: Listeners<CloseEvent>;
  /** The page has closed the connection. */
  readonly ended: Listeners<void>;
  /** A subscription or a list could not be had. */
  readonly onError: (error: unknown) => void;
}
