import { useState } from 'preact/hooks';

import { api, explain } from '../api';
import { notify, session } from '../store';
import { Button } from '../ui/Button';
import { Dialog } from '../ui/Dialog';

export function PasswordDialog({ onClose }: { onClose: () => void }) {
  const [old, setOld] = useState('');
  const [fresh, setFresh] = useState('');
  const [again, setAgain] = useState('');
  const [problem, setProblem] = useState('');
  const change = async (event: Event) => {
    event.preventDefault();
    if (fresh !== again) {
      setProblem('The new password was not typed the same way twice.');
      return;
    }
    try {
      await api.changePassword(old, fresh);
      notify('The password is changed.');
      onClose();
    } catch (error) {
      setProblem(explain(error));
    }
  };
  return (
    <Dialog title="Change password" testid="password-dialog" onClose={onClose}>
      <form class="stack" onSubmit={(event) => void change(event)}>
        <input type="text" class="unseen" autocomplete="username" value={session.value?.name ?? ''} readOnly tabIndex={-1} aria-hidden="true" />
        <PasswordField id="password-old" label="Password until now" use="current-password" value={old} onValue={setOld} />
        <PasswordField id="password-new" label="New password, 8 letters at least" use="new-password" value={fresh} onValue={setFresh} />
        <PasswordField id="password-again" label="New password again" use="new-password" value={again} onValue={setAgain} />
        <p class="problem" role="alert" data-testid="password-problem">
          {problem}
        </p>
        <div class="dialog-actions">
          <Button onClick={onClose}>Cancel</Button>
          <Button kind="primary" type="submit" data-testid="password-submit">
            Change
          </Button>
        </div>
      </form>
    </Dialog>
  );
}

interface FieldProps {
  id: string;
  label: string;
  use: string;
  value: string;
  onValue: (value: string) => void;
}

export function PasswordField({ id, label, use, value, onValue }: FieldProps) {
  return (
    <div class="form-field">
      <label for={id}>{label}</label>
      <input
        id={id}
        type="password"
        autocomplete={use as 'new-password'}
        value={value}
        data-testid={id}
        onInput={(event) => onValue(event.currentTarget.value)}
      />
    </div>
  );
}
