import { useState } from 'preact/hooks';

import { api } from '../api';
import { attempt, clock, takeClock } from '../store';
import { deviceTime } from '../time';
import type { ClockChange } from '../types';
import { Button } from '../ui/Button';
import { Radios } from '../ui/Select';
import { clockText, dayProgress, kDaySpeed, secondsOf } from './day';
import { beginDay, dayPlan, endDay, isDayBusy, watchDay } from './dayRun';
import { changeScene, sceneRefusals, shownScene } from './edit';
import { NumberField } from '../ui/Slider';

watchDay();

const kStopped = 'Stopped. The camera is back in real time.';
const kSpeeds = [
  { value: 0, label: 'Stands' },
  { value: 1, label: '1×' },
  { value: 60, label: '60×' },
  { value: kDaySpeed, label: 'A day a minute' },
];

// The camera's clock: the machine's own, or one that can be set and hurried.
export function ClockSection({ disabled, reason }: { disabled: boolean; reason: string }) {
  const now = clock.value;
  const [wanted, setWanted] = useState<string | null>(null);
  const shown = shownScene();
  if (null === now) {
    return null;
  }
  const set = (change: ClockChange): Promise<boolean> =>
    attempt(async () => takeClock(await api.setClock(change)));
  const setTime = async (): Promise<void> => {
    if (null !== wanted && undefined !== secondsOf(wanted)) {
      const seconds = secondsOf(wanted) as number;
      if (await set({ simulated: true, time: clockText(seconds), speed: now.simulated ? now.speed : 1 })) {
        setWanted(null);
      }
    }
  };
  return (
    <section class="scene-section" aria-labelledby="scene-clock-title">
      <div class="scene-head">
        <h3 id="scene-clock-title">Clock</h3>
        <Ticking />
      </div>
      <Radios
        id="scene-clock-kind"
        label="Which clock"
        value={now.simulated ? 1 : 0}
        choices={[
          { value: 0, label: 'Real time' },
          { value: 1, label: 'Simulated' },
        ]}
        disabled={disabled}
        testid="scene-clock-kind"
        onChange={(value) => {
          if (0 !== value) {
            void set({ simulated: true, speed: 1 });
          } else if (null !== dayPlan.value) {
            void endDay(kStopped);
          } else {
            void set({ simulated: false });
          }
        }}
      />
      {now.simulated ? (
        <>
          <Radios
            id="scene-speed"
            label="Speed of the clock"
            value={kSpeeds.some((speed) => speed.value === now.speed) ? now.speed : undefined}
            choices={kSpeeds}
            disabled={disabled}
            testid="scene-speed"
            onChange={(speed) => void set({ simulated: true, speed })}
          />
          {kSpeeds.some((speed) => speed.value === now.speed) ? null : <p class="muted">Now {now.speed}×</p>}
          <form
            class="field-row"
            onSubmit={(event) => {
              event.preventDefault();
              void setTime();
            }}
          >
            <label for="scene-time">Time</label>
            <input
              id="scene-time"
              type="datetime-local"
              step="1"
              value={wanted ?? now.time.slice(0, 19)}
              disabled={disabled}
              data-testid="scene-time"
              onInput={(event) => setWanted(event.currentTarget.value)}
            />
            <Button
              type="submit"
              reason={disabled ? reason : null === wanted ? 'Choose another time first' : undefined}
              data-testid="scene-time-set"
            >
              Set
            </Button>
          </form>
        </>
      ) : null}
      <DayRun disabled={disabled} reason={reason} />
      {null === shown ? null : (
        <div class="field-row">
          <label for="scene-shift">The sun is ahead of the clock by</label>
          <NumberField
            id="scene-shift"
            value={Math.round(shown.clockShift / 60)}
            min={-1440}
            max={1440}
            unit="min"
            disabled={disabled}
            testid="scene-shift"
            onValue={(minutes) => changeScene('clockShift', 60 * minutes)}
          />
          {undefined === sceneRefusals.value.clockShift ? null : (
            <p class="problem" role="alert">
              {sceneRefusals.value.clockShift}
            </p>
          )}
        </div>
      )}
    </section>
  );
}

function Ticking() {
  const now = clock.value;
  const time = deviceTime.value;
  if (null === now || undefined === time) {
    return null;
  }
  return (
    <span class="scene-now" data-testid="scene-clock">
      <time>{clockText(time / 1000).replace('T', ' ')}</time>
      {now.simulated ? (0 === now.speed ? ', stands' : `, ${now.speed}×`) : ''}
    </span>
  );
}

function DayRun({ disabled, reason }: { disabled: boolean; reason: string }) {
  const now = clock.value;
  const plan = dayPlan.value;
  const isFast = null !== now && now.simulated && kDaySpeed === now.speed;
  if (null !== now && isFast) {
    const part = null === plan ? null : dayProgress(plan, now);
    return (
      <div class="day-run" role="group" aria-label="A day in a minute">
        <p>
          {null === part ? 'The clock goes a day a minute.' : `A day is passing: ${Math.round(100 * part)} %.`}{' '}
          <span class="muted">
            {null === part
              ? 'It does so until it is stopped.'
              : 'Then the clock and the light go back to what they were.'}
          </span>
        </p>
        {null === part ? null : (
          <progress
            max={100}
            value={Math.round(100 * part)}
            aria-label="How much of the day has passed"
            data-testid="scene-day-progress"
          />
        )}
        <Button
          reason={disabled ? reason : undefined}
          data-testid="scene-day-stop"
          onClick={() => void endDay(kStopped)}
        >
          Stop, back to real time
        </Button>
      </div>
    );
  }
  return (
    <div class="day-run">
      <p class="muted" id="scene-day-words">
        Lets the light follow the day and the clock go 1440 times as fast, for 24 hours from now. After a minute the
        clock is back in real time and the light is as it was.
      </p>
      <Button
        kind="primary"
        reason={disabled ? reason : undefined}
        aria-describedby="scene-day-words"
        aria-busy={isDayBusy.value}
        data-testid="scene-day-start"
        onClick={() => void beginDay()}
      >
        Let a day pass in a minute
      </Button>
    </div>
  );
}
