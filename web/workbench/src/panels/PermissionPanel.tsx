import type { Connection } from '@varnel/web-client';
import { useState, type FormEvent } from 'react';
import { useAnswer } from '../useAnswer';
import { useFundAccounts } from '../useFundAccounts';
import { AccountSelect } from './AccountSelect';
import { Outcome, Panel } from './Panel';

/** Whether an account may use a support type of algorithms. */
export function PermissionPanel({ sdk }: { sdk: Connection }) {
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
      权限菜单 Open menu
    </button>
  );
  return (
    <Panel title="算法权限" hint="Permission" tools={open} testId="permission">
      <form className="fields" onSubmit={ask}>
        <AccountSelect accounts={accounts} value={fundAccount} onChange={setChosen} />
        <label>
          支持类型 <small>support type</small>
          <input value={supportType} spellCheck={false} onChange={(event) => setSupportType(event.target.value)} />
        </label>
        <button type="submit">查询 Ask</button>
      </form>
      {(permission.data || permission.error) && (
        <Outcome of={permission}>
          {({ held, of }) => (
            <output className="block" data-testid="permission-answer">
              {of}：{held === 1 ? '有权限 held (1)' : '无权限 not held (0)'}
            </output>
          )}
        </Outcome>
      )}
      {menu.error && <Outcome of={menu}>{() => null}</Outcome>}
      {menu.data !== undefined && <p className="quiet">已请终端打开权限菜单 the terminal was asked</p>}
    </Panel>
  );
}
