import type { FundAccount } from '@varnel/web-client';
import type { Answered } from '../useAnswer';

interface Props {
  accounts: Answered<FundAccount[]>;
  value: string;
  /** Label of the option for all accounts. Without it the user must choose an account. */
  all?: string;
  onChange: (fundAccount: string) => void;
}

export function AccountSelect({ accounts, value, all, onChange }: Props) {
  return (
    <label>
      资产账号 <small>account</small>
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
