// What has happened, on a line: a mark for each touch, event, action, command and screen. A slider goes through them, and
// the entry under it is said below and marked in the log.

const KINDS = ['touch', 'event', 'action', 'command', 'screen'];  // from the top
const MOST = 400;
const ROW = 7;

const isShown = ({kind, name, answer}) => KINDS.includes(kind) && answer === undefined && name !== 'release' && name !== 'move';

function textOf({time, kind, name, x, y, value, arguments: given, error}) {
  const clock = new Date(time).toTimeString().slice(0, 8);
  const more = x !== undefined ? ` at ${x}, ${y}` : ['', ...Object.values(given ?? {value: value ?? ''})].join(' ');
  return `${clock} · ${kind} ${name.replace(/^screen /, '')}${more}${error ? `: refused, ${error}` : ''}`;
}

export class Timeline {
  #canvas;
  #slider;
  #text;
  #select;
  #entries = [];  // oldest first
  #follows = true;  // the newest

  // `steps` are the buttons to the entry before and after; `select` is told the number of the entry that is looked at.
  constructor(connection, {canvas, slider, text, steps: [before, after]}, select) {
    this.#canvas = canvas;
    this.#slider = slider;
    this.#text = text;
    this.#select = select;
    connection.addEventListener('log', ({detail}) => this.#take(detail.entries));
    slider.addEventListener('input', () => this.#go(Number(slider.value)));
    before.addEventListener('click', () => this.#go(Number(slider.value) - 1));
    after.addEventListener('click', () => this.#go(Number(slider.value) + 1));
    new ResizeObserver(() => this.#draw()).observe(canvas);
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.#draw());
    this.#show();
  }

  #take(entries) {
    if (entries.length === 0) return;
    const last = this.#entries.at(-1);
    if (last && entries[0].number < last.number) this.#entries = [];  // of another bench
    const news = entries.filter((entry) => isShown(entry) && !(entry.number <= this.#entries.at(-1)?.number));
    if (news.length === 0) return;
    const looked = this.#entries[Number(this.#slider.value)];
    this.#entries = [...this.#entries, ...news.reverse()].slice(-MOST);
    this.#slider.max = this.#entries.length - 1;
    this.#slider.value = this.#follows ? this.#entries.length - 1 : Math.max(this.#entries.indexOf(looked), 0);
    this.#show();
  }

  #go(at) {
    if (this.#entries.length === 0) return;
    this.#slider.value = at;
    this.#follows = Number(this.#slider.value) === this.#entries.length - 1;
    this.#show();
    this.#select(this.#follows ? null : this.#entries[Number(this.#slider.value)].number);
  }

  #show() {
    const at = Number(this.#slider.value);
    const entry = this.#entries[at];
    this.#slider.disabled = !entry;
    this.#text.textContent = entry ? `${at + 1} of ${this.#entries.length} · ${textOf(entry)}` : 'Nothing yet';
    this.#slider.setAttribute('aria-valuetext', this.#text.textContent);
    this.#draw();
  }

  // Each entry has its place in order, as the slider has: what happens at once is told apart.
  #draw() {
    const scale = devicePixelRatio;
    const {clientWidth: width, clientHeight: height} = this.#canvas;
    if (width === 0) return;
    Object.assign(this.#canvas, {width: width * scale, height: height * scale});
    const context = this.#canvas.getContext('2d');
    const style = getComputedStyle(this.#canvas);
    const inset = 8;  // as far as the slider's thumb
    const step = (width - 2 * inset) / Math.max(this.#entries.length - 1, 1);
    context.scale(scale, scale);
    for (const [i, entry] of this.#entries.entries()) {
      context.fillStyle = style.getPropertyValue(entry.error ? '--bad' : `--${entry.kind}`);
      context.fillRect(inset + i * step - 1, KINDS.indexOf(entry.kind) * ROW, Math.max(Math.min(step - 1, 4), 2), ROW - 2);
    }
  }
}
