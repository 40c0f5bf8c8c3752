// The state of camera and recorder, in words.

const VIEWS = {pip: 'both cameras', front: 'front camera', rear: 'rear camera'};
const CORNERS = ['right bottom', 'right top', 'left top', 'left bottom'];
const GPS = ['none', 'searching', 'fix'];

const UPDATE = ['begins', 'runs', 'has ended'];

const nameOf = (box) => `${box.name} (${box.id})`;

function videoOf({view, pipCorner, mirrored}) {
  return [VIEWS[view], view === 'pip' && `small one ${CORNERS[pipCorner]}`, mirrored && 'mirrored'].filter(Boolean).join(', ');
}

function panelOf({skew, x, y, noise}) {
  return skew || x || y || noise ? `askew: ${skew} %, off by ${x}, ${y}, noise ${noise}` : 'as the factory mounts it';
}

// "365 days ahead"
function clockOf(offset) {
  const size = Math.abs(offset);
  const [unit, seconds] = [['days', 86400], ['h', 3600], ['min', 60], ['s', 1]].find(([, least]) => size >= 2 * least) ?? ['s', 1];
  return size === 0 ? 'this machine\'s' : `${Math.round(size / seconds)} ${unit} ${offset > 0 ? 'ahead' : 'behind'}`;
}

function parkedOf({parked, impacts, motions}) {
  return parked ? `yes; impacts ${impacts}, motions ${motions}` : 'no';
}

// What a person sees, in one line: the screen, and what is said beside it.
function seenOf({screen, boxes, interface: ui, lcd, recorder}) {
  if (UPDATE[recorder?.update]) return [null, `The firmware update ${UPDATE[recorder.update]}`];
  if (!ui.running) return [null, 'The interface does not run'];
  const box = boxes.event ?? boxes.own;
  return [screen, ...[!screen && 'No screen yet', box?.name, lcd.backlight === 0 && 'LCD off'].filter(Boolean)];
}

// The name of the screen leads to its pictures.
function fillSeen(place, [screen, ...words]) {
  const link = Object.assign(document.createElement('a'), {href: `gallery#${screen}`, target: '_blank', title: 'All its pictures', textContent: screen});
  place.replaceChildren(...(screen ? [link, words.length > 0 ? ' · ' : ''] : []), words.join(' · '));
}

function rowsOf(state) {
  const {interface: ui, lcd, video, recorder} = state;
  const boxes = [state.boxes.own, state.boxes.event].filter(Boolean).map(nameOf);
  const rows = [
    ['Screen', state.screen ?? 'not yet said'],
    ['Message boxes', boxes.join(', ') || 'none'],
    ['Interface', `${ui.running ? 'runs' : 'does not run'}, starts: ${ui.starts}`],
    ['It ended by', ui.ended ?? '–'],
    ['Backlight', lcd.backlight === 0 ? 'off' : `${lcd.backlight / 1000} %`],
    ['Finger', state.touch.down ? 'down' : 'up'],
    ['Touch panel', panelOf(state.panel)],
    ['Camera files', state.root],
  ];
  if (!video || !recorder) return [...rows, ['Recorder', 'stopped']];
  return [
    ...rows,
    ['Video', videoOf(video)],
    ['Rear camera', video.rearAlive ? 'on' : 'off'],
    ['Recording', recorder.manualEvent ? 'manual event' : video.recording ? 'yes' : 'no'],
    ['Parked', parkedOf(recorder.parking)],
    ['Voltage', `${recorder.power.volts.toFixed(2)} V`],
    ['GPS', `${GPS[recorder.gps] ?? recorder.gps}, ${recorder.speed} km/h`],
    ['Card', recorder.card],
    ['Clock', clockOf(recorder.clockOffset)],
  ];
}

function headOf(text, scope) {
  const head = document.createElement('th');
  head.scope = scope;
  head.textContent = text;
  return head;
}

// "lcdsetting/lcd_bright" is the row lcd_bright of the group lcdsetting.
function bodyOf(group, values) {
  const body = document.createElement('tbody');
  if (group !== '') {
    const head = headOf(group, 'rowgroup');
    head.colSpan = 2;
    body.insertRow().append(head);
  }
  for (const [name, value] of values) {
    const row = body.insertRow();
    row.append(headOf(name.slice(group === '' ? 0 : group.length + 1), 'row'));
    row.insertCell().textContent = textOf(value);
  }
  return body;
}

function fillTable(table, values) {
  const groups = new Map();
  for (const [name, value] of Object.entries(values ?? {})) {
    const group = name.slice(0, Math.max(name.indexOf('/'), 0));
    if (!groups.has(group)) groups.set(group, []);
    groups.get(group).push([name, value]);
  }
  table.replaceChildren(...[...groups].map(([group, rows]) => bodyOf(group, rows)));
  if (groups.size === 0) table.createTBody().insertRow().insertCell().textContent = 'None yet.';
}

const textOf = (value) => value === undefined ? '–' : Array.isArray(value) ? value.join(', ') : String(value);

// Each field as it was and as it is; what has changed is marked.
function fillBlock(table, now, before) {
  const head = document.createElement('thead');
  const body = document.createElement('tbody');
  head.insertRow().append(...['field', 'before', 'now'].map((text) => headOf(text, 'col')));
  for (const [name, value] of Object.entries(now)) {
    const row = body.insertRow();
    row.append(headOf(name, 'row'));
    const [old, current] = [textOf(before[name]), textOf(value)];
    row.insertCell().textContent = old;
    const cell = row.insertCell();
    cell.append(old === current || before[name] === undefined ? current : Object.assign(document.createElement('mark'), {textContent: current}));
  }
  if (body.rows.length > 0) return table.replaceChildren(head, body);
  body.insertRow().insertCell().textContent = 'None yet.';
  table.replaceChildren(body);
}

function fillList(list, rows) {
  list.replaceChildren(...rows.map(([name, value]) => {
    const pair = document.createElement('div');
    const term = document.createElement('dt');
    const text = document.createElement('dd');
    term.textContent = name;
    text.textContent = value;
    pair.append(term, text);
    return pair;
  }));
}

export class State {
  #shown = new Map();  // element → what it shows, as JSON

  // `seen` is said aloud when it changes; `list` is a dl, `setup` and `settings` are tables.
  constructor(connection, seen, list, setup, settings) {
    connection.addEventListener('state', ({detail: {state}}) => {
      this.#show(seen, seenOf(state), (words) => fillSeen(seen, words));
      this.#show(list, rowsOf(state), (rows) => fillList(list, rows));
      this.#show(setup, [state.recorder?.setup ?? {}, state.recorder?.setupBefore ?? {}], (blocks) => fillBlock(setup, ...blocks));
      this.#show(settings, state.recorder?.settings ?? {}, (values) => fillTable(settings, values));
    });
  }

  // Ten states a second may come: only what is new is drawn, so that a text can be marked and copied.
  #show(element, value, draw) {
    const json = JSON.stringify(value);
    if (this.#shown.get(element) === json) return;
    this.#shown.set(element, json);
    draw(value);
  }
}
