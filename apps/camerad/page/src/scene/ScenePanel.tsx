import './scene.css';

import { useState } from 'preact/hooks';

import { api } from '../api';
import { attempt, notify, readOnlyReason, scene, unsavedCount } from '../store';
import { Button } from '../ui/Button';
import { Dialog } from '../ui/Dialog';
import { Panel } from '../ui/Panel';
import { ClockSection } from './ClockSection';
import { FaultSection } from './FaultSection';
import { LightSection } from './LightSection';
import { WeatherSection } from './WeatherSection';

// What the simulated camera sees, its clock, and what goes wrong in it.
export function ScenePanel() {
  const reason = readOnlyReason.value;
  const disabled = '' !== reason;
  return (
    <Panel title="Scene" testid="scene-panel">
      {null === scene.value ? (
        <p class="muted">The scene is not known yet.</p>
      ) : (
        <div class="scene">
          {disabled ? (
            <p class="muted scene-reason" data-testid="scene-reason">
              {reason}.
            </p>
          ) : null}
          <LightSection disabled={disabled} />
          <WeatherSection disabled={disabled} />
          <ClockSection disabled={disabled} reason={reason} />
          <FaultSection disabled={disabled} reason={reason} />
          <PowerSection disabled={disabled} reason={reason} />
        </div>
      )}
    </Panel>
  );
}

function PowerSection({ disabled, reason }: { disabled: boolean; reason: string }) {
  const [isAsking, setAsking] = useState(false);
  const [isBusy, setBusy] = useState(false);
  const cycle = async (): Promise<void> => {
    setAsking(false);
    setBusy(true);
    if (await attempt(() => api.powerCycle())) {
      notify('The camera has started anew.');
    }
    setBusy(false);
  };
  const unsaved = unsavedCount.value;
  return (
    <section class="scene-section" aria-labelledby="scene-power-title">
      <h3 id="scene-power-title">Power</h3>
      <div class="field-row">
        <Button
          kind="danger"
          reason={disabled ? reason : isBusy ? 'The camera is starting' : undefined}
          aria-busy={isBusy}
          data-testid="power-cycle"
          onClick={() => setAsking(true)}
        >
          Off and on again …
        </Button>
        <span class="muted">As a power cut does. Changes that were not saved are lost.</span>
      </div>
      {isAsking ? (
        <Dialog title="Switch the camera off and on?" testid="power-dialog" onClose={() => setAsking(false)}>
          <p>
            {0 === unsaved
              ? 'Nothing is unsaved on this channel.'
              : `${unsaved} unsaved ${1 === unsaved ? 'change' : 'changes'} on this channel will be lost.`}{' '}
            Every channel starts anew; that takes a few seconds.
          </p>
          <div class="dialog-actions">
            <Button data-testid="power-cancel" onClick={() => setAsking(false)}>
              Leave it on
            </Button>
            <Button kind="danger" data-testid="power-confirm" onClick={() => void cycle()}>
              Off and on
            </Button>
          </div>
        </Dialog>
      ) : null}
    </section>
  );
}
