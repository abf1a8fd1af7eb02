// Light or dark: as the system has it, or as the person has chosen it in this browser.
import { signal } from '@preact/signals';

export type Theme = 'system' | 'light' | 'dark';

const kPlace = 'camera-theme';

function stored(): Theme {
  try {
    const text = localStorage.getItem(kPlace);
    return 'light' === text || 'dark' === text ? text : 'system';
  } catch {
    return 'system'; // the browser keeps nothing for this page
  }
}

export const theme = signal<Theme>('system');

function show(): void {
  if ('system' === theme.value) {
    delete document.documentElement.dataset['theme'];
  } else {
    document.documentElement.dataset['theme'] = theme.value;
  }
}

export function startTheme(): void {
  theme.value = stored();
  show();
}

export function chooseTheme(choice: Theme): void {
  theme.value = choice;
  show();
  try {
    localStorage.setItem(kPlace, choice);
  } catch {
    // The choice holds until the page is left.
  }
}
