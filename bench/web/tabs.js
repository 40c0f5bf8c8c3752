// A row of tabs: one of them is chosen, by click, or by the arrow keys, Home and End.

const KEYS = {ArrowRight: (at) => at + 1, ArrowLeft: (at) => at - 1, Home: () => 0, End: () => -1};

export class Tabs {
  #tabs;
  #show;

  // `list` has the tabs; `show` is told the one that is chosen, and its place.
  constructor(list, show) {
    this.#tabs = [...list.querySelectorAll('[role=tab]')];
    this.#show = show;
    for (const [at, tab] of this.#tabs.entries()) tab.addEventListener('click', () => this.choose(at));
    list.addEventListener('keydown', (event) => {
      const at = this.#tabs.indexOf(event.target);
      if (!KEYS[event.key] || at < 0) return;
      event.preventDefault();
      const next = (KEYS[event.key](at) + this.#tabs.length) % this.#tabs.length;
      this.#tabs[next].focus();
      this.choose(next);
    });
  }

  // The tab at this place.
  choose(at) {
    const chosen = this.#tabs[at];
    for (const tab of this.#tabs) tab.setAttribute('aria-selected', String(tab === chosen));
    this.#show(chosen, at);
  }
}
