// Changes of the scene on their way to the camera: one request at a time for each field, the newest value wins, and what
// the person does is shown at once.
import { signal } from '@preact/signals';

import { api, explain } from '../api';
import { NewestWins } from '../logic/newest';
import { scene, takeScene } from '../store';
import type { DayLight, FixedLight, Scene } from '../types';

type Light = FixedLight | DayLight;
export type SceneField = 'light' | 'fog' | 'wind' | 'car' | 'distance' | 'temperature' | 'clockShift';
const kFields: readonly SceneField[] = ['light', 'fog', 'wind', 'car', 'distance', 'temperature', 'clockShift'];

type Edits = Partial<Pick<Scene, SceneField>>;
const edits = signal<Edits>({});
// Why the last change of a field was refused.
export const sceneRefusals = signal<Partial<Record<SceneField, string>>>({});

function forget<T extends object>(of: T, field: SceneField): T {
  const copy = { ...of };
  delete (copy as Partial<Record<SceneField, unknown>>)[field];
  return copy;
}

const sender = new NewestWins<Edits>(
  async (key, patch) => {
    const field = kFields[key] as SceneField;
    try {
      takeScene(await api.changeScene(patch));
      sceneRefusals.value = forget(sceneRefusals.value, field);
    } catch (error) {
      sender.drop(key);
      sceneRefusals.value = { ...sceneRefusals.value, [field]: explain(error) };
    }
  },
  (key) => {
    edits.value = forget(edits.value, kFields[key] as SceneField);
  },
);

export function changeScene<F extends SceneField>(field: F, value: Scene[F]): void {
  const patch: Edits = { [field]: value };
  edits.value = { ...edits.value, ...patch };
  sceneRefusals.value = forget(sceneRefusals.value, field);
  sender.set(kFields.indexOf(field), patch);
}

// The scene as the person set it; what the camera says where nothing is on its way.
export function shownScene(): Scene | null {
  return null === scene.value ? null : { ...scene.value, ...edits.value };
}

// The fixed light to go back to when the day no longer rules, and the other way round.
let lastFixed: FixedLight = { kind: 'fixed', lux: 1000 };
let lastDay: DayLight = {
  kind: 'day',
  sunrise: '06:00',
  sunset: '20:00',
  twilightMinutes: 30,
  dayLux: 20000,
  nightLux: 0.1,
};

export function rememberLight(light: Light): void {
  if ('fixed' === light.kind) {
    lastFixed = light;
  } else {
    lastDay = light;
  }
}

export function lightOf(kind: Light['kind']): Light {
  return 'fixed' === kind ? lastFixed : lastDay;
}
