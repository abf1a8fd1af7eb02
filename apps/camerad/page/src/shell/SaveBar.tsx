import { useState } from 'preact/hooks';

import { api } from '../api';
import { labelOf } from '../logic/style';
import { listed } from '../logic/windows';
import { go } from '../place';
import { style } from '../settings/state';
import { attempt, channel, notify, readOnlyReason, schemes, unsavedCount } from '../store';
import type { SaveFailure } from '../types';
import { Button } from '../ui/Button';
import { Dialog } from '../ui/Dialog';

const nameOf = (index: number) => schemes.value?.schemes.find((scheme) => scheme.index === index)?.name ?? `Scheme ${index + 1}`;

// What is in force and not yet on flash, with the two ways to end that.
export function SaveBar() {
  const [open, setOpen] = useState<'' | 'list' | 'discard'>('');
  const [failed, setFailed] = useState<SaveFailure[]>([]);
  const [working, setWorking] = useState(false);
  const count = unsavedCount.value;
  const reason = readOnlyReason.value || (working ? 'The camera is at work' : undefined);

  const save = async () => {
    setWorking(true);
    await attempt(async () => {
      const result = await api.save(channel.value);
      const saved = result.saved ?? [];
      setFailed(result.failed ?? []);
      if (0 < saved.length) {
        notify(`Saved: ${listed(saved.map(nameOf))}.`);
      } else if (0 === (result.failed ?? []).length) {
        notify('There was nothing to save.');
      }
    }, 'Not saved: ');
    setWorking(false);
  };
  const discard = async () => {
    setWorking(true);
    await attempt(async () => {
      const result = await api.discard(channel.value);
      notify(`As it was saved: ${listed((result.discarded ?? []).map(nameOf)) || 'nothing had changed'}.`);
    }, 'Not discarded: ');
    setWorking(false);
    setOpen('');
  };
  return (
    <div class="save-bar">
      {0 === count ? (
        <span class="muted all-saved" data-testid="unsaved-count" data-count={0}>
          Everything is saved
        </span>
      ) : (
        <>
          <Button kind="quiet" small data-testid="unsaved-count" data-count={count} onClick={() => setOpen('list')}>
            <span class="dot" aria-hidden="true" />
            {1 === count ? '1 unsaved change' : `${count} unsaved changes`}
          </Button>
          <Button small reason={reason} data-testid="discard" onClick={() => setOpen('discard')}>
            Discard
          </Button>
          <Button small kind="primary" reason={reason} data-testid="save" onClick={() => void save()}>
            Save
          </Button>
        </>
      )}
      {'' === open ? null : (
        <Dialog
          title={'list' === open ? 'Unsaved changes' : 'Discard the unsaved changes?'}
          testid={'list' === open ? 'unsaved-dialog' : 'discard-dialog'}
          onClose={() => setOpen('')}
        >
          <div class="stack">
            <p class="muted">
              {'list' === open
                ? 'They are in force, and lost when the camera loses its power.'
                : 'What was saved last is read back and put in force.'}
            </p>
            <UnsavedList />
            <div class="dialog-actions">
              <Button onClick={() => setOpen('')} data-testid="dialog-close">
                {'list' === open ? 'Close' : 'Keep them'}
              </Button>
              {'discard' === open ? (
                <Button kind="danger" reason={reason} data-testid="discard-confirm" onClick={() => void discard()}>
                  Discard
                </Button>
              ) : null}
            </div>
          </div>
        </Dialog>
      )}
      {0 === failed.length ? null : (
        <Dialog title="Some schemes could not be saved" testid="save-failed" onClose={() => setFailed([])}>
          <div class="stack">
            <ul>
              {failed.map((failure) => (
                <li key={failure.scheme}>
                  <strong>{nameOf(failure.scheme)}</strong>: {failure.detail}
                </li>
              ))}
            </ul>
            <p class="muted">Their values stay in force. Mend the window, then save again.</p>
            <div class="dialog-actions">
              <Button onClick={() => setFailed([])}>Close</Button>
              <Button
                kind="primary"
                data-testid="save-failed-go"
                onClick={() => {
                  setFailed([]);
                  go({ view: 'schemes', tab: '' });
                }}
              >
                Show the windows
              </Button>
            </div>
          </div>
        </Dialog>
      )}
    </div>
  );
}

function UnsavedList() {
  const changed = (schemes.value?.schemes ?? []).filter((scheme) => 0 < scheme.unsaved.length);
  return (
    <div class="unsaved-list" data-testid="unsaved-list">
      {changed.map((scheme) => (
        <section key={scheme.index}>
          <h3>{scheme.name}</h3>
          <ul>
            {scheme.unsaved.map((key) => (
              <li key={key}>{labelOf(style.value, key)}</li>
            ))}
          </ul>
        </section>
      ))}
    </div>
  );
}
