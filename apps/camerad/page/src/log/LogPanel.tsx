import { useEffect, useState } from 'preact/hooks';

import { onEvent } from '../store';
import type { LogEntry } from '../types';
import { Panel } from '../ui/Panel';

// What the library says to the driver, and what it says of itself.
export function LogPanel() {
  const [lines, setLines] = useState<LogEntry[]>([]);
  useEffect(() => onEvent('driver', (event) => setLines((known) => [...known, ...event.entries].slice(-200))), []);
  return (
    <Panel title="Log" testid="log-panel">
      <ol>
        {lines.map((line) => (
          <li key={line.number}>{line.text}</li>
        ))}
      </ol>
    </Panel>
  );
}
