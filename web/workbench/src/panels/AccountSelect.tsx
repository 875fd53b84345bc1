import type { FundAccount } from '@varnel/web-client';
import { useTexts } from '../texts/useTexts';
import type { Answered } from '../useAnswer';

interface Props {
  accounts: Answered<FundAccount[]>;
  value: string;
  /** Label of the option for all accounts. Without it the user must choose an account. */
  all?: string;
  onChange: (fundAccount: string) => void;
}

export function AccountSelect({ accounts, value, all, onChange }: Props) {
  const t = useTexts();
  return (
    <label>
      {t.account}
      <select value={value} onChange={(event) => onChange(event.target.value)}>
        {all !== undefined && <option value="">{all}</option>}
        {(accounts.data ?? []).map(({ fundAccount, fundAccountName }) => (
          <option key={fundAccount} value={fundAccount}>
            {fundAccount} {fundAccountName}
          </option>
        ))}
      </select>
    </label>
  );
}
