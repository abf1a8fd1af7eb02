import './style.css';

import { render } from 'preact';

import { App } from './app';
import { start } from './store';
import { startTheme } from './theme';

startTheme();
const root = document.getElementById('app');
if (null !== root) {
  render(<App />, root);
  void start();
}
