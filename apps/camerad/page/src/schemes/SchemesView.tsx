import { useEffect, useState } from 'preact/hooks';

import { api } from '../api';
import { dayOf, objection, parseTime, remarks, type Span, spanOf, timeText } from '../logic/windows';
import { attempt, channel, changeSchemes, readOnlyReason, schemeNames, schemes, takeSchemes } from '../store';
import type { Follow, SchemeView, SchemesView as View } from '../types';
import { Button } from '../ui/Button';
import { Panel } from '../ui/Panel';
import { Switch } from '../ui/Switch';
import { drafts, dropDraft, dropDrafts, setWindow, shownSpan, windowProblems } from './drafts';
import { ResetDialog } from './ResetDialog';
import { SchemeBar } from './SchemeBar';
import { TimeLine } from './TimeLine';

const kFollow: { value: Follow; label: string; says: string }[] = [
  { value: 'nothing', label: 'Nothing', says: 'The camera stays in the scheme that is in force.' },
  { value: 'schedule', label: 'Time of day', says: 'The camera takes the scheme whose window has begun.' },
  { value: 'day-night', label: 'Day and night', says: 'By day the camera takes the first scheme, at night the second one.' },
];

// The schemes of the channel: which one is in force, by what the camera switches, and when.
export function SchemesView() {
  const [resetting, setResetting] = useState(false);
  const [refused, setRefused] = useState(0); // a choice that was refused is drawn anew, as it is in force
  useEffect(() => dropDrafts, [channel.value]);
  const view = schemes.value;
  if (null === view) {
    return <p class="muted">Asking the camera …</p>;
  }
  const isLocked = '' !== readOnlyReason.value;
  const names = schemeNames(view);
  const notes = remarks(
    view.schemes.map((scheme) => shownSpan(scheme.index)),
    names,
    view.gaps,
  );
  return (
    <div class="stack" data-testid="schemes">
      {isLocked ? (
        <p class="banner" id="read-only-note" data-testid="read-only-note">
          {readOnlyReason.value}
        </p>
      ) : null}
      <Panel title="Scheme in force">
        <SchemeBar />
      </Panel>
      <Panel title="Switching">
        <div class="control">
          <label class="control-label" for="automatic">
            Switch by itself
          </label>
          <div class="control-field">
            <Switch
              id="automatic"
              on={view.automatic}
              disabled={isLocked}
              testid="automatic"
              onChange={(automatic) => void changeSchemes({ automatic })}
            />
          </div>
        </div>
        <div class="control">
          <span class="control-label" id="follow-label">
            Follow
          </span>
          <div class="control-field">
            <div class="radios" role="radiogroup" aria-labelledby="follow-label" aria-describedby="follow-says" data-testid="follow">
              {kFollow.map((entry) => (
                <label key={`${entry.value} ${refused}`} class={entry.value === view.follow ? 'chosen' : ''}>
                  <input
                    type="radio"
                    name="follow"
                    checked={entry.value === view.follow}
                    disabled={isLocked}
                    data-testid={`follow-${entry.value}`}
                    onChange={async () => {
                      if (!(await changeSchemes({ follow: entry.value }))) {
                        setRefused((count) => count + 1);
                      }
                    }}
                  />
                  <span>{entry.label}</span>
                </label>
              ))}
            </div>
          </div>
        </div>
        <p class="muted" id="follow-says" data-testid="follow-says">
          {view.automatic ? followText(view, names) : 'Switching is off: the camera stays in the scheme that you choose.'}
        </p>
      </Panel>
      <Panel title="Time line">
        {view.automatic && 'schedule' === view.follow ? null : (
          <p class="muted">The windows count while the camera switches by itself and follows the time of day.</p>
        )}
        <TimeLine />
        {0 === notes.length ? null : (
          <ul class="remarks" data-testid="remarks">
            {notes.map((note) => (
              <li key={note}>{note}</li>
            ))}
          </ul>
        )}
        <p class="muted small">
          Drag a window or its ends, or use the arrow keys: 15 minutes at a time, with Shift one. The first scheme whose window
          matches is in force; a window does not go past midnight.
        </p>
        <table class="windows">
          <thead>
            <tr>
              <th scope="col">Scheme</th>
              <th scope="col">From</th>
              <th scope="col">To</th>
              <th scope="col">In force</th>
            </tr>
          </thead>
          <tbody>
            {view.schemes.map((scheme) => (
              <WindowRow key={`${view.channel} ${scheme.index}`} scheme={scheme} where={inForceText(view, scheme)} isLocked={isLocked} />
            ))}
          </tbody>
        </table>
      </Panel>
      <Panel title="Factory reset">
        <p>Puts every scheme of this channel back to what it was when the camera was new. Nothing can bring them back.</p>
        <p>
          <Button
            kind="danger"
            reason={readOnlyReason.value || undefined}
            data-testid="reset"
            onClick={() => setResetting(true)}
          >
            Reset to factory values …
          </Button>
        </p>
      </Panel>
      {resetting ? <ResetDialog onClose={() => setResetting(false)} /> : null}
    </div>
  );
}

// What the camera does while it switches by itself.
function followText(view: View, names: string[]): string {
  const byDayAndNight = `day the camera takes ${names[0] ?? ''}, at night ${names[1] ?? ''}.`;
  if ('day-night' === view.follow) {
    return `By ${byDayAndNight}`;
  }
  const says = kFollow.find((entry) => entry.value === view.follow)?.says ?? '';
  return 'schedule' === view.follow && 'day-night' === view.gaps ? `${says} Outside of every window, by ${byDayAndNight}` : says;
}

// When the schedule takes a scheme: the camera's windows, and what is left to day and night.
function inForceText(view: View, scheme: SchemeView): string[] {
  const times = scheme.inForce.map((window) => `${window.start}–${window.end}`);
  const day = dayOf(
    view.schemes.map((each) => spanOf(each.window)),
    view.gaps,
  );
  if (2 > scheme.index && day.some((piece) => null === piece.scheme)) {
    times.push(`else ${0 === scheme.index ? 'by day' : 'at night'}`);
  }
  return 0 === times.length ? ['never'] : times;
}

function WindowRow({ scheme, where, isLocked }: { scheme: SchemeView; where: string[]; isLocked: boolean }) {
  const span = shownSpan(scheme.index);
  // The camera's own window may be one that cannot be stored, when it was set by its numbers.
  const problem = windowProblems.value.get(scheme.index) ?? objection(span)?.text ?? '';
  return (
    <>
      <tr>
        <td>
          <NameField scheme={scheme} isLocked={isLocked} />
        </td>
        <td>
          <TimeField scheme={scheme} part="from" span={span} isLocked={isLocked} isBad={'' !== problem} />
        </td>
        <td>
          <TimeField scheme={scheme} part="to" span={span} isLocked={isLocked} isBad={'' !== problem} />
        </td>
        <td class="muted small">
          {where.map((text) => (
            <span class="nowrap" key={text}>
              {`${text} `}
            </span>
          ))}
        </td>
      </tr>
      {'' === problem ? null : (
        <tr>
          <td colSpan={4} class="problem" role="alert" id={`window-problem-${scheme.index}`} data-testid={`window-problem-${scheme.index}`}>
            {problem}{' '}
            {drafts.value.has(scheme.index) ? (
              <Button small data-testid={`window-undo-${scheme.index}`} onClick={() => dropDraft(scheme.index)}>
                Take back
              </Button>
            ) : null}
          </td>
        </tr>
      )}
    </>
  );
}

// A name is sent when its field is left or confirmed.
function NameField({ scheme, isLocked }: { scheme: SchemeView; isLocked: boolean }) {
  const [text, setText] = useState<string | null>(null);
  const confirm = async () => {
    const name = text?.trim() ?? '';
    if (null === text || '' === name || name === scheme.name) {
      setText(null);
      return;
    }
    const asked = channel.value;
    if (await attempt(async () => takeSchemes(await api.changeScheme(asked, scheme.index, { name })), 'The name stays: ')) {
      setText(null);
    }
  };
  return (
    <input
      type="text"
      class={`scheme-name lane-${scheme.index % 4}`}
      aria-label={`Name of scheme ${scheme.index + 1}`}
      maxLength={40}
      value={text ?? scheme.name}
      disabled={isLocked}
      data-testid={`scheme-name-${scheme.index}`}
      onInput={(event) => setText(event.currentTarget.value)}
      onBlur={() => void confirm()}
      onKeyDown={(event) => {
        if ('Enter' === event.key) {
          void confirm();
        } else if ('Escape' === event.key) {
          setText(null);
        }
      }}
    />
  );
}

interface TimeProps {
  scheme: SchemeView;
  part: 'from' | 'to';
  span: Span;
  isLocked: boolean;
  isBad: boolean;
}

function TimeField({ scheme, part, span, isLocked, isBad }: TimeProps) {
  const [text, setText] = useState<string | null>(null);
  const isUnreadable = null !== text && undefined === parseTime(text);
  const confirm = () => {
    const minutes = null === text ? undefined : parseTime(text);
    if (undefined !== minutes) {
      setText(null);
      if (minutes !== span[part]) {
        setWindow(scheme.index, { ...span, [part]: minutes });
      }
    }
  };
  const id = `time-${scheme.index}-${part}`;
  return (
    <>
      <input
        type="text"
        class="time"
        inputMode="numeric"
        autocomplete="off"
        maxLength={5}
        aria-label={`${scheme.name} ${'from' === part ? 'starts at' : 'ends at'}`}
        aria-invalid={isBad || isUnreadable ? true : undefined}
        aria-describedby={isUnreadable ? `${id}-objection` : isBad ? `window-problem-${scheme.index}` : undefined}
        value={text ?? timeText(span[part])}
        disabled={isLocked}
        data-testid={id}
        onFocus={(event) => event.currentTarget.select()}
        onInput={(event) => setText(event.currentTarget.value)}
        onBlur={confirm}
        onKeyDown={(event) => {
          if ('Enter' === event.key) {
            confirm();
          } else if ('Escape' === event.key) {
            setText(null);
          }
        }}
      />
      {isUnreadable ? (
        <span class="objection" id={`${id}-objection`}>
          00:00 to 24:00
        </span>
      ) : null}
    </>
  );
}
