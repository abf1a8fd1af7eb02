import type { ComponentChildren } from 'preact';

interface Props {
  kind?: 'plain' | 'accent' | 'warn' | 'good' | 'bad';
  title?: string | undefined;
  testid?: string | undefined;
  children: ComponentChildren;
}

// A short word that says a state.
export function Chip({ kind = 'plain', title, testid, children }: Props) {
  return (
    <span class={`chip ${kind}`} title={title} data-testid={testid}>
      {children}
    </span>
  );
}
