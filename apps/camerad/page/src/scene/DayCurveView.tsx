import { useMemo } from 'preact/hooks';

import { type Curve, luxAt, kMinutes, timeText } from './day';
import { lightWord, plainNumber } from './light';

const kWidth = 480;
const kHeight = 96;
const kLowest = -3; // powers of ten of the lux that the drawing shows
const kHighest = 5;

function heightOf(lux: number): number {
  const power = Math.log10(Math.max(1e-3, lux));
  return kHeight - 4 - ((Math.min(kHighest, power) - kLowest) / (kHighest - kLowest)) * (kHeight - 8);
}

// The light over a day, with a mark where the scene is now.
export function DayCurveView({ curve, minute, lux }: { curve: Curve; minute: number; lux: number }) {
  const path = useMemo(() => {
    const points: string[] = [];
    for (let at = 0; at <= kMinutes; at += 5) {
      points.push(`${((at / kMinutes) * kWidth).toFixed(1)},${heightOf(luxAt(curve, at % kMinutes)).toFixed(1)}`);
    }
    return `M${points.join('L')}`;
  }, [curve.sunrise, curve.sunset, curve.twilightMinutes, curve.dayLux, curve.nightLux]);
  const x = (minute / kMinutes) * kWidth;
  return (
    <figure class="day-curve">
      <svg
        viewBox={`0 0 ${kWidth} ${kHeight}`}
        role="img"
        preserveAspectRatio="none"
        aria-label={
          `Light over the day: sunrise ${curve.sunrise}, sunset ${curve.sunset}, ` +
          `${plainNumber(curve.dayLux)} lux by day, ${plainNumber(curve.nightLux)} lux by night`
        }
      >
        <path class="day-fill" d={`${path}L${kWidth},${kHeight}L0,${kHeight}Z`} />
        {[6, 12, 18].map((hour) => (
          <line key={hour} class="day-grid" x1={(hour * kWidth) / 24} x2={(hour * kWidth) / 24} y1="0" y2={kHeight} />
        ))}
        <path class="day-line" d={path} />
        <line class="day-now" x1={x} x2={x} y1="0" y2={kHeight} />
      </svg>
      <figcaption class="muted">
        <span>0</span>
        <span>6</span>
        <span>12</span>
        <span>18</span>
        <span>24</span>
      </figcaption>
      <p class="muted day-words" data-testid="scene-day-now">
        {timeText(minute)} in the scene: {plainNumber(lux)} lux, {lightWord(lux).toLowerCase()}
      </p>
    </figure>
  );
}
