import type { Connection } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { useTexts } from '../texts/useTexts';
import { useAnswer } from '../useAnswer';
import { useFundAccounts } from '../useFundAccounts';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

/** Whether an account may use a support type of algorithms. */
export function PermissionPanel({ sdk }: { sdk: Connection }) {
  const t = useTexts();
  const accounts = useFundAccounts(sdk);
  const [chosen, setChosen] = useState<string>();
  const [supportType, setSupportType] = useState('KFZ;SNB');
  const [permission, follow] = useAnswer<{ held: 0 | 1; of: string }>();
  const [menu, followMenu] = useAnswer<string>();
  const fundAccount = chosen ?? accounts.data?.[0]?.fundAccount ?? '';

  function ask(event: FormEvent) {
    event.preventDefault();
    const of = `${fundAccount} ${supportType}`;
    follow(sdk.getPermission({ fundAccount, supportType }).then((held) => ({ held, of })));
  }

  const open = (
    <button
      type="button"
      className="plain"
      disabled={menu.waiting}
      onClick={() => followMenu(sdk.openPermissionMenu())}
    >
      {t.openMenu}
    </button>
  );
  return (
    <Panel title={t.permission} tools={open} testId="permission">
      <form className="fields" onSubmit={ask}>
        <AccountSelect accounts={accounts} value={fundAccount} onChange={setChosen} />
        <label>
          {t.supportType}
          <input value={supportType} spellCheck={false} onChange={(event) => setSupportType(event.target.value)} />
        </label>
        <button type="submit">{t.ask}</button>
      </form>
      {(permission.data || permission.error) && (
        <Outcome of={permission}>
          {({ held, of }) => (
            <output className="block" data-testid="permission-answer">
              {held === 1 ? t.permissionHeld(of) : t.permissionNotHeld(of)}
            </output>
          )}
        </Outcome>
      )}
      {menu.error && <Outcome of={menu}>{() => null}</Outcome>}
      {menu.data !== undefined && <p className="quiet">{t.menuAsked}</p>}
    </Panel>
  );
}
