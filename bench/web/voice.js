// What the recorder says, and what a scenario says of itself: as a subtitle below the LCD, as long as one reads it.

const LEAST = 2500, A_LETTER = 70;  // ms

export class Voice {
  #place;
  #timer = 0;
  #told = null;  // by the scenario that is played

  constructor(connection, place) {
    this.#place = place;
    let last = null;  // the number of the newest entry that was heard of
    connection.addEventListener('log', ({detail: {entries}}) => {
      const said = last === null ? undefined : entries.find(({kind, number}) => kind === 'voice' && number > last);
      last = entries[0]?.number ?? last;
      if (said && this.#told === null) this.#say(said.name, true);
    });
    connection.addEventListener('state', ({detail: {state}}) => {
      const told = state.scenario?.say ?? null;
      if (told === this.#told) return;
      this.#told = told;
      this.#say(told ?? '', false);
    });
  }

  #say(text, isVoice) {
    this.#place.textContent = text;
    this.#place.classList.toggle('spoken', isVoice);
    clearTimeout(this.#timer);
    if (isVoice) this.#timer = setTimeout(() => { this.#place.textContent = ''; }, Math.max(LEAST, text.length * A_LETTER));
  }
}
