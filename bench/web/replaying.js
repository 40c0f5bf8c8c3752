// A replay that this bench plays: how far it is; it can be held, and played input by input.

import {post} from './post.js';

export class Replaying {
  constructor(connection, place) {
    const [text, bar] = [place.querySelector('p'), place.querySelector('progress')];
    const [pause, step] = ['pause', 'step'].map((name) => place.querySelector(`[name=${name}]`));
    pause.addEventListener('click', () => post('replay/control', {pause: pause.getAttribute('aria-pressed') !== 'true'}));
    step.addEventListener('click', () => post('replay/control', {step: true}));
    connection.addEventListener('state', ({detail: {state: {replaying}}}) => {
      place.hidden = !replaying;
      if (!replaying) return;
      const {next, of, ms, paused} = replaying;
      text.textContent = `A recording is replayed · input ${next} of ${of} · ${(ms / 1000).toFixed(1)} s`;
      bar.max = of || 1;
      bar.value = next;
      pause.setAttribute('aria-pressed', String(paused));
    });
  }
}
