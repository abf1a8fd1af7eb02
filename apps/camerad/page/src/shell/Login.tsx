import { useEffect, useRef, useState } from 'preact/hooks';

import { ApiError, explain } from '../api';
import { login, sessionNote } from '../store';
import { Button } from '../ui/Button';

// Asks for name and password. Says why it failed, and counts down when the camera wants a pause.
export function Login() {
  const [user, setUser] = useState('');
  const [password, setPassword] = useState('');
  const [problem, setProblem] = useState('');
  const [working, setWorking] = useState(false);
  const [pause, setPause] = useState(0); // seconds until the next attempt
  const passwordField = useRef<HTMLInputElement>(null);
  const userField = useRef<HTMLInputElement>(null);
  useEffect(() => userField.current?.focus(), []);
  useEffect(() => {
    if (0 < pause) {
      const timer = setTimeout(() => setPause(pause - 1), 1000);
      return () => clearTimeout(timer);
    }
    return undefined;
  }, [pause]);

  const submit = async (event: Event) => {
    event.preventDefault();
    if (working || 0 < pause) {
      return;
    }
    if ('' === user.trim() || '' === password) {
      setProblem('Type a name and a password.');
      return;
    }
    setWorking(true);
    setProblem('');
    try {
      await login(user.trim(), password);
    } catch (error) {
      setProblem(explain(error));
      if (error instanceof ApiError && undefined !== error.retryAfter) {
        setPause(error.retryAfter);
      }
      setPassword('');
      passwordField.current?.focus();
      setWorking(false);
    }
  };

  return (
    <main class="login">
      <form onSubmit={(event) => void submit(event)} data-testid="login-form">
        <img src="icon.svg" alt="" width={40} height={40} />
        <h1>Camera</h1>
        {'' === sessionNote.value ? null : <p data-testid="login-note">{sessionNote.value}</p>}
        <label for="login-name">Name</label>
        <input
          ref={userField}
          id="login-name"
          type="text"
          autocomplete="username"
          autocapitalize="none"
          spellcheck={false}
          value={user}
          data-testid="login-name"
          onInput={(event) => setUser(event.currentTarget.value)}
        />
        <label for="login-password">Password</label>
        <input
          ref={passwordField}
          id="login-password"
          type="password"
          autocomplete="current-password"
          value={password}
          data-testid="login-password"
          onInput={(event) => setPassword(event.currentTarget.value)}
        />
        <p class="problem" role="alert" data-testid="login-problem">
          {problem}
        </p>
        <Button
          kind="primary"
          type="submit"
          data-testid="login-submit"
          reason={0 < pause ? `Try again in ${pause} s` : undefined}
        >
          {0 < pause ? `Try again in ${pause} s` : working ? 'Signing in …' : 'Sign in'}
        </Button>
      </form>
    </main>
  );
}
