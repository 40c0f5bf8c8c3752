// Measured for the reader: from a touch to the interface's first command and to the first pixels that change.

const KEY = 'm';

const ms = (value) => value === null || value === undefined ? '–' : `${value < 10 ? value.toFixed(1) : Math.round(value)} ms`;

function rowOf(name, {median, p95, p99, max} = {}) {
  const row = document.createElement('tr');
  const head = document.createElement('th');
  head.scope = 'row';
  head.textContent = name;
  row.append(head);
  for (const value of [median, p95, p99, max]) row.insertCell().textContent = ms(value);
  return row;
}

export class Latency {
  #connection;
  #button;
  #label;
  #panel;
  #isOn = false;

  // `button` says the last touch, in `label`, and opens `panel`, as the key does.
  constructor(connection, button, label, panel) {
    this.#connection = connection;
    this.#button = button;
    this.#label = label;
    this.#panel = panel;
    button.addEventListener('click', () => this.#turn(!this.#isOn));
    document.addEventListener('keydown', (event) => {
      if (event.key !== KEY || event.target.matches('input, select, textarea') || event.ctrlKey || event.metaKey || event.altKey) return;
      this.#turn(!this.#isOn);
    });
    connection.addEventListener('connection', ({detail}) => { if (detail === 'open' && this.#isOn) this.#ask(); });
    connection.addEventListener('latency', ({detail}) => this.#show(detail));
  }

  #ask() { return this.#connection.ask('latency', {on: this.#isOn}); }

  #turn(isOn) {
    this.#isOn = isOn;
    this.#button.setAttribute('aria-pressed', String(isOn));
    this.#panel.hidden = !isOn;
    if (!isOn) this.#label.textContent = 'Latency';
    this.#ask();
  }

  #show({last, touches, command, pixels, pictures, bytes}) {
    if (!this.#isOn) return;
    this.#label.textContent = last?.pixels ? `${ms(last.pixels)} to pixels` : 'Latency';
    const table = document.createElement('table');
    const head = table.createTHead().insertRow();
    for (const text of [`${touches} ${touches === 1 ? 'touch' : 'touches'}`, 'median', '95 %', '99 %', 'most']) {
      const cell = document.createElement('th');
      cell.scope = 'col';
      cell.textContent = text;
      head.append(cell);
    }
    table.append(rowOf('to command', command ?? undefined), rowOf('to pixels', pixels ?? undefined));
    const rest = document.createElement('p');
    rest.className = 'note';
    rest.textContent = `Last touch: command ${ms(last?.command)}, pixels ${ms(last?.pixels)}. ${pictures} pictures, ${Math.round(bytes / 1024)} KiB a second.`;
    this.#panel.replaceChildren(table, rest);
  }
}
