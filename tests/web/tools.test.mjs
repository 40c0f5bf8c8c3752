// What lies below the device and over it: subtitles, touch targets, latency, saved states, recordings, links to the documents.
import assert from 'node:assert/strict';
import {readFile} from 'node:fs/promises';
import {test} from 'node:test';
import {bench, browser, openTab, page, tapOn, until, useCamera} from './camera.mjs';

useCamera();

const seen = (screen) => page.locator('#seen', {hasText: screen}).waitFor();
const back = async () => {
  await bench.post('action', {name: 'powerKey'});  // off, and on again: the live view
  await bench.post('action', {name: 'powerKey'});
};

test('what the recorder says is a subtitle, for a while', async () => {
  assert.equal(await page.locator('#voice').textContent(), '');
  await bench.post('action', {name: 'shock'});
  await until(async () => (await page.locator('#voice').textContent()) !== '', 'a subtitle');
  const said = await page.locator('#voice').textContent();
  assert.ok((await bench.log()).some(({kind, name}) => kind === 'voice' && name === said));
  await page.waitForFunction((text) => document.querySelector('#voice').textContent !== text, said);
});

test('the touch targets of the screen and the last touches lie over the glass', async () => {
  await page.locator('#targets').click();
  await tapOn(page, 265, 33);
  await seen('MAINMENU');
  const areas = await until(async () => {
    const now = (await bench.state()).areas;
    return now?.length > 5 && now;
  }, 'the areas of the menu');
  const drawn = () => page.locator('#inside rect').evaluateAll((all) => all.map((rect) => rect.textContent));
  await until(async () => (await drawn()).join() === areas.map(({name}) => name).join(), 'its areas, drawn');
  const rings = () => page.locator('#inside circle').evaluateAll((all) => all.map((circle) => [Number(circle.getAttribute('cx')), Number(circle.getAttribute('cy'))]));
  const near = ([x, y], spot) => Math.hypot(x - spot[0], y - spot[1]) < 3;
  await until(async () => (await rings()).filter((place) => near(place, [265, 33])).length === 2, 'the touch: where it was and is felt');
  await bench.post('action', {name: 'panelAskew', skew: 5, x: -30, y: 50, noise: 0});
  await bench.post('touch', {action: 'tap', x: 400, y: 60});
  await until(async () => (await rings()).some((place) => near(place, [400, 60])), 'the ring');
  const felt = (await rings()).filter((place) => !near(place, [400, 60]) && !near(place, [265, 33]));
  assert.ok(felt.some(([x, y]) => Math.abs(x - 400) > 15 && y > 80), `felt at ${felt}`);
  await bench.post('action', {name: 'panelStraight'});
  await page.locator('#targets').click();
  assert.equal(await page.locator('#inside').isVisible(), false);
  await bench.post('action', {name: 'interfaceRestart'});
  await seen('PREVIEW');
});

test('the latency of a touch is measured, by a key', async () => {
  await page.keyboard.press('m');
  await tapOn(page, 40, 33);
  await page.locator('#latencies td', {hasText: / ms$/}).first().waitFor();
  await page.locator('#latency-text', {hasText: 'ms to pixels'}).waitFor();
  const {last, touches} = await (await fetch(`${bench.url}api/latency`)).json();
  assert.ok(last.pixels > 0 && touches > 0);
  await page.keyboard.press('m');
  assert.equal(await page.locator('#latencies').isVisible(), false);
});

test('a state of the camera is saved, gone back to, and removed', async () => {
  await bench.post('action', {name: 'speed', kmh: 71});
  await openTab(page, 'Saved states');
  await page.locator('#snapshots input').fill('at 71');
  await page.locator('#snapshots form button').first().click();
  await page.locator('#snapshots li', {hasText: 'at 71'}).waitFor();
  await bench.post('action', {name: 'speed', kmh: 12});
  const {starts} = (await bench.state()).interface;
  await page.getByRole('button', {name: 'Go back: at 71'}).click();
  await until(async () => {
    const state = await bench.state();
    return state.interface.starts > starts && state.recorder?.speed === 71 && state.screen === 'PREVIEW';
  }, 'the camera as it was', 30000);
  await page.locator('#snapshots input').fill('at 71');
  await page.locator('#snapshots form button').first().click();
  await page.locator('#snapshots .refusal', {hasText: '.'}).waitFor();  // there is one of that name
  assert.match(page.complaints.pop(), /409/);  // the browser says so, too
  await page.getByRole('button', {name: 'Remove: at 71'}).click();
  await until(async () => await page.locator('#snapshots li').count() === 0, 'no saved state');
  await bench.post('action', {name: 'speed', kmh: 0});
});

test('what is done is recorded, taken home, looked through and replayed without a difference', async () => {
  await page.locator('#record').click();
  await page.locator('#record', {hasText: 'Stop recording'}).waitFor();
  await until(async () => (await bench.state()).screen === 'PREVIEW', 'the camera on again', 30000);
  await bench.post('action', {name: 'speed', kmh: 50});
  await until(async () => (await bench.state()).record?.inputs > 0, 'an input');
  await page.locator('#hint', {hasText: 'The keys are hidden.'}).waitFor();  // so that the replay takes a while, too
  await page.waitForTimeout(1000);  // the keys go a moment earlier or later each time, and a touch beside them hides them
  await tapOn(page, 300, 200);
  await page.locator('#hint', {hasText: /^$/}).waitFor({state: 'attached'});
  await tapOn(page, 265, 33);
  await seen('MAINMENU');
  await page.locator('#recordings .recorded', {hasText: 'inputs'}).waitFor();
  await page.locator('#record').click();
  await page.locator('#record', {hasText: /^Record$/}).waitFor();
  const [download] = await Promise.all([page.waitForEvent('download'), page.locator('#recordings a[download]').click()]);
  const text = await readFile(await download.path(), 'utf8');
  assert.equal(JSON.parse(text.split('\n')[0]).version, 1);

  await page.locator('#recordings [name=fast]').uncheck();
  await page.locator('#recordings [name=file]').setInputFiles({name: 'mine.jsonl', mimeType: 'application/jsonl', buffer: Buffer.from(text)});
  await page.locator('#recordings .step', {hasText: /^1 of \d+ · /}).waitFor();
  await page.locator('#recordings [name=step]').focus();
  await page.keyboard.press('End');
  await page.locator('#recordings .step', {hasText: 'end'}).waitFor();
  const link = page.locator('#recordings .result a', {hasText: 'watch it'});
  await link.waitFor({timeout: 30000});
  const watched = await browser.newPage();
  await watched.goto(await link.getAttribute('href'));
  await watched.locator('#replaying p', {hasText: 'A recording is replayed'}).waitFor();
  await watched.close();
  await page.locator('#recordings .result p', {hasText: /difference/}).waitFor({timeout: 60000});
  const result = await page.locator('#recordings .result').innerText();
  assert.match(result, /no difference/, result);

  await page.locator('#recordings [name=file]').setInputFiles({name: 'no.jsonl', mimeType: 'application/jsonl', buffer: Buffer.from('{}\n')});
  await page.locator('#recordings .refusal', {hasText: 'no.jsonl is no recording of use.'}).waitFor();
  await back();
});

test('a scenario is played, held and ended; the tour ends at a touch', async () => {
  await openTab(page, 'Scenarios');
  await page.locator('#scenarios option', {hasText: 'drive'}).waitFor({state: 'attached'});
  await page.locator('#scenarios [name=scenario]').selectOption('drive');
  await page.locator('#scenarios .about', {hasText: '.'}).waitFor();  // what it shows
  await page.locator('#scenarios [name=speed]').selectOption('10');
  await page.locator('#scenarios [name=play]').click();
  await page.locator('#scenarios .about', {hasText: /^drive · line \d+ of \d+/}).waitFor();
  await page.locator('#scenarios [name=pause]').click();
  await until(async () => (await bench.state()).scenario?.paused, 'the pause');
  await page.locator('#scenarios [name=stop]').click();
  await until(async () => (await bench.state()).scenario === null, 'its end');
  await page.locator('#tour').click();
  await page.locator('#voice', {hasText: 'Welcome.'}).waitFor();
  await until(async () => (await bench.state()).screen === 'PREVIEW', 'the camera on again', 30000);
  await tapOn(page, 300, 200);
  await until(async () => (await bench.state()).scenario === null, 'the end of the tour');
  await page.waitForFunction(() => document.querySelector('#voice').textContent === '');
});

test('every question mark leads to a paragraph, the name of the screen to its pictures', async () => {
  const links = await page.locator('.help').evaluateAll((all) => all.map(({href}) => href));
  assert.equal(links.length, await page.locator('#controls details').count());
  const text = await (await fetch(new URL('docs/bench', bench.url))).text();
  for (const link of links) {
    assert.equal(new URL(link).pathname, '/docs/bench');
    assert.ok(text.includes(`id="${new URL(link).hash.slice(1)}"`), link);
  }
  assert.equal(await page.locator('#seen a').getAttribute('href'), 'gallery#PREVIEW');
});
