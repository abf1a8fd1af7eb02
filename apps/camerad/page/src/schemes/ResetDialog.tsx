import { useState } from 'preact/hooks';

import { api } from '../api';
import { attempt, channel, notify } from '../store';
import { Button } from '../ui/Button';
import { Dialog } from '../ui/Dialog';

const kWord = 'factory';

export function ResetDialog({ onClose }: { onClose: () => void }) {
  const [text, setText] = useState('');
  const [working, setWorking] = useState(false);
  const isSure = kWord === text.trim().toLowerCase();
  const reset = async (event: Event) => {
    event.preventDefault();
    if (!isSure || working) {
      return;
    }
    setWorking(true);
    if (await attempt(() => api.reset(channel.value), 'The channel is not reset: ')) {
      notify('The channel has its factory values again.');
      onClose();
    }
    setWorking(false);
  };
  return (
    <Dialog title="Reset to factory values" testid="reset-dialog" onClose={onClose}>
      <form class="stack" onSubmit={(event) => void reset(event)}>
        <p>
          All schemes of channel {channel.value} lose their values, saved or not. It takes some seconds, in which the channel
          takes no other change.
        </p>
        <label for="reset-word">
          Type <strong>{kWord}</strong> to go on
        </label>
        <input
          id="reset-word"
          type="text"
          autocomplete="off"
          autocapitalize="none"
          spellcheck={false}
          value={text}
          data-testid="reset-word"
          onInput={(event) => setText(event.currentTarget.value)}
        />
        <div class="dialog-actions">
          <Button onClick={onClose}>Cancel</Button>
          <Button
            kind="danger"
            type="submit"
            data-testid="reset-confirm"
            reason={isSure ? (working ? 'The channel is being reset' : undefined) : `Type ${kWord} first`}
          >
            {working ? 'Resetting …' : 'Reset'}
          </Button>
        </div>
      </form>
    </Dialog>
  );
}
