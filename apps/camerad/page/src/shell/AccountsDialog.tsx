import { useEffect, useState } from 'preact/hooks';

import { api, explain } from '../api';
import { session } from '../store';
import type { Account, Role } from '../types';
import { Button } from '../ui/Button';
import { Dialog } from '../ui/Dialog';
import { PasswordField } from './PasswordDialog';

export function AccountsDialog({ onClose }: { onClose: () => void }) {
  const [accounts, setAccounts] = useState<Account[] | null>(null);
  const [problem, setProblem] = useState('');
  const [name, setName] = useState('');
  const [role, setRole] = useState<Role>('viewer');
  const [password, setPassword] = useState('');
  const [leaving, setLeaving] = useState(''); // the account that is asked about
  const run = async (what: () => Promise<unknown>): Promise<boolean> => {
    try {
      setProblem('');
      await what();
      setAccounts((await api.accounts()).accounts);
      return true;
    } catch (error) {
      setProblem(explain(error));
      return false;
    }
  };
  useEffect(() => void run(async () => undefined), []);
  const add = async (event: Event) => {
    event.preventDefault();
    if (await run(() => api.putAccount(name.trim(), { password, role }))) {
      setName('');
      setPassword('');
    }
  };
  return (
    <Dialog title="Accounts" testid="accounts-dialog" onClose={onClose}>
      <div class="stack">
        <ul class="rows" data-testid="accounts">
          {(accounts ?? []).map((account) => (
            <li key={account.name}>
              <span class="row-name">{account.name}</span>
              <select
                class="select"
                aria-label={`Role of ${account.name}`}
                value={account.role}
                disabled={account.name === session.value?.name}
                data-testid={`account-role-${account.name}`}
                onChange={(event) => {
                  const wanted = event.currentTarget.value as Role;
                  event.currentTarget.value = account.role; // until the camera has taken it
                  void run(() => api.putAccount(account.name, { role: wanted }));
                }}
              >
                <option value="admin">Administrator</option>
                <option value="viewer">Viewer</option>
              </select>
              <Button
                small
                kind={leaving === account.name ? 'danger' : 'plain'}
                reason={account.name === session.value?.name ? 'You are signed in with it' : undefined}
                data-testid={`account-delete-${account.name}`}
                onClick={() => {
                  if (leaving === account.name) {
                    setLeaving('');
                    void run(() => api.deleteAccount(account.name));
                  } else {
                    setLeaving(account.name);
                  }
                }}
              >
                {leaving === account.name ? 'Really remove' : 'Remove'}
              </Button>
            </li>
          ))}
        </ul>
        <form class="stack" onSubmit={(event) => void add(event)}>
          <h3>Add an account, or give one a new password</h3>
          <div class="form-field">
            <label for="account-name">Name</label>
            <input
              id="account-name"
              type="text"
              autocomplete="off"
              autocapitalize="none"
              spellcheck={false}
              value={name}
              data-testid="new-account-name"
              onInput={(event) => setName(event.currentTarget.value)}
            />
          </div>
          <PasswordField id="account-password" label="Password" use="new-password" value={password} onValue={setPassword} />
          <div class="form-field">
            <label for="account-role">Role</label>
            <select
              id="account-role"
              class="select"
              value={role}
              data-testid="new-account-role"
              onChange={(event) => setRole(event.currentTarget.value as Role)}
            >
              <option value="viewer">Viewer: sees everything, changes nothing</option>
              <option value="admin">Administrator</option>
            </select>
          </div>
          <p class="problem" role="alert" data-testid="accounts-problem">
            {problem}
          </p>
          <div class="dialog-actions">
            <Button onClick={onClose}>Close</Button>
            <Button kind="primary" type="submit" data-testid="new-account-submit" reason={'' === name.trim() ? 'Type a name first' : undefined}>
              Set
            </Button>
          </div>
        </form>
      </div>
    </Dialog>
  );
}
