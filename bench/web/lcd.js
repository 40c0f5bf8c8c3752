// The camera's LCD and the finger on it.

import {download} from './download.js';

const WIDTH = 480, HEIGHT = 320;
const STEP = 8;  // pixels that an arrow key moves the finger

export class Lcd {
  #canvas;
  #context;
  #connection;
  #fault;
  #finger;                             // the mark of the keyboard's finger
  #spot = {x: WIDTH / 2, y: HEIGHT / 2};  // where it is
  #down = null;                        // pointer id, or 'key'
  #last = null;

  constructor(connection, canvas, finger, fault) {
    this.#connection = connection;
    this.#canvas = canvas;
    this.#finger = finger;
    this.#fault = fault;
    this.#context = canvas.getContext('2d', {alpha: false, willReadFrequently: true});
    connection.addEventListener('picture', ({detail}) => this.#paint(detail));
    canvas.addEventListener('pointerdown', (event) => this.#press(event));
    canvas.addEventListener('pointermove', (event) => this.#move(event));
    for (const end of ['pointerup', 'pointercancel', 'lostpointercapture'])
      canvas.addEventListener(end, (event) => { if (this.#down === event.pointerId) this.#release(); });
    canvas.addEventListener('contextmenu', (event) => event.preventDefault());
    canvas.addEventListener('keydown', (event) => this.#key(event));
    canvas.addEventListener('keyup', (event) => {
      if (this.#down === 'key' && (event.key === 'Enter' || event.key === ' ')) this.#release();
    });
    canvas.addEventListener('focus', () => { if (canvas.matches(':focus-visible')) this.#showFinger(); });
    canvas.addEventListener('blur', () => {
      if (this.#down === 'key') this.#release();
      finger.hidden = true;
    });
  }

  // The picture as a PNG file of the reader's.
  save() {
    download('dash-camera.png', this.#canvas.toDataURL('image/png'));
  }

  // u16 count, then x, y, width, height and the pixels R, G, B, A of each rectangle.
  #paint(buffer) {
    const view = new DataView(buffer);
    let at = 2;
    for (let left = view.getUint16(0, true); left > 0; --left) {
      const [x, y, width, height] = [0, 2, 4, 6].map((offset) => view.getUint16(at + offset, true));
      at += 8;
      const size = width * height * 4;
      this.#context.putImageData(new ImageData(new Uint8ClampedArray(buffer, at, size), width, height), x, y);
      at += size;
    }
  }

  #spotOf({clientX, clientY}) {
    const box = this.#canvas.getBoundingClientRect();
    const inside = (value, size) => Math.min(Math.max(Math.floor(value), 0), size - 1);
    return {x: inside((clientX - box.left) * WIDTH / box.width, WIDTH),
            y: inside((clientY - box.top) * HEIGHT / box.height, HEIGHT)};
  }

  #press(event) {
    if (event.button !== 0 || this.#down !== null) return;
    this.#canvas.setPointerCapture(event.pointerId);
    this.#finger.hidden = true;
    this.#down = event.pointerId;
    this.#touch('press', this.#spotOf(event));
  }

  #move(event) {
    if (this.#down !== event.pointerId) return;
    const spot = this.#spotOf(event);
    if (spot.x !== this.#last.x || spot.y !== this.#last.y) this.#touch('press', spot);
  }

  #release() {
    this.#down = null;
    this.#touch('release');
  }

  #key(event) {
    const moves = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1]};
    const move = moves[event.key];
    const isPress = event.key === 'Enter' || event.key === ' ';
    if (!move && !isPress) return;
    event.preventDefault();
    if (move) {
      const step = event.shiftKey ? 1 : STEP;
      this.#spot.x = Math.min(Math.max(this.#spot.x + move[0] * step, 0), WIDTH - 1);
      this.#spot.y = Math.min(Math.max(this.#spot.y + move[1] * step, 0), HEIGHT - 1);
      if (this.#down === 'key') this.#touch('press', this.#spot);
    } else if (this.#down === null) {
      this.#down = 'key';
      this.#touch('press', this.#spot);
    }
    this.#showFinger();
  }

  #showFinger() {
    this.#finger.hidden = false;
    this.#finger.classList.toggle('down', this.#down === 'key');
    this.#finger.style.left = `${(this.#spot.x + 0.5) * 100 / WIDTH}%`;
    this.#finger.style.top = `${(this.#spot.y + 0.5) * 100 / HEIGHT}%`;
  }

  async #touch(action, spot = {}) {
    this.#last = spot;
    this.#finger.classList.toggle('down', this.#down === 'key');
    this.#fault.textContent = await this.#connection.ask('touch', {action, ...spot}) ?? '';
  }
}
