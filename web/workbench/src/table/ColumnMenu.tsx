import * as Menu from '@radix-ui/react-dropdown-menu';
import { useTexts } from '../texts/useTexts';

interface Props {
  /** The name of the table, for the label of the button. */
  label: string;
  columns: readonly { key: string; title: string }[];
  isShown: Readonly<Record<string, boolean>>;
  onShow: (key: string, on: boolean) => void;
  onReset: () => void;
}

/** Chooses the columns of a table. It stays open while columns are ticked. */
export function ColumnMenu({ label, columns, isShown, onShow, onReset }: Props) {
  const t = useTexts();
  const shownCount = columns.filter(({ key }) => isShown[key]).length;
  return (
    <Menu.Root modal={false}>
      <Menu.Trigger className="plain" aria-label={t.columnsOf(label)}>
        {t.columns}
      </Menu.Trigger>
      <Menu.Portal>
        <Menu.Content className="menu" align="end" sideOffset={2} collisionPadding={8}>
          {columns.map(({ key, title }) => (
            <Menu.CheckboxItem
              key={key}
              checked={isShown[key] ?? false}
              disabled={isShown[key] === true && shownCount === 1}
              onSelect={(event) => event.preventDefault()}
              onCheckedChange={(on) => onShow(key, on)}
            >
              <Menu.ItemIndicator className="tick">✓</Menu.ItemIndicator>
              {title}
            </Menu.CheckboxItem>
          ))}
          <Menu.Separator className="rule" />
          <Menu.Item
            onSelect={(event) => {
              event.preventDefault();
              onReset();
            }}
          >
            {t.resetColumns}
          </Menu.Item>
        </Menu.Content>
      </Menu.Portal>
    </Menu.Root>
  );
}
