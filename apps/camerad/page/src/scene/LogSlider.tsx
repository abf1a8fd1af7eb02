import { useEffect, useRef } from 'preact/hooks';

import { DecimalField } from './DecimalField';
import { fromStep, kSteps, type LogScale, toStep } from './light';

interface Props {
  id: string;
  label: string;
  scale: LogScale;
  value: number;
  min: number; // what the field takes; the slider ends earlier
  max: number;
  unit: string;
  valueText: string;
  marks?: ReadonlyArray<{ lux: number; label: string }>;
  disabled: boolean;
  testid: string;
  onValue: (value: number) => void;
}

// A slider on which each power of ten is equally long, with a field for the number itself.
export function LogSlider({
  id,
  label,
  scale,
  value,
  min,
  max,
  unit,
  valueText,
  marks,
  disabled,
  testid,
  onValue,
}: Props) {
  const bar = useRef<HTMLInputElement>(null);
  const step = toStep(scale, value);
  useEffect(() => {
    bar.current?.style.setProperty('--part', `${(100 * step) / kSteps}%`);
  }, [step]);
  return (
    <div class="log-slider">
      <div class="slider">
        <input
          ref={bar}
          id={id}
          type="range"
          min={0}
          max={kSteps}
          step={5}
          value={step}
          disabled={disabled}
          aria-label={label}
          aria-valuetext={valueText}
          data-testid={testid}
          onInput={(event) => onValue(fromStep(scale, Number(event.currentTarget.value)))}
        />
        <DecimalField
          id={`${id}-number`}
          label={`${label}, number`}
          value={value}
          min={min}
          max={max}
          unit={unit}
          disabled={disabled}
          testid={`${testid}-number`}
          onValue={onValue}
        />
      </div>
      {undefined === marks ? null : (
        <div class="log-marks">
          {marks.map((mark) => (
            <button
              key={mark.label}
              type="button"
              class="log-mark-button"
              aria-disabled={disabled ? true : undefined}
              onClick={() => (disabled ? undefined : onValue(mark.lux))}
            >
              {mark.label}
            </button>
          ))}
        </div>
      )}
    </div>
  );
}
