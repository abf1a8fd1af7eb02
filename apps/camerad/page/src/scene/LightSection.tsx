import { useState } from 'preact/hooks';

import { deviceMinute } from '../time';
import type { DayLight } from '../types';
import { NumberField } from '../ui/Slider';
import { Radios } from '../ui/Select';
import { DayCurveView } from './DayCurveView';
import { kMinutes, luxAt, objection } from './day';
import { changeScene, lightOf, rememberLight, sceneRefusals, shownScene } from './edit';
import { kLightMarks, kLightScale, lightWord, plainNumber } from './light';
import { LogSlider } from './LogSlider';

// How bright it is: always the same, or by the time of the day.
export function LightSection({ disabled }: { disabled: boolean }) {
  const shown = shownScene();
  if (null === shown) {
    return null;
  }
  const light = shown.light;
  // The camera tells of its scene when somebody changes it, not while the sun moves.
  const minute = sceneMinute(shown.clockShift);
  const lux = 'fixed' === light.kind ? light.lux : undefined === minute ? shown.lux : luxAt(light, minute);
  const refusal = sceneRefusals.value.light;
  return (
    <section class="scene-section" aria-labelledby="scene-light-title">
      <div class="scene-head">
        <h3 id="scene-light-title">Light</h3>
        <span class="scene-now" data-testid="scene-lux">
          {lightWord(lux)}, {plainNumber(lux)} lux
        </span>
      </div>
      <Radios
        id="scene-light-kind"
        label="What the light follows"
        value={'fixed' === light.kind ? 0 : 1}
        choices={[
          { value: 0, label: 'Always the same' },
          { value: 1, label: 'Follows the day' },
        ]}
        disabled={disabled}
        testid="scene-light-kind"
        onChange={(value) => {
          rememberLight(light);
          changeScene('light', lightOf(0 === value ? 'fixed' : 'day'));
        }}
      />
      {'fixed' === light.kind ? (
        <LogSlider
          id="scene-light"
          label="Light"
          scale={kLightScale}
          value={light.lux}
          min={0}
          max={200000}
          unit="lux"
          valueText={`${lightWord(light.lux)}, ${plainNumber(light.lux)} lux`}
          marks={kLightMarks}
          disabled={disabled}
          testid="scene-light"
          onValue={(lux) => changeScene('light', { kind: 'fixed', lux })}
        />
      ) : (
        <DayFields light={light} minute={minute ?? 0} lux={lux} disabled={disabled} />
      )}
      {undefined === refusal ? null : (
        <p class="problem" role="alert">
          {refusal}
        </p>
      )}
    </section>
  );
}

// The minute of the day by the scene's own clock; undefined while the camera's is not known.
function sceneMinute(shiftSeconds: number): number | undefined {
  const minute = deviceMinute.value;
  return undefined === minute
    ? undefined
    : (((minute + Math.round(shiftSeconds / 60)) % kMinutes) + kMinutes) % kMinutes;
}

// A curve that cannot be, for instance while two times are being changed one after the other, stays here with the reason
// and is not sent.
function DayFields({
  light,
  minute,
  lux,
  disabled,
}: {
  light: DayLight;
  minute: number;
  lux: number;
  disabled: boolean;
}) {
  const [draft, setDraft] = useState<DayLight | null>(null);
  const shown = draft ?? light;
  const problem = objection(shown);
  const change = (part: Partial<DayLight>): void => {
    const next = { ...shown, ...part };
    if ('' === objection(next)) {
      setDraft(null);
      changeScene('light', next);
    } else {
      setDraft(next);
    }
  };
  return (
    <div class="day-fields">
      <DayCurveView curve={shown} minute={minute} lux={lux} />
      <div class="field-row">
        <span class="field-pair">
          <label for="scene-sunrise">Sunrise</label>
          <input
            id="scene-sunrise"
            type="time"
            value={shown.sunrise}
            disabled={disabled}
            data-testid="scene-sunrise"
            onChange={(event) => change({ sunrise: event.currentTarget.value })}
          />
        </span>
        <span class="field-pair">
          <label for="scene-sunset">Sunset</label>
          <input
            id="scene-sunset"
            type="time"
            value={shown.sunset}
            disabled={disabled}
            data-testid="scene-sunset"
            onChange={(event) => change({ sunset: event.currentTarget.value })}
          />
        </span>
        <span class="field-pair">
          <label for="scene-twilight">Twilight</label>
          <NumberField
            id="scene-twilight"
            value={shown.twilightMinutes}
            min={1}
            max={180}
            unit="min"
            disabled={disabled}
            testid="scene-twilight"
            onValue={(twilightMinutes) => change({ twilightMinutes })}
          />
        </span>
      </div>
      <div class="field">
        <span class="field-name">By day</span>
        <LogSlider
          id="scene-day-lux"
          label="Light by day"
          scale={kLightScale}
          value={shown.dayLux}
          min={0}
          max={200000}
          unit="lux"
          valueText={`${lightWord(shown.dayLux)}, ${plainNumber(shown.dayLux)} lux`}
          disabled={disabled}
          testid="scene-day-lux"
          onValue={(dayLux) => change({ dayLux })}
        />
      </div>
      <div class="field">
        <span class="field-name">By night</span>
        <LogSlider
          id="scene-night-lux"
          label="Light by night"
          scale={kLightScale}
          value={shown.nightLux}
          min={0}
          max={200000}
          unit="lux"
          valueText={`${lightWord(shown.nightLux)}, ${plainNumber(shown.nightLux)} lux`}
          disabled={disabled}
          testid="scene-night-lux"
          onValue={(nightLux) => change({ nightLux })}
        />
      </div>
      {'' === problem ? null : (
        <p class="problem" role="alert" data-testid="scene-day-problem">
          {problem} Not sent yet.
        </p>
      )}
    </div>
  );
}
