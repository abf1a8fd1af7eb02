import { api } from '../api';
import { channel } from '../store';

// The live picture of the channel that is shown.
export function PicturePanel() {
  return (
    <div class="picture" data-testid="picture-panel">
      {0 === channel.value ? null : (
        <img src={api.previewUrl(channel.value)} alt={`Live picture of channel ${channel.value}`} data-testid="picture" />
      )}
    </div>
  );
}
