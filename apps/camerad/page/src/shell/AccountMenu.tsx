import { useEffect, useRef, useState } from 'preact/hooks';

import { isAdmin, logout, session } from '../store';
import { chooseTheme, type Theme, theme } from '../theme';
import { Button } from '../ui/Button';
import { AccountsDialog } from './AccountsDialog';
import { PasswordDialog } from './PasswordDialog';
import { TokensDialog } from './TokensDialog';

const kThemes: { value: Theme; label: string }[] = [
  { value: 'system', label: 'As the system' },
  { value: 'light', label: 'Light' },
  { value: 'dark', label: 'Dark' },
];

// Who is signed in, and what belongs to the person rather than to the camera.
export function AccountMenu() {
  const [open, setOpen] = useState(false);
  const [dialog, setDialog] = useState<'' | 'password' | 'accounts' | 'tokens'>('');
  const box = useRef<HTMLDivElement>(null);
  const button = useRef<HTMLElement | null>(null);
  useEffect(() => {
    if (!open) {
      return undefined;
    }
    const leave = (event: Event) => {
      if (event.target instanceof Node && true !== box.current?.contains(event.target)) {
        setOpen(false);
      }
    };
    document.addEventListener('pointerdown', leave);
    document.addEventListener('focusin', leave);
    return () => {
      document.removeEventListener('pointerdown', leave);
      document.removeEventListener('focusin', leave);
    };
  }, [open]);
  const close = () => {
    setOpen(false);
    button.current?.focus();
  };
  const show = (which: typeof dialog) => {
    close();
    setDialog(which);
  };
  return (
    <div
      class="menu"
      ref={box}
      onKeyDown={(event) => {
        if ('Escape' === event.key && open) {
          event.stopPropagation();
          close();
        }
      }}
    >
      <Button
        kind="quiet"
        aria-expanded={open}
        aria-controls="account-menu"
        data-testid="account-menu"
        onClick={(event) => {
          button.current = event.currentTarget;
          setOpen(!open);
        }}
      >
        <span data-testid="account-name">{session.value?.name}</span>
        <svg viewBox="0 0 10 6" width="10" height="6" aria-hidden="true">
          <path d="M1 1l4 4 4-4" fill="none" stroke="currentColor" stroke-width="1.5" />
        </svg>
      </Button>
      <div id="account-menu" class="menu-box" hidden={!open}>
        <p class="muted small">{isAdmin.value ? 'Signed in as an administrator' : 'Signed in as a viewer'}</p>
        <fieldset>
          <legend>Appearance</legend>
          {kThemes.map((entry) => (
            <label key={entry.value}>
              <input
                type="radio"
                name="theme"
                checked={entry.value === theme.value}
                data-testid={`theme-${entry.value}`}
                onChange={() => chooseTheme(entry.value)}
              />
              {entry.label}
            </label>
          ))}
        </fieldset>
        <Button kind="quiet" data-testid="menu-password" onClick={() => show('password')}>
          Change password …
        </Button>
        {isAdmin.value ? (
          <>
            <Button kind="quiet" data-testid="menu-accounts" onClick={() => show('accounts')}>
              Accounts …
            </Button>
            <Button kind="quiet" data-testid="menu-tokens" onClick={() => show('tokens')}>
              Tokens for programs …
            </Button>
          </>
        ) : null}
        <a class="button quiet" href="api" target="_blank" rel="noreferrer">
          HTTP interface
        </a>
        <Button kind="quiet" data-testid="logout" onClick={() => void logout()}>
          Sign out
        </Button>
      </div>
      {'password' === dialog ? <PasswordDialog onClose={() => setDialog('')} /> : null}
      {'accounts' === dialog ? <AccountsDialog onClose={() => setDialog('')} /> : null}
      {'tokens' === dialog ? <TokensDialog onClose={() => setDialog('')} /> : null}
    </div>
  );
}
