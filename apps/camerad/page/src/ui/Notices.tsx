import { dismiss, notices } from '../store';
import { Button } from './Button';

// Short messages in the corner; a screen reader reads them as they come.
export function Notices() {
  return (
    <div class="notices" data-testid="notices">
      <div role="status" aria-live="polite">
        {notices.value.filter((notice) => 'info' === notice.kind).map((notice) => (
          <Line key={notice.id} id={notice.id} kind="info" text={notice.text} />
        ))}
      </div>
      <div role="alert" aria-live="assertive">
        {notices.value.filter((notice) => 'error' === notice.kind).map((notice) => (
          <Line key={notice.id} id={notice.id} kind="error" text={notice.text} />
        ))}
      </div>
    </div>
  );
}

function Line({ id, kind, text }: { id: number; kind: string; text: string }) {
  return (
    <div class={`notice-line ${kind}`}>
      <span>{text}</span>
      <Button kind="quiet" small aria-label="Dismiss this message" onClick={() => dismiss(id)}>
        ×
      </Button>
    </div>
  );
}
