import { Slider } from '../ui/Slider';
import { Switch } from '../ui/Switch';
import { changeScene, type SceneField, sceneRefusals, shownScene } from './edit';
import { DecimalField } from './DecimalField';
import { kDistanceScale, plainNumber } from './light';
import { LogSlider } from './LogSlider';

// What else stands before the camera: weather, a car, the distance of the subject, the cold.
export function WeatherSection({ disabled }: { disabled: boolean }) {
  const shown = shownScene();
  if (null === shown) {
    return null;
  }
  return (
    <section class="scene-section" aria-labelledby="scene-weather-title">
      <h3 id="scene-weather-title">Street and weather</h3>
      <div class="field">
        <span class="field-name">Fog</span>
        <Slider
          id="scene-fog"
          label="Fog"
          value={shown.fog}
          min={0}
          max={100}
          unit="%"
          disabled={disabled}
          testid="scene-fog"
          onInput={(fog) => changeScene('fog', fog)}
        />
      </div>
      <Refusal field="fog" />
      <div class="field">
        <span class="field-name">Wind</span>
        <Slider
          id="scene-wind"
          label="Wind"
          value={shown.wind}
          min={0}
          max={100}
          unit="%"
          disabled={disabled}
          testid="scene-wind"
          onInput={(wind) => changeScene('wind', wind)}
        />
      </div>
      <Refusal field="wind" />
      <div class="field">
        <span class="field-name">Distance</span>
        <LogSlider
          id="scene-distance"
          label="Distance of the subject"
          scale={kDistanceScale}
          value={shown.distance}
          min={0.01}
          max={100000}
          unit="m"
          valueText={`${plainNumber(shown.distance)} metres`}
          disabled={disabled}
          testid="scene-distance"
          onValue={(distance) => changeScene('distance', distance)}
        />
      </div>
      <Refusal field="distance" />
      <div class="field-row">
        <label for="scene-temperature">Temperature</label>
        <DecimalField
          id="scene-temperature"
          value={shown.temperature}
          min={-60}
          max={85}
          unit="°C"
          disabled={disabled}
          testid="scene-temperature"
          onValue={(temperature) => changeScene('temperature', temperature)}
        />
        <span class="field-pair">
          <Switch
            id="scene-car"
            on={shown.car}
            disabled={disabled}
            testid="scene-car"
            onChange={(car) => changeScene('car', car)}
          />
          <label for="scene-car">A car drives by</label>
        </span>
      </div>
      <Refusal field="temperature" />
      <Refusal field="car" />
    </section>
  );
}

function Refusal({ field }: { field: SceneField }) {
  const text = sceneRefusals.value[field];
  return undefined === text ? null : (
    <p class="problem" role="alert">
      {text}
    </p>
  );
}
