import { useEffect, useState } from 'preact/hooks';

import { api, explain } from '../api';
import type { Role, Token } from '../types';
import { Button } from '../ui/Button';
import { Dialog } from '../ui/Dialog';
import { NumberField } from '../ui/Slider';

const kLongest = 3650; // days

// Tokens stand for a name and a password in the requests of a program.
export function TokensDialog({ onClose }: { onClose: () => void }) {
  const [tokens, setTokens] = useState<Token[]>([]);
  const [problem, setProblem] = useState('');
  const [name, setName] = useState('');
  const [role, setRole] = useState<Role>('viewer');
  const [days, setDays] = useState(90);
  const [made, setMade] = useState<Token | null>(null);
  const run = async (what: () => Promise<unknown>) => {
    try {
      setProblem('');
      await what();
      setTokens((await api.tokens()).tokens);
    } catch (error) {
      setProblem(explain(error));
    }
  };
  useEffect(() => void run(async () => undefined), []);
  return (
    <Dialog title="Tokens for programs" testid="tokens-dialog" onClose={onClose}>
      <div class="stack">
        {null === made ? null : (
          <div class="banner" role="status">
            <p>Keep the token of {made.name} now; it is not shown again.</p>
            <input type="text" class="token" readOnly aria-label="Token" value={made.token ?? ''} data-testid="token-made" onFocus={(event) => event.currentTarget.select()} />
          </div>
        )}
        <ul class="rows" data-testid="tokens">
          {tokens.map((token) => (
            <li key={token.id}>
              <span class="row-name">{token.name}</span>
              <span class="muted">
                {token.role}
                {undefined === token.expires ? '' : `, until ${token.expires.slice(0, 10)}`}
              </span>
              <Button small onClick={() => void run(() => api.deleteToken(token.id))} aria-label={`Remove the token ${token.name}`}>
                Remove
              </Button>
            </li>
          ))}
        </ul>
        {0 === tokens.length ? <p class="muted">There are no tokens.</p> : null}
        <form
          class="stack"
          onSubmit={(event) => {
            event.preventDefault();
            void run(async () => {
              setMade(await api.addToken({ name: name.trim(), role, days }));
              setName('');
            });
          }}
        >
          <h3>Make a token</h3>
          <div class="form-field">
            <label for="token-name">Name of the program</label>
            <input id="token-name" type="text" autocomplete="off" value={name} data-testid="token-name" onInput={(event) => setName(event.currentTarget.value)} />
          </div>
          <div class="form-field">
            <label for="token-role">Role</label>
            <select id="token-role" class="select" value={role} onChange={(event) => setRole(event.currentTarget.value as Role)}>
              <option value="viewer">Viewer</option>
              <option value="admin">Administrator</option>
            </select>
          </div>
          <div class="form-field">
            <label for="token-days">Ends after, days</label>
            <NumberField id="token-days" value={days} min={1} max={kLongest} onValue={setDays} />
          </div>
          <p class="problem" role="alert">
            {problem}
          </p>
          <div class="dialog-actions">
            <Button onClick={onClose}>Close</Button>
            <Button kind="primary" type="submit" data-testid="token-submit" reason={'' === name.trim() ? 'Type a name first' : undefined}>
              Make
            </Button>
          </div>
        </form>
      </div>
    </Dialog>
  );
}
