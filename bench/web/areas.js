// The motion areas over the video: the cells in which a parked car's cameras look for movement.

const COLUMNS = 8, ROWS = 6;
const WIDTH = 60, HEIGHT = 53;  // of a cell, pixels of the LCD
const SMALL = {width: 150, height: 100};
const CORNERS = [[324, 214], [324, 6], [6, 6], [6, 214]];  // where the small picture stands

// "0000ffff..." has bit 47 - i for cell i.
const isOn = (map, cell) => (BigInt(`0x${map}`) >> BigInt(47 - cell) & 1n) === 1n;

function rectOf(cell) {
  const rect = document.createElementNS('http://www.w3.org/2000/svg', 'rect');
  const values = {x: cell % COLUMNS * WIDTH + 1, y: Math.floor(cell / COLUMNS) * HEIGHT + 1, width: WIDTH - 2, height: HEIGHT - 2};
  for (const [name, value] of Object.entries(values)) rect.setAttribute(name, value);
  return rect;
}

function gridOf(camera, map, transform = '') {
  const grid = document.createElementNS('http://www.w3.org/2000/svg', 'g');
  grid.dataset.camera = camera;
  grid.setAttribute('transform', transform);
  for (let cell = 0; cell < COLUMNS * ROWS; ++cell) {
    const rect = rectOf(cell);
    rect.classList.toggle('on', isOn(map, cell));
    grid.append(rect);
  }
  return grid;
}

// What lies over the video now; nothing where there is none.
function gridsOf({screen, video, recorder, lcd}) {
  if (screen !== 'PREVIEW' || !video || video.playing || lcd.backlight === 0) return [];
  const {front, rear} = recorder.motion;
  if (video.view === 'front') return [['front', front]];
  if (video.view === 'rear') return video.rearAlive ? [['rear', rear]] : [];
  const [x, y] = CORNERS[video.pipCorner];
  const place = `translate(${x} ${y}) scale(${SMALL.width / 480} ${SMALL.height / 320})`;
  return [['front', front], ...(video.rearAlive ? [['rear', rear, place]] : [])];
}

export class Areas {
  #shown = '';

  // `drawing` is the SVG over the LCD; `button` shows and hides it.
  constructor(connection, drawing, button) {
    connection.addEventListener('state', ({detail: {state}}) => this.#show(drawing, gridsOf(state)));
    button.addEventListener('click', () => {
      const on = button.getAttribute('aria-pressed') !== 'true';
      button.setAttribute('aria-pressed', String(on));
      drawing.toggleAttribute('hidden', !on);
    });
  }

  #show(drawing, grids) {
    const json = JSON.stringify(grids);
    if (json === this.#shown) return;
    this.#shown = json;
    drawing.replaceChildren(...grids.map((grid) => gridOf(...grid)));
  }
}
