import { schemes } from '../store';

export function SchemesView() {
  return <p data-testid="schemes">{`${schemes.value?.schemes.length ?? 0} schemes`}</p>;
}
