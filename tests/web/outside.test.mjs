// What the page shows beside the LCD: front LED, motion areas, touch panel.
import assert from 'node:assert/strict';
import {readFile, writeFile} from 'node:fs/promises';
import {after, before, test} from 'node:test';
import {openPage, openTab, startBench, startBrowser, tapOn, until} from './camera.mjs';

let bench, browser, page, root;

before(async () => {
  [bench, browser] = await Promise.all([startBench(), startBrowser()]);
  ({root} = await bench.state());
  page = await openPage(browser, bench);
});
after(async () => {
  await browser?.close();
  await bench?.end();
});

const tap = (x, y) => tapOn(page, x, y);

// The recorder starts with other settings: {"motionmap/front_l": 5}.
async function startWith(settings) {
  const ini = `${root}/tmp/config_init.ini`;
  let text = await readFile(ini, 'utf8');
  for (const [name, value] of Object.entries(settings))
    text = text.replace(new RegExp(`^${name.split('/')[1]}=.*$`, 'm'), `${name.split('/')[1]}=${value}`);
  await writeFile(ini, text);
  await bench.post('action', {name: 'recorderRestart'});
}

// The patterns with these numbers are ticked, and no other.
async function tick(...numbers) {
  const list = await readFile(`${root}/opt/led.zel`);
  for (let i = 0; i < list[0]; ++i) list[4 + 155 * i] = numbers.includes(i) ? 1 : 0;
  await writeFile(`${root}/opt/led.zel`, list);
}

const dots = () => page.evaluate(() => {
  const led = document.getElementById('led');
  return Array.from(led.getContext('2d').getImageData(0, 0, led.width, led.height).data).join();
});
const says = (text) => page.locator('#led-text', {hasText: text}).waitFor();

test('the front LED runs through the ticked patterns, one after the other', async () => {
  await says('Front LED: off');
  const dark = await dots();
  await tick(1, 4);
  await startWith({'ledsetting/settingchange': 1});
  await says('Korvo Black');
  const first = await until(async () => {
    const now = await dots();
    return now !== dark && now;
  }, 'a column');
  await until(async () => ![dark, first].includes(await dots()), 'the next column');
  await says('초보운전');
  await says('Korvo Black');
  await startWith({'ledsetting/settingchange': 0});
  await says('Front LED: off');
  assert.equal(await dots(), dark);
});

test('a ticked security pattern is alone', async () => {
  await tick(0, 1);
  await startWith({'ledsetting/settingchange': 2});
  await says('Security LED');
  assert.deepEqual((await bench.state()).recorder.frontLed.entries.map(({name}) => name), ['Security LED']);
  await startWith({'ledsetting/settingchange': 0});
});

test('the motion areas lie over the video of their camera', async () => {
  const grid = (camera) => page.locator(`#areas g[data-camera=${camera}] rect`);
  const on = async (camera) => grid(camera).evaluateAll((cells) => cells.flatMap((cell, i) => cell.classList.contains('on') ? [i] : []));
  await startWith({'motionmap/front_h': 0, 'motionmap/front_l': 5, 'motionmap/rear_h': 2048, 'motionmap/rear_l': -2147483648});
  assert.ok(await page.locator('#areas').isHidden());
  await page.locator('#show-areas').click();
  assert.ok(await page.locator('#areas').isVisible());
  await until(async () => (await on('front')).join() === '45,47', 'the front map');  // bits 2 and 0
  assert.deepEqual(await on('rear'), [4, 16]);  // bits 43 and 31
  assert.equal(await grid('front').count(), 48);

  // In the small picture of the rear camera.
  const lcd = await page.locator('#lcd').boundingBox();
  const small = await grid('rear').first().boundingBox();
  assert.ok(small.x > lcd.x + lcd.width * 0.6 && small.y > lcd.y + lcd.height * 0.6 && small.width < lcd.width / 20);

  await bench.post('action', {name: 'rearUnplug'});
  await until(async () => await grid('rear').count() === 0, 'no map without a camera');
  assert.equal(await grid('front').count(), 48);
  await bench.post('action', {name: 'rearPlug'});

  // Touches go through it; a menu has no video.
  await until(async () => {
    const state = await bench.state();
    return state.screen === 'PREVIEW' && !state.boxes.own && !state.boxes.event;
  }, 'the preview');
  await tap(300, 200);
  await until(async () => {
    await tap(265, 33);
    return (await bench.state()).screen === 'MAINMENU';
  }, 'the menu');
  await until(async () => await grid('front').count() === 0, 'no map over a menu');
  await tap(40, 30);
  await until(async () => await grid('front').count() === 48, 'the map again');
  await page.locator('#show-areas').click();
  assert.ok(await page.locator('#areas').isHidden());
});

test('the touch panel is mounted askew, and straight again', async () => {
  await openTab(page, 'Device');
  await openTab(page, 'State');
  const form = page.locator('form[data-action=panelAskew]');
  await form.locator('[name=noise]').fill('0');
  await form.locator('button').click();
  await page.locator('#state dd', {hasText: 'askew: 5 %, off by -30, 50, noise 0'}).waitFor();
  const before = (await bench.state()).log;
  await tap(240, 160);
  const press = await until(async () => (await bench.log()).find((entry) => entry.number > before && entry.name === 'press'), 'the touch');
  assert.ok(Math.abs(press.x - 240) < 2 && Math.abs(press.y - 160) < 2, 'where the finger is');
  assert.ok(Math.abs(-1.0638298 * press.rawY + 499.57446 - 210) < 3, 'what the panel feels');
  await form.locator('[name=y]').fill('61');
  await form.locator('button').click();
  assert.ok(await form.locator('input:invalid').count());
  await page.locator('form[data-action=panelStraight] button').click();
  await page.locator('#state dd', {hasText: 'as the factory mounts it'}).waitFor();
  assert.deepEqual(page.complaints, []);
});
