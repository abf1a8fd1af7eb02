import { metadata } from '../store';

export function SettingsView() {
  return <p data-testid="settings">{`${metadata.value?.tabs.length ?? 0} tabs`}</p>;
}
