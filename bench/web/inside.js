// What a touch can hit: over the glass the areas of the screen on top, as the interface says them, and the last touches: where
// they were on the glass, and where a panel that is mounted askew lets the interface feel them.

import {remember, recall} from './memory.js';

const KEY = 'targets';
const TOUCHES = 8;
const FACTORY = {x: [-1.0638298, 0, 499.57446], y: [0.012088975, 1.1363636, -24.76789]};  // of ABS_Y, ABS_X and 1

const shapeOf = (name, attributes) => {
  const shape = document.createElementNS('http://www.w3.org/2000/svg', name);
  for (const [attribute, value] of Object.entries(attributes)) shape.setAttribute(attribute, value);
  return shape;
};

const feltOf = ({rawX, rawY}) => ({x: FACTORY.x[0] * rawY + FACTORY.x[2], y: FACTORY.y[0] * rawY + FACTORY.y[1] * rawX + FACTORY.y[2]});

export class Inside {
  #svg;
  #touches = [];  // newest first
  #areas = [];
  #isOn = recall(KEY) === 'on';

  // `svg` lies over the glass, 480 × 320; `button` shows it and hides it.
  constructor(connection, svg, button) {
    this.#svg = svg;
    connection.addEventListener('state', ({detail: {state}}) => {
      const areas = state.areas ?? [];
      if (JSON.stringify(areas) === JSON.stringify(this.#areas)) return;
      this.#areas = areas;
      this.#draw();
    });
    connection.addEventListener('log', ({detail: {entries}}) => {
      const news = entries.filter(({kind, name, rawX}) => kind === 'touch' && name === 'press' && rawX !== undefined);
      if (news.length === 0) return;
      this.#touches = [...news, ...this.#touches].slice(0, TOUCHES);
      this.#draw();
    });
    button.addEventListener('click', () => {
      this.#turn(button, !this.#isOn);
      remember(KEY, this.#isOn ? 'on' : 'off');
    });
    this.#turn(button, this.#isOn);
  }

  #turn(button, isOn) {
    this.#isOn = isOn;
    button.setAttribute('aria-pressed', String(isOn));
    this.#svg.toggleAttribute('hidden', !isOn);
    this.#draw();
  }

  #draw() {
    if (!this.#isOn) return;
    this.#svg.replaceChildren(...this.#areas.flatMap((area) => this.#areaOf(area)),
                              ...this.#touches.flatMap((touch, age) => this.#touchOf(touch, age)).reverse());
  }

  #areaOf({x, y, width, height, name}) {
    const area = shapeOf('rect', {x: x + 0.5, y: y + 0.5, width: Math.max(width - 1, 0), height: Math.max(height - 1, 0), class: 'area'});
    const title = shapeOf('title', {});
    title.textContent = name ?? '';
    area.append(title);
    return [area];
  }

  // A ring where the finger is, a dot where it is felt, and a line between them when these are two places.
  #touchOf(touch, age) {
    const felt = feltOf(touch);
    const at = touch.x === undefined ? felt : touch;
    const fade = {opacity: 1 - age / (TOUCHES + 1)};
    return [
      shapeOf('circle', {cx: felt.x, cy: felt.y, r: 3, class: 'felt', ...fade}),
      shapeOf('line', {x1: at.x, y1: at.y, x2: felt.x, y2: felt.y, ...fade}),
      shapeOf('circle', {cx: at.x, cy: at.y, r: 9, ...fade}),
    ];
  }
}
