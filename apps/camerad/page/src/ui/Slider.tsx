import { useEffect, useRef, useState } from 'preact/hooks';

import { numberText, parseNumber } from '../logic/numbers';

interface Props {
  id: string;
  label: string;
  value: number | undefined; // undefined: not known
  min: number;
  max: number;
  step?: number;
  unit?: string | undefined;
  disabled?: boolean | undefined;
  describedBy?: string | undefined;
  testid?: string | undefined;
  valueText?: string | undefined; // what the position means, for a screen reader
  onInput: (value: number) => void; // while it moves
  onHold?: (held: boolean) => void; // the person takes it, and lets it go
}

// A slider with a number field beside it. Both say the same; the field also takes what is typed.
export function Slider(props: Props) {
  const { id, label, value, min, max, step = 1, unit, disabled, describedBy, testid, onInput, onHold } = props;
  const bar = useRef<HTMLInputElement>(null);
  const holding = useRef(false);
  const hold = (held: boolean) => {
    if (held !== holding.current) {
      holding.current = held;
      onHold?.(held);
    }
  };
  useEffect(() => () => hold(false), []);
  const part = undefined === value || max <= min ? 0 : (100 * (Math.min(max, Math.max(min, value)) - min)) / (max - min);
  useEffect(() => {
    bar.current?.style.setProperty('--part', `${part}%`);
  }, [part]);
  return (
    <div class="slider">
      <input
        ref={bar}
        id={id}
        type="range"
        min={min}
        max={max}
        step={step}
        value={value ?? min}
        disabled={disabled}
        class={undefined === value ? 'unknown' : ''}
        aria-label={label}
        aria-describedby={describedBy}
        aria-valuetext={undefined === value ? 'not known' : (props.valueText ?? (unit ? `${value} ${unit}` : undefined))}
        data-testid={testid}
        onPointerDown={() => hold(true)}
        onPointerUp={() => hold(false)}
        onPointerCancel={() => hold(false)}
        onBlur={() => hold(false)}
        onInput={(event) => onInput(Number(event.currentTarget.value))}
        onChange={() => hold(false)}
      />
      <NumberField
        id={`${id}-number`}
        label={`${label}, number`}
        value={value}
        min={min}
        max={max}
        step={step}
        unit={unit}
        disabled={disabled}
        describedBy={describedBy}
        testid={undefined === testid ? undefined : `${testid}-number`}
        onValue={onInput}
      />
    </div>
  );
}

interface NumberProps {
  id: string;
  label?: string | undefined; // without it, a <label for> names the field
  value: number | undefined;
  min?: number | undefined;
  max?: number | undefined;
  step?: number | undefined;
  unit?: string | undefined;
  disabled?: boolean | undefined;
  describedBy?: string | undefined;
  testid?: string | undefined;
  onValue: (value: number) => void;
  onTakeBack?: (() => void) | undefined; // what is shown was not sent: it counts as refused, and Escape takes it back
}

// A field for a whole number. What is typed counts once it is left or confirmed by Enter; Escape takes it back. What
// cannot be read or is outside its limits is said, and not sent.
export function NumberField(props: NumberProps) {
  const { id, label, value, min, max, step = 1, unit, disabled, describedBy, testid, onValue, onTakeBack } = props;
  const [text, setText] = useState<string | null>(null); // null: nobody is typing
  const [objection, setObjection] = useState('');
  const confirm = (typed: string | null) => {
    if (null === typed) {
      return;
    }
    const result = parseNumber(typed, { min, max, step });
    if ('value' in result) {
      setText(null);
      setObjection('');
      if (result.value !== value) {
        onValue(result.value);
      }
    } else {
      setObjection(result.objection);
    }
  };
  const move = (by: number) => {
    const from = value ?? min ?? 0;
    const to = Math.min(max ?? Infinity, Math.max(min ?? -Infinity, from + by));
    setText(null);
    setObjection('');
    if (to !== value) {
      onValue(to);
    }
  };
  return (
    <span class="number">
      <input
        id={id}
        type="text"
        inputMode={undefined === min || 0 > min ? 'text' : 'numeric'}
        autocomplete="off"
        value={text ?? (undefined === value ? '' : numberText(value))}
        placeholder={undefined === value ? '–' : undefined}
        disabled={disabled}
        aria-label={label}
        aria-invalid={'' === objection && undefined === onTakeBack ? undefined : true}
        aria-describedby={'' === objection ? describedBy : `${id}-objection`}
        data-testid={testid}
        onFocus={(event) => event.currentTarget.select()}
        onInput={(event) => setText(event.currentTarget.value)}
        onBlur={() => confirm(text)}
        onKeyDown={(event) => {
          if ('Enter' === event.key) {
            confirm(text);
          } else if ('Escape' === event.key && (null !== text || undefined !== onTakeBack)) {
            event.stopPropagation();
            setText(null);
            setObjection('');
            onTakeBack?.();
          } else if ('ArrowUp' === event.key || 'ArrowDown' === event.key) {
            event.preventDefault();
            move(('ArrowUp' === event.key ? 1 : -1) * step * (event.shiftKey ? 10 : 1));
          }
        }}
      />
      {unit ? <span class="unit">{unit}</span> : null}
      {'' === objection ? null : (
        <span class="objection" id={`${id}-objection`} role="alert">
          {objection}
        </span>
      )}
    </span>
  );
}
