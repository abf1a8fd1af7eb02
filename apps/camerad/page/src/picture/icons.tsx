// The signs on the buttons of the picture. They repeat what the buttons are called, so nobody needs them to be read.
import type { ComponentChildren } from 'preact';

function Icon({ children }: { children: ComponentChildren }) {
  return (
    <svg
      class="icon"
      viewBox="0 0 20 20"
      width="20"
      height="20"
      fill="none"
      stroke="currentColor"
      stroke-width="1.6"
      stroke-linecap="round"
      stroke-linejoin="round"
      aria-hidden="true"
      focusable="false"
    >
      {children}
    </svg>
  );
}

export const icons = {
  freeze: () => (
    <Icon>
      <path d="M7 4v12M13 4v12" />
    </Icon>
  ),
  go: () => (
    <Icon>
      <path d="M6 4l10 6-10 6z" />
    </Icon>
  ),
  compare: () => (
    <Icon>
      <rect x="2.5" y="4" width="15" height="12" rx="1" />
      <path d="M10 2v16M5 8h2M5 12h2" />
    </Icon>
  ),
  histogram: () => (
    <Icon>
      <path d="M3 16V11M7 16V6M11 16V3M15 16v-4" />
    </Icon>
  ),
  plus: () => (
    <Icon>
      <path d="M10 4v12M4 10h12" />
    </Icon>
  ),
  minus: () => (
    <Icon>
      <path d="M4 10h12" />
    </Icon>
  ),
  download: () => (
    <Icon>
      <path d="M10 3v9M6 9l4 4 4-4M4 17h12" />
    </Icon>
  ),
  full: () => (
    <Icon>
      <path d="M3 7V3h4M13 3h4v4M17 13v4h-4M7 17H3v-4" />
    </Icon>
  ),
  sun: () => (
    <Icon>
      <circle cx="10" cy="10" r="3.2" />
      <path d="M10 2v2M10 16v2M2 10h2M16 10h2M4.5 4.5l1.3 1.3M14.2 14.2l1.3 1.3M4.5 15.5l1.3-1.3M14.2 5.8l1.3-1.3" />
    </Icon>
  ),
  moon: () => (
    <Icon>
      <path d="M15.5 12.5A6.5 6.5 0 0 1 7.5 4.5a6.5 6.5 0 1 0 8 8z" />
    </Icon>
  ),
};
