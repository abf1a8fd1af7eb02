import { LogPanel } from './log/LogPanel';
import { PicturePanel } from './picture/PicturePanel';
import { go, place, type View } from './place';
import { ScenePanel } from './scene/ScenePanel';
import { SchemesView } from './schemes/SchemesView';
import { SettingsView } from './settings/SettingsView';
import { Header } from './shell/Header';
import { Login } from './shell/Login';
import { channel, loadProblem, session } from './store';
import { Button } from './ui/Button';
import { Notices } from './ui/Notices';
import { TabPanel, Tabs } from './ui/Tabs';

// The views beside the picture. To add one: its name in place.ts, and a line here.
const kViewList: { key: View; label: string; view: () => preact.JSX.Element }[] = [
  { key: 'settings', label: 'Settings', view: () => <SettingsView /> },
  { key: 'schemes', label: 'Schemes', view: () => <SchemesView /> },
  { key: 'scene', label: 'Scene', view: () => <ScenePanel /> },
  { key: 'log', label: 'Log', view: () => <LogPanel /> },
];

export function App() {
  if (undefined === session.value) {
    return (
      <main class="waiting" aria-busy="true">
        <p>{'' === loadProblem.value ? 'Looking for the camera …' : loadProblem.value}</p>
      </main>
    );
  }
  if (null === session.value) {
    return <Login />;
  }
  const view = place.value.view;
  return (
    <>
      <Button class="skip" onClick={() => document.getElementById(`view-${view}`)?.focus()}>
        Go past the picture
      </Button>
      <Header />
      <main class="work">
        <div class="left">
          <PicturePanel key={channel.value} />
        </div>
        <div class="right">
          <Tabs
            id="view"
            label="Views"
            testid="view"
            tabs={kViewList}
            chosen={view}
            onChoose={(key) => go({ view: key as View, tab: '' })}
          />
          <TabPanel id="view" chosen={view}>
            {kViewList.find((entry) => entry.key === view)?.view()}
          </TabPanel>
        </div>
      </main>
      <Notices />
    </>
  );
}
