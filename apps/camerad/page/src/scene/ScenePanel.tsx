import { scene } from '../store';
import { Panel } from '../ui/Panel';

// What the simulated camera sees.
export function ScenePanel() {
  return (
    <Panel title="Scene" testid="scene-panel">
      <p>{null === scene.value ? 'The scene is not known yet.' : `${scene.value.lux} lux`}</p>
    </Panel>
  );
}
