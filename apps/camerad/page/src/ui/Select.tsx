import { strangeText } from '../logic/style';
import type { Choice } from '../types';

interface Props {
  id: string;
  label?: string | undefined; // without it, a <label for> names the list
  value: number | undefined; // undefined: not known
  choices: Choice[];
  disabled?: boolean | undefined;
  describedBy?: string | undefined;
  testid?: string | undefined;
  onChange: (value: number) => void;
}

// A list of choices. A value that is none of them is shown as it is, and cannot be chosen again.
export function Select({ id, label, value, choices, disabled, describedBy, testid, onChange }: Props) {
  const isKnown = choices.some((choice) => choice.value === value);
  return (
    <select
      id={id}
      class="select"
      value={undefined === value ? '' : String(value)}
      disabled={disabled}
      aria-label={label}
      aria-describedby={describedBy}
      data-testid={testid}
      onChange={(event) => {
        const wanted = Number(event.currentTarget.value);
        event.currentTarget.value = undefined === value ? '' : String(value); // until the state follows
        onChange(wanted);
      }}
    >
      {isKnown ? null : (
        <option value={undefined === value ? '' : String(value)} disabled>
          {undefined === value ? 'Not known' : strangeText(value)}
        </option>
      )}
      {choices.map((choice) => (
        <option key={choice.value} value={String(choice.value)}>
          {choice.label}
        </option>
      ))}
    </select>
  );
}

export function Radios({ id, label, value, choices, disabled, describedBy, testid, onChange }: Props) {
  const isKnown = undefined === value || choices.some((choice) => choice.value === value);
  return (
    <div class="radios" role="radiogroup" id={id} aria-label={label} aria-labelledby={label ? undefined : `${id}-label`}
      aria-describedby={describedBy} data-testid={testid}>
      {choices.map((choice) => (
        <label key={choice.value} class={choice.value === value ? 'chosen' : ''}>
          <input
            type="radio"
            name={id}
            value={String(choice.value)}
            checked={choice.value === value}
            disabled={disabled}
            data-testid={undefined === testid ? undefined : `${testid}-${choice.value}`}
            onChange={() => onChange(choice.value)}
          />
          <span>{choice.label}</span>
        </label>
      ))}
      {isKnown ? null : <span class="strange">{strangeText(value)}</span>}
    </div>
  );
}
