// The language that the camera speaks: the switch, the question at first sight, and what the browser remembers.
import assert from 'node:assert/strict';
import {after, afterEach, before, beforeEach, test} from 'node:test';
import {openPage, startBench, startBrowser, until} from './camera.mjs';

let bench, browser, context;

before(async () => {
  [bench, browser] = await Promise.all([startBench(), startBrowser()]);
});
after(async () => {
  await browser?.close();
  await bench?.end();
});
beforeEach(async () => {
  if ((await bench.state()).interface.language !== 'ko') await speak('ko');
});
afterEach(async () => { await context?.close(); });

// Does it, and waits until the camera has been started again for it, once, in this language.
async function toSpeak(language, act) {
  const {starts} = (await bench.state()).interface;
  await act();
  const state = await until(async () => {
    const now = await bench.state();
    return now.interface.starts > starts && now.screen && now;
  }, `a camera that speaks ${language}`);
  assert.deepEqual([state.interface.starts, state.interface.language], [starts + 1, language]);
}
const speak = (language) => toSpeak(language, () => bench.post('action', {name: 'language', to: language}));

// A browser that has never been here, and prefers these languages.
async function browserOf(...languages) {
  context = await browser.newContext({viewport: {width: 1280, height: 800}});
  await context.addInitScript((list) => Object.defineProperty(navigator, 'languages', {get: () => list}), languages);
  return context;
}

const open = async (...languages) => openPage(await browserOf(...languages), bench);
const question = (page) => page.locator('#offer p');
const button = (page, name) => page.getByRole('button', {name});
const shows = (page, language) => page.waitForFunction((code) => document.getElementById('language').value === code, language);

test('a browser that prefers Korean is asked nothing', async () => {
  const page = await open('ko-KR', 'en-US');
  await shows(page, 'ko');
  assert.equal(await question(page).count(), 0);
  assert.deepEqual(page.complaints, []);
});

test('the switch has the languages of the camera, each by its own name', async () => {
  const page = await open('ko');
  await shows(page, 'ko');
  const {actions} = await (await fetch(`${bench.url}api/actions`)).json();
  const {choices} = actions.find(({name}) => name === 'language').arguments[0];
  const options = await page.getByLabel('Camera speaks').locator('option').evaluateAll(
    (list) => list.map(({value, lang, text}) => ({value, lang, text})));
  assert.deepEqual(options.map(({value}) => value), choices);
  assert.deepEqual(options[0], {value: 'ko', lang: 'ko', text: '한국어'});
  assert.deepEqual(options.find(({value}) => value === 'en'), {value: 'en', lang: 'en', text: 'English'});
});

test('by keyboard the camera learns another language, and the browser remembers it', async () => {
  const page = await open('ko');
  await shows(page, 'ko');
  await page.getByLabel('Camera speaks').focus();
  await toSpeak('en', () => page.keyboard.press('ArrowDown'));
  await page.locator('#seen', {hasText: 'PREVIEW'}).waitFor();

  // Whoever changes it elsewhere is not contradicted, but the page that is opened anew is this browser's.
  await speak('ko');
  await shows(page, 'ko');
  assert.equal((await bench.state()).interface.language, 'ko');
  await toSpeak('en', () => page.reload());
  await shows(page, 'en');
  assert.equal(await question(page).count(), 0);
  assert.deepEqual(page.complaints, []);
});

test('a browser of another language is asked once, and shows the camera in English', async () => {
  const page = await open('en-GB', 'ko');
  await question(page).waitFor();
  assert.equal(await question(page).textContent(), 'The camera speaks Korean. Show it in English?');
  await button(page, 'Show in English').focus();
  await toSpeak('en', () => page.keyboard.press('Enter'));
  await shows(page, 'en');
  assert.equal(await question(page).count(), 0);
  assert.equal(await page.evaluate(() => document.activeElement.id), 'language');
  await speak('ko');
  await toSpeak('en', () => page.reload());
  assert.equal(await question(page).count(), 0);
  assert.deepEqual(page.complaints, []);
});

test('whoever keeps Korean is not asked again', async () => {
  const page = await open('en');
  const {starts} = (await bench.state()).interface;
  await button(page, 'Keep Korean').click();
  assert.equal(await question(page).count(), 0);
  await page.reload();
  await shows(page, 'ko');
  assert.equal(await question(page).count(), 0);
  const {language, starts: now} = (await bench.state()).interface;
  assert.deepEqual([language, now], ['ko', starts]);
});

for (const [languages, wanted] of [[['fr-FR', 'ko', 'en'], null], [['fr', 'en-US', 'ko'], 'English'], [['fr'], 'English'], [[], 'English']])
  test(`of ${languages.join(', ') || 'no language'} the first that the camera speaks counts: ${wanted}`, async () => {
    const page = await open(...languages);
    await shows(page, 'ko');
    assert.deepEqual(await question(page).allTextContents(), wanted ? [`The camera speaks Korean. Show it in ${wanted}?`] : []);
  });

test('a Korean before an English camera is asked the other way round, and its answer may come by the switch', async () => {
  await speak('en');
  const page = await open('ko-KR');
  await question(page).waitFor();
  assert.equal(await question(page).textContent(), 'The camera speaks English. Show it in Korean?');
  await toSpeak('ko', () => page.getByLabel('Camera speaks').selectOption('한국어'));
  await question(page).waitFor({state: 'detached'});
});

test('a question that has come to nothing goes', async () => {
  const page = await open('en');
  await question(page).waitFor();
  await speak('en');
  await question(page).waitFor({state: 'detached'});
});

test('nothing on the page moves for the question', async () => {
  const boxes = async (page) => JSON.stringify(
    await Promise.all(['header', '#lcd', '#log', '#work', '#connection'].map((place) => page.locator(place).boundingBox())));
  const restingBoxes = async (page) => {
    for (let last = ''; ; await page.waitForTimeout(500)) {
      const now = await boxes(page);
      if (now === last) return now;
      last = now;
    }
  };
  const plain = await open('ko');
  await shows(plain, 'ko');
  const before = await restingBoxes(plain);
  await context.close();
  const asking = await open('en');
  await question(asking).waitFor();
  assert.equal(await restingBoxes(asking), before);
});

test('what the bench refuses is said, is not remembered, and the switch goes back', async () => {
  const refusing = await browserOf('ko');
  await refusing.routeWebSocket(/\/ws$/, (page) => {
    const server = page.connectToServer();
    page.onMessage((text) => {
      const {id, name} = JSON.parse(text);
      if (name !== 'language') return server.send(text);
      page.send(JSON.stringify({type: 'answer', id, status: 409, error: 'A recording is being replayed.'}));
    });
  });
  const page = await openPage(refusing, bench);
  await shows(page, 'ko');
  await page.getByLabel('Camera speaks').selectOption('en');
  await page.locator('#fault', {hasText: 'A recording is being replayed.'}).waitFor();
  await shows(page, 'ko');
  assert.equal(await page.evaluate(() => localStorage.length), 0);
});

test('a browser that may not remember anything works all the same', async () => {
  const forgetful = await browserOf('en');
  await forgetful.addInitScript(() => Object.defineProperty(window, 'localStorage', {get() { throw new DOMException('no', 'SecurityError'); }}));
  const page = await openPage(forgetful, bench);
  await toSpeak('en', () => button(page, 'Show in English').click());
  await question(page).waitFor({state: 'detached'});
  assert.deepEqual(page.complaints, []);
});

test('a bench that comes back is told what this browser has chosen', async () => {
  const first = await startBench();
  const page = await openPage(await browserOf('ko'), first);
  await shows(page, 'ko');
  await page.getByLabel('Camera speaks').selectOption('en');
  await shows(page, 'en');
  await until(async () => (await first.state()).interface.language === 'en', 'English');
  await first.end();
  const second = await startBench(first.port);
  try {
    await until(async () => (await second.state()).interface.language === 'en', 'English again');
  } finally {
    await second.end();
  }
});
