// The scenarios of the bench: what each shows, and how far the one is that is played.

import {post} from './post.js';

const clockOf = (ms) => `${Math.floor(ms / 60000)}:${String(Math.floor(ms / 1000) % 60).padStart(2, '0')}`;

export class Scenarios {
  #list;
  #about;
  #how;
  #known = [];
  #now = null;

  // `place` has the list, the speed, the buttons, the bar and the words, each by its name.
  constructor(connection, place) {
    const find = (name) => place.querySelector(`[name=${name}]`);
    this.#list = find('scenario');
    this.#about = place.querySelector('.about');
    this.#how = {speed: find('speed'), play: find('play'), pause: find('pause'), stop: find('stop'), bar: place.querySelector('progress')};
    const {speed, play, pause, stop} = this.#how;
    play.addEventListener('click', () => this.#ask({play: this.#list.value, speed: Number(speed.value)}));
    pause.addEventListener('click', () => this.#ask({pause: !this.#now.paused}));
    stop.addEventListener('click', () => this.#ask({stop: true}));
    this.#list.addEventListener('change', () => this.#show());
    connection.follow((state) => {
      this.#now = state.scenario ?? null;
      this.#show();
    });
    this.#fetch();
  }

  async #fetch() {
    try {
      this.#known = await (await fetch('api/scenarios')).json();
    } catch {
      this.#about.textContent = 'The bench does not say which it has.';
    }
    this.#list.replaceChildren(...this.#known.map(({name, seconds}) => new Option(`${name} (${clockOf(seconds * 1000)})`, name)));
    this.#show();
  }

  async #ask(request) {
    const refusal = await post('scenario', request);
    if (refusal) this.#about.textContent = refusal;
  }

  #show() {
    const {pause, stop, bar} = this.#how;
    const now = this.#now;
    pause.disabled = stop.disabled = !now;
    pause.setAttribute('aria-pressed', String(now?.paused === true));
    bar.max = now?.of || 1;
    bar.value = now?.at ?? 0;
    const chosen = this.#known.find(({name}) => name === this.#list.value);
    const text = now ? `${now.name || 'A scenario'} · line ${now.line} of ${now.lines} · ${clockOf(now.at)} of ${clockOf(now.of)}${now.say ? ` · ${now.say}` : ''}`
                     : chosen?.title ?? '';
    if (this.#about.textContent !== text) this.#about.textContent = text;
  }
}
