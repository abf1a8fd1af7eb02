import { useState } from 'preact/hooks';

interface Props {
  id: string;
  label?: string | undefined; // without it, a <label for> names the field
  value: number;
  min: number;
  max: number;
  unit: string;
  disabled: boolean;
  testid: string;
  onValue: (value: number) => void;
}

// A field for a number with a decimal point or comma. What is typed counts once it is left or confirmed by Enter.
export function DecimalField({ id, label, value, min, max, unit, disabled, testid, onValue }: Props) {
  const [text, setText] = useState<string | null>(null); // null: nobody is typing
  const [objection, setObjection] = useState('');
  const confirm = (): void => {
    if (null === text) {
      return;
    }
    const plain = text
      .trim()
      .replace(/[\s\u202f]/g, '')
      .replace(',', '.')
      .replace(/^[\u2212\u2013]/, '-');
    const typed = '' === plain ? NaN : Number(plain);
    if (!Number.isFinite(typed) || typed < min || typed > max) {
      setObjection(`A number from ${min} to ${max}.`);
      return;
    }
    setText(null);
    setObjection('');
    if (typed !== value) {
      onValue(typed);
    }
  };
  return (
    <span class="number">
      <input
        id={id}
        type="text"
        inputMode={min < 0 ? 'text' : 'decimal'}
        autocomplete="off"
        value={text ?? String(Number(value.toPrecision(6)))}
        disabled={disabled}
        aria-label={label}
        aria-invalid={'' === objection ? undefined : true}
        aria-describedby={'' === objection ? undefined : `${id}-objection`}
        data-testid={testid}
        onFocus={(event) => event.currentTarget.select()}
        onInput={(event) => setText(event.currentTarget.value)}
        onBlur={confirm}
        onKeyDown={(event) => {
          if ('Enter' === event.key) {
            confirm();
          } else if ('Escape' === event.key) {
            setText(null);
            setObjection('');
          }
        }}
      />
      <span class="unit">{unit}</span>
      {'' === objection ? null : (
        <span class="objection" id={`${id}-objection`} role="alert">
          {objection}
        </span>
      )}
    </span>
  );
}
