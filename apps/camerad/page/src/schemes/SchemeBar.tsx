import { changeSchemes, notify, readOnlyReason, schemes } from '../store';
import type { SchemesView } from '../types';
import { Button } from '../ui/Button';

// Whether the camera would take another choice of the person back at once.
const isSwitching = (view: SchemesView) => view.automatic && 'nothing' !== view.follow;

// Applies a scheme. In automatic switching the camera would go back within a second, so that ends with it.
async function apply(view: SchemesView, index: number): Promise<void> {
  const manual = isSwitching(view);
  if (await changeSchemes(manual ? { automatic: false, current: index } : { current: index })) {
    if (manual) {
      notify('Automatic switching is off now, so that your choice stays.');
    }
  }
}

// The schemes as chips: which one is in force, which have unsaved changes. A press applies one.
export function SchemeBar() {
  const view = schemes.value;
  if (null === view) {
    return null;
  }
  const list = [
    ...view.schemes.map((scheme) => ({ index: scheme.index, name: scheme.name, unsaved: scheme.unsaved.length })),
    { index: view.factory, name: 'Factory', unsaved: 0 },
  ];
  return (
    <div class="scheme-bar">
      <div class="scheme-chips" role="group" aria-label="Scheme in force">
        {list.map((scheme) => (
          <Button
            key={scheme.index}
            small
            class={`scheme-chip lane-${scheme.index === view.factory ? 'factory' : scheme.index % 4}`}
            pressed={scheme.index === view.current}
            reason={readOnlyReason.value || undefined}
            title={scheme.index === view.factory ? 'The values of the factory, for a look: changes to them are not kept' : undefined}
            data-testid={`scheme-${scheme.index}`}
            onClick={() => {
              if (scheme.index !== view.current) {
                void apply(view, scheme.index);
              }
            }}
          >
            <span class="scheme-text">{scheme.name}</span>
            {0 < scheme.unsaved ? (
              <span
                class="dot"
                role="img"
                aria-label={`${scheme.unsaved} unsaved`}
                title={`${scheme.unsaved} unsaved`}
                data-testid={`scheme-unsaved-${scheme.index}`}
              />
            ) : null}
          </Button>
        ))}
      </div>
      <span class="muted small" data-testid="scheme-mode">
        {isSwitching(view)
          ? `Switched by ${'schedule' === view.follow ? 'the time of day' : 'day and night'}`
          : 'Chosen by hand'}
      </span>
      {view.current === view.factory ? (
        <p class="banner">The factory values are in force. What you change now is not kept.</p>
      ) : null}
    </div>
  );
}
