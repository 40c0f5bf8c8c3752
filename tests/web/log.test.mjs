// The log against a bench that is played by the test: what it says over the WebSocket is chosen here.
import assert from 'node:assert/strict';
import {readFile} from 'node:fs/promises';
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
  assert.deepEqual((await rows()).map((row) => row.slice(row.indexOf(' ') + 1).replace(/ +/g, ' ').trim()), [
    'query SFIELD_GET_VOLTAGE field 8659 · answer 12.34',
    'action speed kmh 301 refused: Too fast.',
    'command SFIELD_SET_ENV 1000 ms data 00c8 refused, -1',  // of the action before it
    'event RECV_ZEL_STATUS_SPEED event 24 · value 87',
    'touch release panel 0, 0',
    'shell sync',
  ]);
});

const touch = (number, time, name, x, y) => entryOf(number, {kind: 'touch', name, time, ...(x !== undefined && {x, y}), rawX: 49, rawY: 220});
const texts = async () => (await rows()).map((row) => row.replace(/^\S+ /, '').replace(/ +/g, ' ').trim());

test('what follows from a touch stands below it, and it is called what it was', async () => {
  tell([entryOf(5, {kind: 'touch', name: 'release', time: 5060}),
        entryOf(4, {kind: 'screen', name: 'screen MAINMENU', time: 5013}),
        entryOf(3, {kind: 'command', name: 'SFIELD_SET_REC_STOP', field: 8581, value: 3, result: 0, time: 5012}),
        touch(2, 5000, 'press', 265, 33), entryOf(1)]);
  await newest('MAINMENU 13 ms');
  assert.deepEqual(await texts(), ['touch tap MAINMENU 13 ms at 265, 33 · panel 49, 220', 'command SFIELD_SET_REC_STOP 12 ms value 3',
                                   'screen screen MAINMENU 13 ms', 'note Note 1.']);
  tell([touch(9, 10700, 'release'), touch(8, 10200, 'move', 40, 50), touch(7, 10100, 'move', 30, 40), touch(6, 10000, 'press', 20, 30)]);
  await newest('drag');
  assert.deepEqual((await texts()).slice(0, 2), ['touch drag at 20, 30 · panel 49, 220', 'touch move 200 ms at 40, 50 · panel 49, 220']);
  tell([touch(11, 23000, 'release'), touch(10, 20000, 'press', 20, 30)]);
  await newest('hold 3.0 s');
  tell([entryOf(13, {kind: 'command', name: 'SFIELD_SET_ENV', time: 24000, result: 0}), entryOf(12, {time: 23500})]);
  await newest('SFIELD_SET_ENV');  // too late for the touch: by itself
});

test('an action stands above what it did, though it is logged after it', async () => {
  tell([entryOf(3, {kind: 'action', name: 'speed', arguments: {kmh: 87}, result: 0, time: 3005}),
        entryOf(2, {kind: 'event', name: 'RECV_ZEL_STATUS_SPEED', event: 24, value: 87, result: 0, time: 3004}), entryOf(1)]);
  await newest('speed');
  assert.deepEqual(await texts(), ['action speed kmh 87', 'event RECV_ZEL_STATUS_SPEED 0 ms value 87', 'note Note 1.']);
});

test('the log is searched, a refusal is marked', async () => {
  tell([entryOf(3, {kind: 'action', name: 'speed', arguments: {kmh: 301}, result: -1, error: 'Too fast.'}),
        entryOf(2, {kind: 'diagnostic', name: 'a hidden line'}), entryOf(1)]);
  await newest('speed');
  assert.equal(await page.locator('#log li.refused').count(), 1);
  await page.locator('#find-log').fill('refused fast');
  await page.waitForFunction(() => document.querySelectorAll('#log li').length === 1);
  await newest('speed');
  await page.locator('#find-log').fill('hidden LINE');
  await newest('a hidden line');
  await page.locator('#find-log').fill('');
  await newest('speed');
  assert.equal((await rows()).length, 2);
});

const saved = async (button) => {
  const [download] = await Promise.all([page.waitForEvent('download'), page.locator(button).click()]);
  return (await readFile(await download.path(), 'utf8')).trim().split('\n').map((line) => JSON.parse(line));
};

test('what was done is a command of the shell, and a scenario', async () => {
  tell([entryOf(4, {kind: 'action', name: 'speed', arguments: {kmh: 87}, result: 0, time: 9005}),
        entryOf(3, {kind: 'event', name: 'RECV_ZEL_STATUS_SPEED', event: 24, value: 87, result: 0, time: 9004}),
        touch(2, 5100, 'release'), touch(1, 5000, 'press', 265, 33)]);
  await page.locator('#curl', {hasText: `curl -s ${bench.url}api/action -d '{"name":"speed","kmh":87}'`}).waitFor();
  await page.locator('#log a', {hasText: ':05.000'}).click();
  await page.locator('#curl', {hasText: `curl -s ${bench.url}api/touch -d '{"action":"tap","x":265,"y":33,"ms":100}'`}).waitFor();
  assert.equal(new URL(page.url()).hash, '#log-1');
  assert.deepEqual(await saved('#save-scenario'), [{ms: 0, touch: {action: 'tap', x: 265, y: 33, ms: 100}}, {ms: 4005, action: 'speed', kmh: 87}]);
  assert.deepEqual((await saved('#save-log')).map(({number}) => number), [1, 2, 3, 4]);
});

test('a link leads to an entry, a screen, a control', async () => {
  tell([entryOf(3, {kind: 'screen', name: 'screen LIST'}), entryOf(2, {kind: 'screen', name: 'screen MAINMENU'}), entryOf(1)]);
  await newest('LIST');
  const marked = () => page.locator('#log li[aria-current]').getAttribute('data-number');
  const open = (hash) => page.evaluate((text) => { location.hash = text; }, hash);
  await open('#log-1');
  await page.locator('#log li[aria-current]', {hasText: 'Note 1.'}).waitFor();
  await page.locator('#log li[aria-current] a').click();  // once more: the mark goes
  await page.waitForFunction(() => !document.querySelector('#log li[aria-current]'));
  await open('#screen-MAINMENU');
  await page.locator('#log li[aria-current]', {hasText: 'MAINMENU'}).waitFor();
  assert.equal(await marked(), '2');
  await open('#action-interfaceKill');
  await page.waitForFunction(() => document.activeElement?.closest('form')?.dataset.action === 'interfaceKill');
  assert.ok(await page.locator('form[data-action=interfaceKill]').isVisible());
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
