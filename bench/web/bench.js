import {Areas} from './areas.js';
import {Chips} from './chips.js';
import {Connection} from './connection.js';
import {Controls} from './controls.js';
import {download} from './download.js';
import {Entry, scenarioOf} from './entry.js';
import {Inside} from './inside.js';
import {Language} from './language.js';
import {Latency} from './latency.js';
import {Lcd} from './lcd.js';
import {Led} from './led.js';
import {Links} from './links.js';
import {Log} from './log.js';
import {OwnPicture} from './ownpicture.js';
import {post} from './post.js';
import {Replaying} from './replaying.js';
import {Sight} from './sight.js';
import {State} from './state.js';
import {Tabs} from './tabs.js';
import {Timeline} from './timeline.js';
import {Voice} from './voice.js';

const find = (id) => document.getElementById(id);

const connection = new Connection();
const lcd = new Lcd(connection, find('lcd'), find('finger'), find('fault'));
new Sight(connection, find('lcd'), find('hint'), find('light'));
new Areas(connection, find('areas'), find('show-areas'));
new Inside(connection, find('inside'), find('targets'));
new Language(connection, find('language'), find('offer'), find('fault'));
new Latency(connection, find('latency'), find('latency-text'), find('latencies'));
new Led(connection, find('led'), find('led-text'));
new Voice(connection, find('voice'));
new Replaying(connection, find('replaying'));
const controls = new Controls(connection, {work: find('work'), tabs: find('tabs'), find: find('find'), found: find('found'), said: find('said'),
                                           place: find('controls'), picture: find('picture')});
const log = new Log(connection, {list: find('log'), kinds: find('kinds'), pause: find('pause'), find: find('find-log'),
                                 copy: find('copy-log'), save: find('save-log')});
new Entry(log, find('curl'), [find('copy-curl'), find('copy-link')]);
new Links(log, find('log'), controls);
new OwnPicture(find('picture'));
new State(connection, find('seen'), find('state'), find('setup'), find('settings'));
new Chips(connection, find('facts'), find('armed'), find('fault'));
new Timeline(connection, {canvas: find('marks'), slider: find('scrub'), text: find('moment'), steps: [find('before'), find('after')]},
             (number) => log.mark(number));

// Shows the panel of the tab that is chosen among its neighbours.
function choose(tab) {
  for (const each of tab.parentElement.children) find(each.getAttribute('aria-controls')).hidden = each !== tab;
}
new Tabs(find('views'), choose);

// What not everybody opens is fetched when it is.
const LATER = {
  scenarios: async (place) => new (await import('./scenarios.js')).Scenarios(connection, place),
  recordings: async (place) => new (await import('./recordings.js')).Recordings(connection, place),
  snapshots: async (place) => new (await import('./snapshots.js')).Snapshots(connection, place),
};
const RECORDINGS = 2;  // their place among the tabs
const plays = new Tabs(find('plays'), (tab) => {
  choose(tab);
  const name = tab.getAttribute('aria-controls');
  LATER[name]?.(find(name));
  delete LATER[name];
});

// A file that is dragged over the page is a recording to replay.
document.addEventListener('dragenter', ({dataTransfer}) => { if (dataTransfer?.types.includes('Files')) plays.choose(RECORDINGS); });

const WORDS = {open: 'Connected', closed: 'The bench does not answer: trying again'};
connection.addEventListener('connection', ({detail}) => {
  find('connection').dataset.state = detail;
  find('connection').textContent = WORDS[detail];
  document.body.classList.toggle('gone', detail !== 'open');
  find('fault').textContent = '';
  if (document.hidden) watch();
});

// A page in the background wants no pictures.
function watch() {
  if (connection.isOpen) connection.ask('watch', {on: !document.hidden});
}
document.addEventListener('visibilitychange', watch);

find('power').addEventListener('click', async () => {
  find('fault').textContent = await connection.ask('action', {name: 'powerKey'}) ?? '';
});
const record = find('record');
record.addEventListener('click', async () => {
  find('fault').textContent = await post('record', {on: record.getAttribute('aria-pressed') !== 'true'});
  plays.choose(RECORDINGS);
});
connection.addEventListener('state', ({detail: {state}}) => {
  const isOn = state.record?.on === true;
  record.setAttribute('aria-pressed', String(isOn));
  record.textContent = isOn ? 'Stop recording' : 'Record';
});
find('tour').addEventListener('click', async () => { find('fault').textContent = await post('scenario', {play: 'welcome'}); });
find('save').addEventListener('click', () => lcd.save());
find('save-scenario').addEventListener('click', () => {
  download('scenario.jsonl', new Blob([scenarioOf(log.entries)], {type: 'application/jsonl'}));
});

// The key click is heard only when it was asked for, and then at once: so it can be told whether it is heard at all.
let click = null;
function sound() {
  if (!click) return;
  click.currentTime = 0;
  click.play().catch(() => {});  // the browser may forbid it: then there is no sound
}
find('sound').addEventListener('click', ({currentTarget}) => {
  click = click ? null : new Audio('api/click.wav');
  currentTarget.setAttribute('aria-pressed', String(click !== null));
  sound();
});
connection.addEventListener('click', sound);
