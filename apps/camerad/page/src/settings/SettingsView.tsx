import { useEffect } from 'preact/hooks';

import { isShown } from '../logic/style';
import { go, place } from '../place';
import { SchemeBar } from '../schemes/SchemeBar';
import { channel, connection, lens, metadata, readOnlyReason, readParameters, values } from '../store';
import type { StyleGroup, StyleItem, StyleTab } from '../types';
import { TabPanel, Tabs } from '../ui/Tabs';
import { Control } from './Control';
import { Search } from './Search';
import { isUnsaved, style, valueOf } from './state';

// Every parameter of the channel, in the tabs and groups of its style document.
export function SettingsView() {
  const tabs = style.value.tabs;
  const tab = tabs.find((candidate) => candidate.key === place.value.tab) ?? tabs[0];
  useUnrecorded(tab);
  if (undefined === tab) {
    return <p class="muted">{null === metadata.value ? 'Asking the camera …' : 'This channel has no parameters.'}</p>;
  }
  return (
    <div class="settings" data-testid="settings">
      <div class="settings-head">
        <SchemeBar />
        <Search />
      </div>
      <Tabs
        id="tab"
        label="Groups of settings"
        testid="tab"
        tabs={tabs.map((entry) => ({
          key: entry.key,
          label: entry.label || entry.key,
          mark: entry.groups.some((group) => group.parameters.some((item) => isUnsaved(item.key)))
            ? 'has unsaved changes'
            : undefined,
        }))}
        chosen={tab.key}
        onChoose={(key) => go({ view: 'settings', tab: key })}
      />
      {'' === readOnlyReason.value ? null : (
        <p class="banner" id="read-only-note" data-testid="read-only-note">
          {readOnlyReason.value}
        </p>
      )}
      <TabPanel id="tab" chosen={tab.key}>
        <TabContent key={`${channel.value} ${tab.key}`} tab={tab} />
      </TabPanel>
    </div>
  );
}

function TabContent({ tab }: { tab: StyleTab }) {
  const groups = tab.groups
    .map((group) => ({ group, items: group.parameters.filter((item) => isShown(style.value, { group, item }, valueOf)) }))
    .filter(({ items }) => 0 < items.length);
  if (0 === groups.length) {
    return <p class="muted">Nothing here can be set now.</p>;
  }
  return (
    <div class="groups">
      {groups.map(({ group, items }, index) => (
        <Group key={`${index} ${group.label}`} group={group} items={items} />
      ))}
    </div>
  );
}

function Group({ group, items }: { group: StyleGroup; items: StyleItem[] }) {
  const content = inRows(items).map((row) =>
    'button' === row[0]?.type ? (
      <div class="button-row" key={row[0].key}>
        {row.map((item) => (
          <Control key={item.key} item={item} />
        ))}
      </div>
    ) : (
      row.map((item) => <Control key={item.key} item={item} />)
    ),
  );
  return '' === group.label ? (
    <div class="group">{content}</div>
  ) : (
    <fieldset class="group">
      <legend>{group.label}</legend>
      {content}
    </fieldset>
  );
}

// Buttons that follow each other share a row.
function inRows(items: StyleItem[]): StyleItem[][] {
  const rows: StyleItem[][] = [];
  for (const item of items) {
    const last = rows.at(-1);
    if ('button' === item.type && 'button' === last?.[0]?.type) {
      last.push(item);
    } else {
      rows.push([item]);
    }
  }
  return rows;
}

// Parameters that no scheme holds are read from the camera when their tab is opened, and again when the lens stands still
// after it has moved, or the connection is back.
function useUnrecorded(tab: StyleTab | undefined): void {
  const isLive = 'live' === connection.value;
  const isMoving = true === lens.value?.moving;
  const isLoaded = values.value.channel === channel.value;
  const own = (tab?.groups ?? [])
    .flatMap((group) => group.parameters)
    .filter((item) => !item.recorded && 'button' !== item.type && 'notice' !== item.type)
    .map((item) => item.key);
  const keys = [...new Set([...own, ...style.value.askedKeys])];
  const list = keys.join();
  useEffect(() => {
    if (isLive && isLoaded && !isMoving && 0 < keys.length) {
      void readParameters(keys);
    }
  }, [list, isLive, isLoaded, isMoving, metadata.value?.revision]);
}
