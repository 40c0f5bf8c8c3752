// First sight: who opens the page finds a living picture with its keys, and what is dark or hidden says how it comes back.

const LOOK = 400;  // ms between two looks at the picture
const KEY_EDGE = [[8, 10], [70, 10], [8, 56]];  // of the first key of the preview, x and y on the LCD: its dark plate
const DARK = 60;   // of 255: the plate is darker, by day and by night

export class Sight {
  #connection;
  #context;
  #state = null;
  #hasPicture = false;
  #isNew = true;  // nobody has been woken yet

  // `hint` lies over the glass of `canvas`; `light` is the record light.
  constructor(connection, canvas, hint, light) {
    this.#connection = connection;
    this.#context = canvas.getContext('2d');
    connection.addEventListener('state', ({detail: {state}}) => {
      this.#state = state;
      const isOn = state.video?.recording === true;
      light.classList.toggle('on', isOn);
      light.setAttribute('aria-label', isOn ? 'Recording' : 'Not recording');
      light.title = light.ariaLabel;
      this.#look(hint);
    });
    connection.addEventListener('picture', () => {
      this.#hasPicture = true;
      if (this.#isNew) this.#look(hint);
    });
    // Who has touched the device himself is woken no more: he may just have switched its LCD off.
    for (const deed of ['pointerdown', 'keydown']) canvas.closest('.device').addEventListener(deed, () => { this.#isNew = false; }, {once: true, capture: true});
    setInterval(() => this.#look(hint), LOOK);
  }

  #look(hint) {
    if (!this.#state || !this.#hasPicture || document.hidden) return;
    const isDark = this.#state.interface.running && this.#state.lcd.backlight === 0;
    const areHidden = !isDark && this.#keysAreHidden();
    const text = isDark ? 'The LCD sleeps. A click wakes it.' : areHidden ? 'The keys are hidden. A click brings them back.' : '';
    if (hint.textContent !== text) hint.textContent = text;
    hint.classList.toggle('dark', isDark);
    if (this.#isNew && this.#state.screen) {
      this.#isNew = false;
      if (text !== '') this.#connection.ask('touch', {action: 'tap', x: 240, y: 160});  // during a replay it is refused: nothing is lost
    }
  }

  // On the live preview the keys go after some seconds, and with them the dark plate of the first one.
  #keysAreHidden() {
    const {screen, boxes, video, recorder} = this.#state;
    if (screen !== 'PREVIEW' || boxes.own || boxes.event || !video || video.playing || typeof recorder?.update === 'number') return false;
    return KEY_EDGE.some(([x, y]) => {
      const [r, g, b] = this.#context.getImageData(x, y, 1, 1).data;
      return Math.max(r, g, b) > DARK;
    });
  }
}
