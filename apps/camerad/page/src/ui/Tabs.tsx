import type { ComponentChildren } from 'preact';

interface Tab {
  key: string;
  label: string;
  mark?: string | undefined; // said behind the label, for instance "unsaved"
}

interface Props {
  id: string; // of the list; the panel is `${id}-panel`
  label: string;
  tabs: Tab[];
  chosen: string;
  testid: string; // of the tabs: `${testid}-${key}`
  onChoose: (key: string) => void;
}

// Tabs as the keyboard expects them: one stop for Tab, arrow keys, Home and End between them.
export function Tabs({ id, label, tabs, chosen, testid, onChoose }: Props) {
  const step = (event: KeyboardEvent, index: number) => {
    const last = tabs.length - 1;
    const to = { ArrowRight: index < last ? index + 1 : 0, ArrowLeft: 0 < index ? index - 1 : last, Home: 0, End: last }[
      event.key
    ];
    const tab = undefined === to ? undefined : tabs[to];
    if (undefined !== tab) {
      event.preventDefault();
      onChoose(tab.key);
      document.getElementById(`${id}-${tab.key}`)?.focus();
    }
  };
  return (
    <div class="tabs" role="tablist" aria-label={label}>
      {tabs.map((tab, index) => (
        <button
          key={tab.key}
          id={`${id}-${tab.key}`}
          type="button"
          role="tab"
          aria-selected={tab.key === chosen}
          aria-controls={tab.key === chosen ? `${id}-panel` : undefined}
          tabIndex={tab.key === chosen ? 0 : -1}
          data-testid={`${testid}-${tab.key}`}
          onClick={() => onChoose(tab.key)}
          onKeyDown={(event) => step(event, index)}
        >
          {tab.label}
          {undefined === tab.mark ? null : <span class="dot" role="img" aria-label={tab.mark} title={tab.mark} />}
        </button>
      ))}
    </div>
  );
}

export function TabPanel({ id, chosen, children }: { id: string; chosen: string; children: ComponentChildren }) {
  return (
    <div id={`${id}-panel`} role="tabpanel" aria-labelledby={`${id}-${chosen}`} tabIndex={-1}>
      {children}
    </div>
  );
}
