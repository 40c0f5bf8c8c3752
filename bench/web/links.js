// Places of the page that a link leads to: #log-17 an entry of the log, #screen-MAINMENU the last time that this screen was
// there, #action-speed a control.

export class Links {
  #log;
  #controls;

  // `list`: the log's rows, whose times are links; a second click takes the mark away.
  constructor(log, list, controls) {
    this.#log = log;
    this.#controls = controls;
    addEventListener('hashchange', () => this.#go());
    log.addEventListener('news', () => this.#go(), {once: true});
    controls.addEventListener('made', () => this.#go(), {once: true});
    list.addEventListener('click', (event) => {
      const link = event.target.closest('a');
      if (!link || link.hash !== location.hash) return;
      event.preventDefault();
      this.leave();
    });
  }

  // To no place in particular.
  leave() {
    history.replaceState(null, '', location.pathname);
    this.#log.mark(null);
  }

  #go() {
    const [, kind, name] = location.hash.match(/^#(log|screen|action)-(\w+)$/) ?? [];
    if (kind === 'log') this.#log.mark(Number(name));
    if (kind === 'screen') this.#log.mark(this.#log.newest((entry) => entry.kind === 'screen' && entry.name === `screen ${name}`)?.number ?? null);
    if (kind === 'action') this.#controls.show(name);
  }
}
