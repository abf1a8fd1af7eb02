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

const kWindowCodes = [505, 506, 507]; // of a scheme that was not stored because of its window; 0: because of anything else

interface Left {
  title: string;
  failed: SaveFailure[];
}

// What is in force and not yet on flash, with the two ways to end that.
export function SaveBar() {
  const [open, setOpen] = useState<'' | 'list' | 'discard'>('');
  const [left, setLeft] = useState<Left | null>(null); // what a save or a discard could not do
  const [working, setWorking] = useState(false);
  const count = unsavedCount.value;
  const reason = readOnlyReason.value || (working ? 'The camera is at work' : undefined);

  const tell = (done: number[], failed: SaveFailure[], words: { done: string; none: string; title: string }) => {
    setLeft(0 === failed.length ? null : { title: words.title, failed });
    if (0 < done.length) {
      notify(`${words.done}: ${listed(done.map(nameOf))}.`);
    } else if (0 === failed.length) {
      notify(words.none);
    }
  };
  const save = async () => {
    setWorking(true);
    await attempt(async () => {
      const { saved, failed } = await api.save(channel.value);
      tell(saved ?? [], failed ?? [], {
        done: 'Saved',
        none: 'There was nothing to save.',
        title: 'Not everything could be saved',
      });
    }, 'Not saved: ');
    setWorking(false);
  };
  const discard = async () => {
    setWorking(true);
    await attempt(async () => {
      const { discarded, failed } = await api.discard(channel.value);
      tell(discarded ?? [], failed ?? [], {
        done: 'As it was saved',
        none: 'There was nothing to discard.',
        title: 'Not everything could be discarded',
      });
    }, 'Not discarded: ');
    setWorking(false);
    setOpen('');
  };
  const isOfWindow = left?.failed.some(({ code }) => kWindowCodes.includes(code)) ?? false;
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
      {null === left ? null : (
        <Dialog title={left.title} testid="save-failed" onClose={() => setLeft(null)}>
          <div class="stack">
            <ul data-testid="save-failed-list">
              {left.failed.map((failure, place) => (
                <li key={place}>
                  <strong>{nameOf(failure.scheme)}</strong>: {failure.detail}
                </li>
              ))}
            </ul>
            {isOfWindow ? (
              <p class="muted" data-testid="save-failed-window">
                The values of a scheme with such a window stay in force. Mend the window, then save again.
              </p>
            ) : null}
            <div class="dialog-actions">
              <Button data-testid="save-failed-close" onClick={() => setLeft(null)}>
                Close
              </Button>
              {isOfWindow ? (
                <Button
                  kind="primary"
                  data-testid="save-failed-go"
                  onClick={() => {
                    setLeft(null);
                    go({ view: 'schemes', tab: '' });
                  }}
                >
                  Show the windows
                </Button>
              ) : null}
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
