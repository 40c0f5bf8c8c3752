// The LED matrix on the camera's front. The patterns run through it from right to left, column by column.

const COLUMNS = 60, ROWS = 5;
const DOT = 6;      // pixels from one dot to the next
const STEP = 80;    // ms from one column to the next
const OFF = '#3d3537', ON = '#ff6a4d';

const bytesOf = (hex) => (hex.match(/../g) ?? []).map((digits) => parseInt(digits, 16));

export class Led {
  #context;
  #text;
  #canvas;
  #known = '';     // what is to be shown, as JSON
  #patterns = [];  // empty: dark
  #isRandom = false;
  #now = 0;        // which of them runs
  #at = 0;         // columns that it has come in by

  // `canvas` is the matrix; `text` says what runs through it.
  constructor(connection, canvas, text) {
    this.#canvas = canvas;
    this.#context = canvas.getContext('2d');
    this.#text = text;
    canvas.width = COLUMNS * DOT;
    canvas.height = ROWS * DOT;
    connection.addEventListener('state', ({detail: {state}}) => this.#take(state.recorder?.frontLed));
    this.#take(null);
    setInterval(() => this.#step(), STEP);
  }

  #take(led) {
    const json = JSON.stringify(led ?? null);
    if (json === this.#known) return;
    this.#known = json;
    this.#patterns = led && led.mode !== 0 ? led.entries.filter(({columns}) => columns) : [];
    this.#isRandom = led?.mode === 2;
    this.#begin(0);
  }

  #begin(index) {
    this.#now = index;
    this.#at = 0;
    const pattern = this.#patterns[index];
    this.#text.textContent = `Front LED: ${pattern ? pattern.name : 'off'}`;
    this.#canvas.dataset.shows = pattern?.name ?? '';
    this.#draw();
  }

  #step() {
    const pattern = this.#patterns[this.#now];
    if (!pattern || document.hidden) return;
    if (++this.#at > COLUMNS + pattern.columns.length / 2) this.#begin(this.#next());
    else this.#draw();
  }

  #next() {
    const count = this.#patterns.length;
    if (!this.#isRandom || count < 2) return (this.#now + 1) % count;
    return (this.#now + 1 + Math.floor(Math.random() * (count - 1))) % count;  // another one
  }

  #draw() {
    const columns = bytesOf(this.#patterns[this.#now]?.columns ?? '');
    this.#context.clearRect(0, 0, this.#canvas.width, this.#canvas.height);
    for (let x = 0; x < COLUMNS; ++x)
      for (let y = 0; y < ROWS; ++y) {
        this.#context.fillStyle = columns[x - COLUMNS + this.#at] >> y & 1 ? ON : OFF;
        this.#context.fillRect(x * DOT + 1, y * DOT + 1, DOT - 2, DOT - 2);
      }
  }
}
