// The state of camera and recorder, in words.

const VIEWS = {pip: 'both cameras', front: 'front camera', rear: 'rear camera'};
const CORNERS = ['right bottom', 'right top', 'left top', 'left bottom'];

const boxName = (box) => box ? `${box.name} (${box.id})` : null;

function rowsOf(state) {
  const {interface: ui, lcd, video, recorder} = state;
  const boxes = [boxName(state.boxes.own), boxName(state.boxes.event)].filter(Boolean);
  const rows = [
    ['Screen', state.screen ?? 'not yet said'],
    ['Message boxes', boxes.join(', ') || 'none'],
    ['Interface', ui.running ? `runs (start ${ui.starts})` : `does not run (${ui.ended ?? 'not started'})`],
    ['Ended the last time', ui.ended ?? '–'],
    ['Backlight', lcd.backlight === 0 ? 'off' : `${lcd.backlight / 1000} %`],
    ['Finger', state.touch.down ? 'down' : 'up'],
    ['Camera files', state.root],
  ];
  if (!video || !recorder) return [...rows, ['Recorder', 'stopped']];
  return [
    ...rows,
    ['Video', VIEWS[video.view] + (video.view === 'pip' ? `, small one ${CORNERS[video.pipCorner]}` : '')
              + (video.mirrored ? ', mirrored' : '')],
    ['Rear camera', video.rearAlive ? 'on' : 'off'],
    ['Recording', recorder.manualEvent ? 'manual event' : video.recording ? 'yes' : 'no'],
    ['Parked', recorder.parking.parked
                   ? `yes, ${recorder.parking.impacts} impacts, ${recorder.parking.motions} motions` : 'no'],
    ['Voltage', `${recorder.power.volts.toFixed(2)} V`],
    ['Card', recorder.card],
  ];
}

function fill(table, values) {
  table.tBodies[0].replaceChildren(...Object.entries(values ?? {}).map(([name, value]) => {
    const row = document.createElement('tr');
    const head = document.createElement('th');
    head.scope = 'row';
    head.textContent = name;
    row.append(head);
    row.insertCell().textContent = Array.isArray(value) ? value.join(', ') : String(value);
    return row;
  }));
  if (table.tBodies[0].rows.length === 0) table.tBodies[0].insertRow().insertCell().textContent = 'None yet.';
}

export class State {
  #seen;
  #list;
  #tables;

  constructor(connection, seen, list, setup, settings) {
    this.#seen = seen;
    this.#list = list;
    this.#tables = {setup, settings};
    connection.addEventListener('state', ({detail}) => this.#show(detail.state));
  }

  #show(state) {
    const rows = rowsOf(state);
    this.#list.replaceChildren(...rows.flatMap(([name, value]) => {
      const term = document.createElement('dt');
      const text = document.createElement('dd');
      term.textContent = name;
      text.textContent = value;
      return [term, text];
    }));
    const box = state.boxes.event ?? state.boxes.own;
    const seen = `${state.screen ?? 'No screen yet'}${box ? ` · ${box.name}` : ''}`;
    if (this.#seen.textContent !== seen) this.#seen.textContent = seen;  // said aloud when it changes
    fill(this.#tables.setup, state.recorder?.setup);
    fill(this.#tables.settings, state.recorder?.settings);
  }
}
