import type { FundAccount } from '@varnel/web-client';
import { useTexts } from '../texts/useTexts';
import type { Answered } from '../useAnswer';

interface Props {
  accounts: Answered<FundAccount[]>;
  value: string;
  /** Label of the option for all accounts. Without it the user must choose an account. */
  all?: string;
  /** Puts the label beside the choice, not above it. */
  isInline?: boolean;
  onChange: (fundAccount: string) => void;
}

export function AccountSelect({ accounts, value, all, isInline, onChange }: Props) {
  const t = useTexts();
  return (
    <label className={isInline ? 'inline' : undefined}>
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
