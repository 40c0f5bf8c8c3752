import {Areas} from './areas.js';
import {Connection} from './connection.js';
import {Controls} from './controls.js';
import {Language} from './language.js';
import {Lcd} from './lcd.js';
import {Led} from './led.js';
import {Log} from './log.js';
import {OwnPicture} from './ownpicture.js';
import {State} from './state.js';

const find = (id) => document.getElementById(id);

const connection = new Connection();
const lcd = new Lcd(connection, find('lcd'), find('finger'), find('fault'));
new Areas(connection, find('areas'), find('show-areas'));
new Language(connection, find('language'), find('offer'), find('fault'));
new Led(connection, find('led'), find('led-text'));
new Controls(connection, find('work'), find('controls'), find('event'));
new Log(connection, find('log'), find('kinds'), find('pause'));
new OwnPicture(find('picture'));
new State(connection, find('seen'), find('state'), find('setup'), find('settings'));

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

async function act(name) {
  find('fault').textContent = await connection.ask('action', {name}) ?? '';
}
find('power').addEventListener('click', () => act('powerKey'));
find('restart').addEventListener('click', () => act('interfaceRestart'));
find('save').addEventListener('click', () => lcd.save());

// The key click is heard only when it was asked for.
let click = null;
find('sound').addEventListener('click', ({currentTarget}) => {
  click = click ? null : new Audio('api/click.wav');
  currentTarget.setAttribute('aria-pressed', String(click !== null));
});
connection.addEventListener('click', () => {
  if (!click) return;
  click.currentTime = 0;
  click.play().catch(() => {});  // the browser may forbid it: then there is no sound
});
