import type { SecurityDetail } from '@varnel/web-client';
import { useId, useMemo, useState, type KeyboardEvent } from 'react';
import { suggestions } from '../ticket';
import { useTexts } from '../texts/useTexts';

interface Props {
  value: string;
  securities: readonly SecurityDetail[];
  onChange: (symbol: string) => void;
}

/** A symbol, typed or chosen from the securities whose code, spelling or name fits. */
export function SymbolField({ value, securities, onChange }: Props) {
  const t = useTexts();
  const id = useId();
  const [isOpen, setOpen] = useState(false);
  const [at, setAt] = useState(0);
  const found = useMemo(() => (isOpen ? suggestions(securities, value) : []), [isOpen, securities, value]);
  const isListed = isOpen && found.length > 0;
  const optionId = (place: number) => `${id}option${place}`;

  function choose(symbol: string) {
    onChange(symbol);
    setOpen(false);
  }

  function press(event: KeyboardEvent<HTMLInputElement>) {
    if (!isListed || event.altKey) return;
    const move = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (move !== undefined) setAt((at + move + found.length) % found.length);
    else if (event.key === 'Enter') choose(found[at]!.symbol);
    else if (event.key === 'Escape') setOpen(false);
    else return;
    event.preventDefault(); // Enter must choose, not review the order
  }

  return (
    <div className="combo wide">
      <label htmlFor={`${id}input`}>{t.symbol}</label>
      <input
        id={`${id}input`}
        name="symbol"
        role="combobox"
        aria-expanded={isListed}
        aria-controls={`${id}list`}
        aria-autocomplete="list"
        aria-activedescendant={isListed ? optionId(at) : undefined}
        value={value}
        placeholder={t.findSecurity}
        autoComplete="off"
        spellCheck={false}
        onKeyDown={press}
        onBlur={() => setOpen(false)}
        onChange={(event) => {
          onChange(event.target.value.trim());
          setOpen(true);
          setAt(0);
        }}
      />
      <ul id={`${id}list`} role="listbox" aria-label={t.suggestionsFor} className="options" hidden={!isListed}>
        {found.map(({ symbol, displayName, spellName }, place) => (
          <li
            key={symbol}
            id={optionId(place)}
            role="option"
            aria-selected={place === at}
            // Pressing would take the focus from the field before the click comes.
            onPointerDown={(event) => event.preventDefault()}
            onClick={() => choose(symbol)}
          >
            <span className="number">{symbol}</span> {displayName} <small>{spellName}</small>
          </li>
        ))}
      </ul>
    </div>
  );
}
