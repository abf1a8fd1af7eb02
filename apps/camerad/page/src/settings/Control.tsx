import { useEffect, useRef, useState } from 'preact/hooks';

import { blockedBy, offersSideBySide, rangeOf, valueText } from '../logic/style';
import {
  holdParameter,
  pressParameter,
  readOnlyReason,
  refusals,
  releaseParameter,
  resetParameter,
  setParameter,
  values,
} from '../store';
import type { StyleItem } from '../types';
import { Button } from '../ui/Button';
import { Radios, Select } from '../ui/Select';
import { NumberField, Slider } from '../ui/Slider';
import { Switch } from '../ui/Switch';
import { found, style, valueOf } from './state';
import { isKeptBack, isKeptBackAt, isWindowKey, setWindowNumber, takeWindowBack } from './window';

const kMarkTime = 2500; // milliseconds for which a control that was searched for stays marked

// One parameter: what it is called, how it is changed, whether it is stored, and why it cannot be changed.
export function Control({ item }: { item: StyleItem }) {
  const row = useRef<HTMLDivElement>(null);
  const [marked, setMarked] = useState(false);
  const wanted = found.value?.key === item.key ? found.value.count : 0;
  useEffect(() => {
    if (0 === wanted) {
      return undefined;
    }
    row.current?.scrollIntoView({ block: 'center' });
    row.current?.querySelector<HTMLElement>('input:not(:disabled), select:not(:disabled), button')?.focus({ preventScroll: true });
    setMarked(true);
    const timer = setTimeout(() => setMarked(false), kMarkTime);
    return () => clearTimeout(timer);
  }, [wanted]);
  useEffect(() => (isWindowKey(item.key) ? takeWindowBack : undefined), [item.key]); // nobody sees it any more

  if ('notice' === item.type) {
    return (
      <div ref={row} class={`notice-text${marked ? ' marked' : ''}`} data-testid={`param-${item.key}`}>
        <strong>{item.label}</strong> {item.words?.['text'] ?? ''}
      </div>
    );
  }
  const known = values.value.byKey.get(item.key);
  const reason = '' === readOnlyReason.value ? blockedBy(style.value, item, valueOf) : '';
  const refusal = refusals.value.get(item.key) ?? '';
  const standard = known?.default ?? item.default;
  const value = valueOf(item.key);
  const isField = 'button' !== item.type;
  const canReset = isField && undefined !== standard && undefined !== value && value !== standard;
  const standardText = undefined === standard ? '' : valueText(item, standard);
  const title = [item.name, `number ${item.key}`, '' === standardText ? '' : `default ${standardText}`]
    .filter((text) => '' !== text)
    .join(', ');
  const id = `p${item.key}`;
  const label = (
    <>
      {item.label || `Parameter ${item.key}`}
      {true === known?.unsaved ? (
        <span
          class="dot"
          role="img"
          aria-label="not saved"
          title={undefined === known.stored ? 'Not saved' : `Not saved; stored is ${valueText(item, known.stored)}`}
          data-testid={`unsaved-${item.key}`}
        />
      ) : null}
    </>
  );
  const isGroup = 'choice' === item.type && offersSideBySide(item);
  return (
    <div
      ref={row}
      class={`control${marked ? ' marked' : ''}${'' === reason ? '' : ' blocked'}`}
      data-testid={`param-${item.key}`}
    >
      {!isField ? (
        <span class="control-label" />
      ) : isGroup ? (
        <span class="control-label" id={`${id}-label`} title={title}>
          {label}
        </span>
      ) : (
        <label class="control-label" for={id} title={title}>
          {label}
        </label>
      )}
      <div class="control-field">
        <Field item={item} id={id} reason={reason} describedBy={describing(id, reason, refusal)} title={title} />
      </div>
      <div class="control-tools">
        {canReset ? (
          <Button
            kind="quiet"
            small
            class="reset"
            reason={readOnlyReason.value || reason || undefined}
            aria-label={`${item.label}: back to the default, ${standardText}`}
            title={`Back to the default: ${standardText}`}
            data-testid={`default-${item.key}`}
            onClick={() => {
              if (isWindowKey(item.key) && undefined !== standard) {
                setWindowNumber(item.key, standard);
              } else {
                void resetParameter(item.key);
              }
              row.current?.querySelector<HTMLElement>('input, select')?.focus({ preventScroll: true });
            }}
          >
            <svg viewBox="0 0 16 16" width="14" height="14" aria-hidden="true">
              <path d="M3 8a5 5 0 1 0 1.6-3.7M3 2.5v3h3" fill="none" stroke="currentColor" stroke-width="1.6" />
            </svg>
          </Button>
        ) : null}
      </div>
      {'' === reason ? null : (
        <p class="control-note" id={`${id}-reason`} data-testid={`reason-${item.key}`}>
          {reason}
        </p>
      )}
      <p class="control-note problem" id={`${id}-refusal`} role="alert" data-testid={`refusal-${item.key}`}>
        {refusal}
        {isKeptBackAt(item.key) ? (
          <>
            {' '}
            <Button small data-testid={`take-back-${item.key}`} onClick={takeWindowBack}>
              Take back
            </Button>
          </>
        ) : null}
      </p>
    </div>
  );
}

function describing(id: string, reason: string, refusal: string): string | undefined {
  const ids = [
    '' === readOnlyReason.value ? '' : 'read-only-note',
    '' === reason ? '' : `${id}-reason`,
    '' === refusal ? '' : `${id}-refusal`,
  ].filter((text) => '' !== text);
  return 0 === ids.length ? undefined : ids.join(' ');
}

interface FieldProps {
  item: StyleItem;
  id: string;
  reason: string;
  describedBy: string | undefined;
  title: string;
}

// The control that fits the type. A type that is not known here is a number.
function Field({ item, id, reason, describedBy, title }: FieldProps) {
  const value = valueOf(item.key);
  const disabled = '' !== readOnlyReason.value || '' !== reason;
  const testid = `control-${item.key}`;
  const label = item.label || `Parameter ${item.key}`;
  const set = (to: number) => (isWindowKey(item.key) ? setWindowNumber : setParameter)(item.key, to);
  const range = rangeOf(item, valueOf);
  const common = { id, value, disabled, describedBy, testid };
  const choices = item.choices ?? [];
  if ('switch' === item.type) {
    return (
      <Switch
        id={id}
        on={undefined === value ? undefined : 0 !== value}
        disabled={disabled}
        describedBy={describedBy}
        testid={testid}
        onChange={(on) => set(on ? 1 : 0)}
      />
    );
  }
  if ('choice' === item.type && 0 < choices.length) {
    return (
      <>
        {offersSideBySide(item) ? (
          <Radios {...common} choices={choices} onChange={set} />
        ) : (
          <Select {...common} choices={choices} onChange={set} />
        )}
        {item.unit ? <span class="unit">{item.unit}</span> : null}
      </>
    );
  }
  if ('button' === item.type) {
    return <SendButton item={item} reason={readOnlyReason.value || reason} describedBy={describedBy} title={title} />;
  }
  if ('slider' === item.type && undefined !== range.min && undefined !== range.max) {
    return (
      <Slider
        {...common}
        label={label}
        min={range.min}
        max={range.max}
        step={range.step}
        unit={item.unit}
        onInput={set}
        onHold={(isHeld) => (isHeld ? holdParameter(item.key) : isKeptBack(item.key) ? undefined : releaseParameter(item.key))}
      />
    );
  }
  return (
    <NumberField
      {...common}
      min={range.min}
      max={range.max}
      step={range.step}
      unit={item.unit}
      onValue={set}
      onTakeBack={isKeptBackAt(item.key) ? takeWindowBack : undefined}
    />
  );
}

function SendButton({ item, reason, describedBy, title }: { item: StyleItem; reason: string; describedBy: string | undefined; title: string }) {
  const [state, setState] = useState<'' | 'sending' | 'sent'>('');
  useEffect(() => {
    if ('sent' !== state) {
      return undefined;
    }
    const timer = setTimeout(() => setState(''), 2000);
    return () => clearTimeout(timer);
  }, [state]);
  const press = async () => {
    setState('sending');
    const value = Number.parseInt(item.words?.['send'] ?? '1', 10);
    setState((await pressParameter(item.key, Number.isFinite(value) ? value : 1)) ? 'sent' : '');
  };
  return (
    <>
      <Button
        reason={reason || ('sending' === state ? 'It is being sent' : undefined)}
        aria-describedby={describedBy}
        title={title}
        data-testid={`control-${item.key}`}
        onClick={() => void press()}
      >
        {item.label}
      </Button>
      <span class="muted" role="status">
        {'sent' === state ? 'Sent' : ''}
      </span>
    </>
  );
}
