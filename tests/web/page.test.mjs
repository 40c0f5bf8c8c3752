import assert from 'node:assert/strict';
import {readFile} from 'node:fs/promises';
import http from 'node:http';
import {after, afterEach, before, beforeEach, test} from 'node:test';
import {openPage, pixelsOf, placeOf, startBench, startBrowser, tapOn, until, waitForOtherPixels} from './camera.mjs';

const VIEW_KEY = [4, 3, 71, 60];  // x, y, width, height on the LCD
const SPEED_PLATE = [238, 284, 120, 32];
const MIDDLE = [120, 130, 240, 60];  // where boxes stand
const MUTE_ON = 12;  // a status event with a box

let bench, browser, page;

before(async () => {
  [bench, browser] = await Promise.all([startBench(), startBrowser()]);
});
after(async () => {
  await browser?.close();
  await bench?.end();
});
// A browser that prefers English: the question about the language is there all the time.
beforeEach(async () => {
  page = await openPage(browser, bench);
  await page.locator('#offer button').first().waitFor();
});
afterEach(async () => {
  await page.close();
  assert.deepEqual(page.complaints, []);
});

const tap = (x, y) => tapOn(page, x, y);
const logged = (text) => page.locator('#log li', {hasText: text}).first().waitFor();

test('the preview is seen, with the video behind it', async () => {
  await page.locator('#seen', {hasText: 'PREVIEW'}).waitFor();
  const [r, g, b] = (await pixelsOf(page, 5, 64, 1, 1)).split(',').map(Number);
  assert.notDeepEqual([r, g, b], [255, 0, 8], 'the key colour is never seen');
});

test('a tap on the view key changes the picture and shows its command in the log', async () => {
  const key = await pixelsOf(page, ...VIEW_KEY);
  await tap(40, 33);
  await waitForOtherPixels(page, key, ...VIEW_KEY);
  await logged('SFIELD_SET_VIEWFRONT');
  await until(async () => (await bench.state()).video.view === 'front', 'the front view');
  await tap(40, 33);
  await tap(40, 33);
  await until(async () => (await bench.state()).video.view === 'pip', 'both cameras again');
});

test('a held finger stays down until it is lifted', async () => {
  const place = await placeOf(page, 300, 200);
  await page.mouse.move(place.x, place.y);
  await page.mouse.down();
  await until(async () => (await bench.state()).touch.down, 'the finger down');
  await page.mouse.move(place.x + 40, place.y);
  await logged('move');
  await page.mouse.up();
  await until(async () => !(await bench.state()).touch.down, 'the finger up');
});

test('a finger on a touch screen works, too', async () => {
  const context = await browser.newContext({hasTouch: true, viewport: {width: 1280, height: 800}});
  const touched = await openPage(context, bench);
  const place = await placeOf(touched, 40, 33);
  const before = (await bench.state()).log;
  await touched.touchscreen.tap(place.x, place.y);
  await until(async () => (await bench.log()).some((e) => e.number > before && e.name === 'press' && Math.abs(e.x - 40) < 2), 'the touch');
  await context.close();
});

test('the screen is worked by keyboard', async () => {
  const before = (await bench.state()).log;
  await page.locator('#lcd').focus();
  for (let i = 0; i < 3; ++i) await page.keyboard.press('ArrowRight');
  await page.keyboard.press('Shift+ArrowDown');
  await page.keyboard.down('Enter');
  await until(async () => (await bench.state()).touch.down, 'the finger down');
  await page.keyboard.up('Enter');
  await until(async () => !(await bench.state()).touch.down, 'the finger up');
  const press = (await bench.log()).find((entry) => entry.number > before && entry.name === 'press');
  assert.deepEqual([press.x, press.y], [264, 161]);
});

test('a status event shows its box', async () => {
  const middle = await pixelsOf(page, ...MIDDLE);
  await page.locator('#event-number').selectOption('12');
  await page.locator('#event button').click();
  await page.locator('#seen', {hasText: 'R_MUTE_ON'}).waitFor();
  await waitForOtherPixels(page, middle, ...MIDDLE);
  await page.locator('#seen', {hasText: /^PREVIEW$/}).waitFor();
});

test('the speed of the car is on the screen', async () => {
  const plate = await pixelsOf(page, ...SPEED_PLATE);
  const form = page.locator('form[data-action=speed]');
  await form.locator('input').fill(String(Math.floor(Math.random() * 200) + 50));
  await form.locator('button').click();
  await waitForOtherPixels(page, plate, ...SPEED_PLATE);
});

test('the power key darkens the LCD and lights it again', async () => {
  await page.locator('#power').click();
  await page.locator('#seen', {hasText: 'LCD off'}).waitFor();
  await page.waitForFunction(() => {
    const lcd = document.getElementById('lcd');
    return lcd.getContext('2d').getImageData(0, 0, 480, 320).data.every((value, i) => i % 4 === 3 || value === 0);
  });
  await page.locator('#power').click();
  await until(async () => (await bench.state()).lcd.backlight > 0, 'the light');
});

test('what the bench refuses is said beside the control', async () => {
  const form = page.locator('form[data-action=motion]');  // the car is not parked
  await form.locator('button').click();
  await form.locator('.refusal', {hasText: 'The car is not parked.'}).waitFor();
});

test('every action and every status event of the bench is there, with its inputs', async () => {
  const {actions, events} = await (await fetch(`${bench.url}api/actions`)).json();
  assert.ok(actions.length > 40 && events.length === 38);
  const shown = await page.evaluate(() => [...document.querySelectorAll('#controls form')].map((form) => ({
    name: form.dataset.action,
    group: form.closest('details').querySelector('summary').textContent,
    label: form.querySelector('button').textContent,
    arguments: [...form.querySelectorAll('input, select')].map((field) => field.localName === 'select'
      ? {name: field.name, choices: [...field.options].map((option) => option.value)}
      : {name: field.name, min: Number(field.min), max: Number(field.max), default: field.valueAsNumber,
         ...(field.step === 'any' && {fraction: true}), ...(!field.required && {optional: true})}),
  })));
  const sorted = (list) => list.toSorted((a, b) => a.name < b.name ? -1 : 1);
  assert.deepEqual(sorted(shown), sorted(actions));
  const options = await page.locator('#event-number option').allTextContents();
  assert.deepEqual(options, events.map(({event, name}) => `${event}  ${name}`));
});

test('a number beyond its range and a fraction where it is wanted', async () => {
  const speed = page.locator('form[data-action=speed]');
  const before = (await bench.state()).log;
  await speed.locator('input').fill('301');
  await speed.locator('button').click();
  assert.ok(await speed.locator('input:invalid').count());  // the browser says why, nothing is sent
  const battery = page.locator('form[data-action=battery]');
  await battery.locator('input').fill('11.96');
  await battery.locator('button').click();
  await logged('volts 11.96');
  assert.ok(!(await bench.log()).some((entry) => entry.number > before && entry.name === 'speed'));
});

test('the log leaves out kinds and holds still when asked to', async () => {
  await bench.post('event', {event: 24, value: 33});
  await logged('RECV_ZEL_STATUS_SPEED');
  await page.locator('#kinds label', {hasText: 'event'}).locator('input').uncheck();
  await page.waitForFunction(() => [...document.querySelectorAll('#log [data-kind=event]')].every((row) => !row.offsetParent));
  await page.locator('#pause').click();
  const newest = await page.locator('#log li').first().getAttribute('data-number');
  await bench.post('action', {name: 'speed', kmh: 277});
  await page.locator('#pause', {hasText: 'new'}).waitFor();
  assert.equal(await page.locator('#log li').first().getAttribute('data-number'), newest);
  await page.locator('#pause').click();
  await logged('kmh 277');
});

test('the key click is silent until it is asked for', async () => {
  await page.evaluate(() => {
    window.played = 0;
    HTMLMediaElement.prototype.play = function () { ++window.played; return Promise.resolve(); };
  });
  const clicks = async () => (await bench.log()).filter((entry) => entry.name.startsWith('aplay')).length;
  // A message brings the keys back, if they are hidden or the LCD is dark: else the touch would only do that.
  const box = async () => (await bench.state()).boxes.event;
  await bench.post('event', {event: MUTE_ON});
  await until(box, 'the box');
  await until(async () => !await box(), 'its end');
  const before = await clicks();
  await tap(40, 96);  // the small picture goes to the next corner
  await until(async () => await clicks() > before, 'a click');
  assert.equal(await page.evaluate(() => window.played), 0);
  await page.locator('#sound').click();
  await tap(40, 96);
  await page.waitForFunction(() => window.played === 1);
});

test('the picture can be saved', async () => {
  const [download] = await Promise.all([page.waitForEvent('download'), page.locator('#save').click()]);
  assert.equal(download.suggestedFilename(), 'dash-camera.png');
  const png = await readFile(await download.path());
  assert.deepEqual([png.toString('latin1', 1, 4), png.readUInt32BE(16), png.readUInt32BE(20)], ['PNG', 480, 320]);
});

test('a page in the background gets no pictures, and the newest when it is looked at again', async () => {
  const beInBackground = (hidden) => page.evaluate((value) => {
    Object.defineProperty(document, 'hidden', {value, configurable: true});
    document.dispatchEvent(new Event('visibilitychange'));
  }, hidden);
  await beInBackground(true);
  await bench.post('event', {event: 13});
  await page.locator('#seen', {hasText: 'R_MUTE_OFF'}).waitFor();  // so no picture is under way any more
  const still = await pixelsOf(page, 0, 0, 480, 320);
  await page.locator('#seen', {hasText: /^PREVIEW$/}).waitFor();
  assert.equal(await pixelsOf(page, 0, 0, 480, 320), still);
  await beInBackground(false);
  await waitForOtherPixels(page, still, 0, 0, 480, 320);
});

test('the interface is started again by its button', async () => {
  const {starts} = (await bench.state()).interface;
  await page.locator('#restart').click();
  await page.locator('#state dd', {hasText: `runs, starts: ${starts + 1}`}).waitFor();
  await page.locator('#seen', {hasText: 'PREVIEW'}).waitFor();
});

test('the setup block is shown as the recorder took it', async () => {
  await page.locator('details', {hasText: 'Settings of the recorder'}).locator('summary').click();
  await page.locator('#settings th', {hasText: 'lcdsetting'}).waitFor();
  await page.locator('#settings tr', {hasText: 'lcd_bright'}).locator('td', {hasText: /^[0-9]$/}).waitFor();
  await page.locator('details', {hasText: 'Setup block'}).locator('summary').click();
  await page.locator('#setup td').first().waitFor();
});

for (const width of [360, 700, 1280, 1920]) {
  test(`nothing is wider than a screen of ${width} pixels`, async () => {
    await page.setViewportSize({width, height: 740});
    for (const details of await page.locator('summary').all()) await details.click();
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= width);
    const lcd = await page.locator('#lcd').boundingBox();
    assert.ok(Math.abs(lcd.width / lcd.height - 1.5) < 0.02, 'the LCD keeps its shape');
  });
}

test('it is light by day and dark by night', async () => {
  const ground = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  await page.emulateMedia({colorScheme: 'light'});
  const light = await ground();
  await page.emulateMedia({colorScheme: 'dark'});
  assert.notEqual(await ground(), light);
});

for (const colorScheme of ['light', 'dark']) {
  test(`every text can be read: ${colorScheme}`, async () => {
    await page.emulateMedia({colorScheme});
    await page.locator('form[data-action=motion] button').click();
    await page.locator('form[data-action=motion] .refusal', {hasText: '.'}).waitFor();
    for (const details of await page.locator('#state ~ details summary').all()) await details.click();
    await page.mouse.move(0, 0);
    const faint = await page.evaluate(() => {
      const parts = (color) => color.match(/[\d.]+/g).map(Number);
      const luminance = (color) => parts(color).slice(0, 3).map((part) => part / 255)
        .map((part) => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4)
        .reduce((sum, part, i) => sum + part * [0.2126, 0.7152, 0.0722][i], 0);
      const groundOf = (element) => {
        for (let each = element; each; each = each.parentElement) {
          const ground = getComputedStyle(each).backgroundColor;
          if ((parts(ground)[3] ?? 1) === 1) return ground;
        }
        return 'rgb(255, 255, 255)';
      };
      const hasText = (element) => [...element.childNodes].some((node) => node.nodeType === 3 && node.data.trim());
      return [...document.querySelectorAll('body *')].filter(hasText).map((element) => {
        const [low, high] = [getComputedStyle(element).color, groundOf(element)].map(luminance).sort((a, b) => a - b);
        return {text: element.textContent, contrast: (high + 0.05) / (low + 0.05)};
      }).filter(({contrast}) => contrast < 4.5);
    });
    assert.deepEqual(faint, []);
  });
}

test('whoever comes by keyboard reaches every control and sees where he is', async () => {
  const seen = new Set();
  for (;;) {
    await page.keyboard.press('Tab');
    const stop = await page.evaluate(() => {
      const element = document.activeElement;
      if (element === document.body) return null;
      const all = [...document.querySelectorAll('*')];
      return {place: all.indexOf(element), html: element.outerHTML.slice(0, 80),
              outline: getComputedStyle(element).outlineStyle, width: getComputedStyle(element).outlineWidth};
    });
    if (stop === null || seen.has(stop.place)) break;
    seen.add(stop.place);
    assert.ok(stop.outline !== 'none' && parseFloat(stop.width) >= 2, `no outline: ${stop.html}`);
  }
  const missed = await page.evaluate((places) => [...document.querySelectorAll('*')]
    .filter((element, i) => element.matches('button, input, select, canvas[tabindex], summary, a, ol') && !places.includes(i) && element.checkVisibility())
    .map((element) => element.outerHTML.slice(0, 80)), [...seen]);
  assert.deepEqual(missed, []);
});

test('every control has a name', async () => {
  const nameless = await page.evaluate(() => [...document.querySelectorAll('button, input, select, canvas[tabindex]')]
    .filter((each) => !(each.textContent.trim() || each.labels?.length || each.ariaLabel)).map((each) => each.outerHTML));
  assert.deepEqual(nameless, []);
});

test('a page from elsewhere can neither read nor press', async () => {
  const elsewhere = http.createServer((request, response) => {
    response.setHeader('Content-Type', 'text/html');
    response.end('<title>elsewhere</title>');
  }).listen(0, '127.0.0.1');
  const foreign = await browser.newPage();
  try {
    await foreign.goto(`http://127.0.0.1:${elsewhere.address().port}/`);
    const before = (await bench.state()).log;
    const answer = foreign.waitForEvent('response', {predicate: (response) => response.url().endsWith('/api/touch'), timeout: 10000});
    const outcome = await foreign.evaluate(async (url) => {
      const read = await fetch(`${url}api/state`).then(() => 'read', () => 'refused');
      await fetch(`${url}api/touch`, {method: 'POST', mode: 'no-cors', body: '{"action": "tap", "x": 40, "y": 33}'}).catch(() => {});
      const socket = await new Promise((resolve) => {
        const opened = new WebSocket(`${url.replace('http', 'ws')}ws`);
        opened.onopen = () => resolve('opened');
        opened.onerror = () => resolve('refused');
      });
      return {read, socket};
    }, bench.url);
    assert.deepEqual(outcome, {read: 'refused', socket: 'refused'});
    assert.equal((await answer).status(), 403);
    assert.ok(!(await bench.log()).some((entry) => entry.number > before && entry.kind === 'touch'));
  } finally {
    await foreign.close();
    elsewhere.close();
  }
});

test('a dead interface comes back on the same page', async () => {
  const {starts} = (await bench.state()).interface;
  await bench.post('action', {name: 'interfaceKill'});
  await until(async () => {
    const state = await bench.state();
    return state.interface.starts > starts && state.screen === 'PREVIEW';
  }, 'the interface');
  await page.locator('#seen', {hasText: 'PREVIEW'}).waitFor();
});
