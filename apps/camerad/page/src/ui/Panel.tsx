import type { ComponentChildren } from 'preact';

interface Props {
  title: string;
  testid?: string | undefined;
  actions?: ComponentChildren;
  children: ComponentChildren;
}

// A section of the page with a heading, and what can be done with the whole of it beside the heading.
export function Panel({ title, testid, actions, children }: Props) {
  return (
    <section class="panel" aria-label={title} data-testid={testid}>
      <header class="panel-head">
        <h2>{title}</h2>
        <div class="panel-actions">{actions}</div>
      </header>
      {children}
    </section>
  );
}
