// The log against a bench that is played by the test: what it says over the WebSocket is chosen here.
import assert from 'node:assert/strict';
import {after, before, beforeEach, afterEach, test} from 'node:test';
import {startBench, startBrowser} from './camera.mjs';

let bench, browser, page, socket;

before(async () => { [bench, browser] = await Promise.all([startBench(), startBrowser()]); });
after(async () => {
  await browser?.close();
  await bench?.end();
});
beforeEach(async () => {
  page = await browser.newPage({viewport: {width: 1280, height: 800}});
  page.setDefaultTimeout(10000);
  page.complaints = [];
  page.on('console', (message) => { if (message.type() === 'error') page.complaints.push(message.text()); });
  page.on('pageerror', (error) => page.complaints.push(error.message));
  await page.routeWebSocket(/\/ws$/, (opened) => { socket = opened; });
  await page.goto(bench.url);
  await page.locator('#connection[data-state=open]').waitFor();
});
afterEach(async () => {
  await page.close();
  assert.deepEqual(page.complaints, []);
});

const entryOf = (number, more = {}) => ({number, time: 1000 * number, kind: 'note', name: `Note ${number}.`, ...more});
const range = (first, last, more) => Array.from({length: last - first + 1}, (_, i) => entryOf(last - i, more));
const tell = (entries) => socket.send(JSON.stringify({type: 'log', entries}));
const newest = (text) => page.locator('#log li:first-child', {hasText: text}).waitFor();
const rows = () => page.locator('#log li').allTextContents();

test('entries that never came are told, where they are missing', async () => {
  tell(range(1, 3));
  tell(range(8, 9));
  await newest('Note 9.');
  const texts = (await rows()).map((row) => row.replace(/^\S+ note /, '').trim());
  assert.deepEqual(texts, ['Note 9.', 'Note 8.', '4 entries are not here', 'Note 3.', 'Note 2.', 'Note 1.']);
});

test('what comes twice is shown once', async () => {
  tell(range(1, 5));
  tell(range(1, 6));  // a connection anew
  await newest('Note 6.');
  assert.equal((await rows()).length, 6);
});

test('another bench has another log', async () => {
  tell(range(1, 20));
  tell(range(1, 4, {time: 5}));
  await newest('Note 4.');
  assert.equal((await rows()).length, 4);
  tell(range(1, 30, {time: 7}));  // one that has already said more than the last
  await newest('Note 30.');
  assert.equal((await rows()).length, 30);
});

test('there are no more rows than a person would read, and what was filtered out leaves them room', async () => {
  tell(range(1, 400));
  await newest('Note 400.');
  assert.equal((await rows()).length, 300);
  tell(range(401, 1200, {kind: 'diagnostic'}));
  tell([entryOf(1201)]);
  await newest('Note 1201.');
  assert.equal(await page.locator('#log li', {hasText: 'Note 400.'}).count(), 1);
  await page.locator('#kinds label', {hasText: 'diagnostic'}).locator('input').check();
  await page.locator('#log li[data-kind=diagnostic]').first().waitFor();
  assert.equal((await rows()).length, 300);
});

test('a pause holds the rows still, whatever is filtered, and says how many wait', async () => {
  tell(range(1, 3));
  await newest('Note 3.');
  await page.locator('#pause').click();
  tell([entryOf(5, {kind: 'touch', name: 'press', x: 40, y: 33, rawX: 12, rawY: 34}), entryOf(4)]);
  await page.locator('#pause', {hasText: '2 new'}).waitFor();
  await page.locator('#kinds label', {hasText: 'touch'}).locator('input').uncheck();
  await page.locator('#pause', {hasText: '1 new'}).waitFor();
  assert.equal((await rows()).length, 3);
  await page.locator('#pause').click();
  await newest('Note 4.');
  assert.equal(await page.locator('#pause').textContent(), 'Pause');
  await page.locator('#kinds label', {hasText: 'touch'}).locator('input').check();
  await newest('at 40, 33 · panel 12, 34');
});

test('every kind says its name, value and result', async () => {
  tell([
    entryOf(6, {kind: 'command', name: 'SFIELD_GET_VOLTAGE', field: 8659, answer: 12.340000152587891, result: 0}),
    entryOf(5, {kind: 'command', name: 'SFIELD_SET_ENV', field: 8658, data: '00c8', result: -1}),
    entryOf(4, {kind: 'action', name: 'speed', arguments: {kmh: 301}, result: -1, error: 'Too fast.'}),
    entryOf(3, {kind: 'event', name: 'RECV_ZEL_STATUS_SPEED', event: 24, value: 87, result: 0}),
    entryOf(2, {kind: 'touch', name: 'release', rawX: 0, rawY: 0}),
    entryOf(1, {kind: 'shell', name: 'sync'}),
  ]);
  await page.locator('#kinds label', {hasText: 'query'}).locator('input').check();
  await newest('SFIELD_GET_VOLTAGE');
  assert.deepEqual((await rows()).map((row) => row.slice(row.indexOf(' ') + 1).trim()), [
    'query SFIELD_GET_VOLTAGE field 8659 · answer 12.34',
    'command SFIELD_SET_ENV field 8658 · data 00c8 · result -1',
    'action speed kmh 301 · result -1 · refused: Too fast.',
    'event RECV_ZEL_STATUS_SPEED event 24 · value 87',
    'touch release panel 0, 0',
    'shell sync',
  ]);
});

test('a text is shown as it is, never as a part of the page', async () => {
  const text = '<img src=x onerror="document.title=1"><script>document.title=2</script>';
  tell([entryOf(1, {name: text, arguments: {[text]: text}, error: text})]);
  const state = {screen: text, boxes: {own: {id: 1, name: text}, event: null}, root: text, log: 1, video: null, recorder: null,
                 interface: {running: true, starts: 1, ended: text}, lcd: {live: true, backlight: 0, width: 480, height: 320},
                 touch: {down: false}, panel: {skew: 0, x: 0, y: 0, noise: 0}};
  socket.send(JSON.stringify({type: 'state', state}));
  await newest(text);
  await page.locator('#seen', {hasText: text}).waitFor();
  assert.equal(await page.locator('main img, main script').count(), 0);
  assert.equal(await page.title(), 'Dash camera');
});
