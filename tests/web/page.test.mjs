import assert from 'node:assert/strict';
import {readFile} from 'node:fs/promises';
import http from 'node:http';
import {after, afterEach, before, beforeEach, test} from 'node:test';
import {openPage, openTab, pixelsOf, placeOf, startBench, startBrowser, tapOn, until, waitForOtherPixels} from './camera.mjs';

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
  const place = await placeOf(touched, 300, 200);  // no key stands there
  const before = (await bench.state()).log;
  await touched.touchscreen.tap(place.x, place.y);
  await until(async () => (await bench.log()).some((e) => e.number > before && e.name === 'press' && Math.abs(e.x - 300) < 2), 'the touch');
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
  await openTab(page, 'Faults');
  const form = page.locator('form[data-action=event]');
  await form.locator('[name=event]').selectOption('12');
  await form.locator('button').click();
  await page.locator('#seen', {hasText: 'R_MUTE_ON'}).waitFor();
  await waitForOtherPixels(page, middle, ...MIDDLE);
  await page.locator('#seen', {hasText: /^PREVIEW$/}).waitFor();
});

test('the speed of the car is on the screen', async () => {
  const plate = await pixelsOf(page, ...SPEED_PLATE);
  const form = page.locator('form[data-action=speed]');
  await form.locator('[name=kmh]').fill(String(Math.floor(Math.random() * 200) + 50));
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
  const context = await browser.newContext({viewport: {width: 1280, height: 800}});
  await context.routeWebSocket(/\/ws$/, (played) => {
    const server = played.connectToServer();
    played.onMessage((text) => {
      const {id, name} = JSON.parse(text);
      if (name !== 'gps') return server.send(text);
      played.send(JSON.stringify({type: 'answer', id, status: 409, error: 'The status queue is full: the interface was not told.'}));
    });
  });
  const refused = await openPage(context, bench);
  const form = refused.locator('form[data-action=gps]');
  await form.locator('button').click();
  await form.locator('.refusal', {hasText: 'The status queue is full'}).waitFor();
  assert.equal(await form.locator('.done').count(), 0);
  await context.close();
});

test('what the bench did is said at its button', async () => {
  const form = page.locator('form[data-action=gps]');
  await form.locator('button').click();
  await form.locator('button.done').waitFor();
  await page.locator('#said', {hasText: 'GPS: done'}).waitFor({state: 'attached'});
  await form.locator('button:not(.done)').waitFor();
});

test('a button that cannot act now is grey and says why', async () => {
  const motion = page.locator('form[data-action=motion]');
  await motion.locator('button[aria-disabled=true]').waitFor();
  assert.equal(await motion.locator('button').getAttribute('title'), 'The car is not parked.');
  const before = (await bench.state()).log;
  await motion.locator('button').click({force: true});
  await motion.locator('.refusal', {hasText: 'The car is not parked.'}).waitFor();
  assert.ok(!(await bench.log()).some((entry) => entry.number > before && entry.name === 'motion'));

  await openTab(page, 'Device');
  const start = page.locator('form[data-action=recorderStart]');
  await start.locator('button[aria-disabled=true]').click({force: true});
  await start.locator('.refusal', {hasText: 'The recorder is running.'}).waitFor();
  await bench.post('action', {name: 'recorderStop'});
  await start.locator('button[aria-disabled=false]').waitFor();
  assert.equal(await start.locator('.refusal').textContent(), '');
  await start.locator('button').click();
  await start.locator('button[aria-disabled=true]').waitFor();
  await page.locator('#seen', {hasText: /^PREVIEW$/}).waitFor();
});

test('forms show what is, until a person begins to write', async () => {
  const kmh = page.locator('form[data-action=speed] [name=kmh]');
  const slider = page.locator('form[data-action=speed] [type=range]');
  const shows = (value) => until(async () => await kmh.inputValue() === value, `a form that shows ${value}`);
  await bench.post('action', {name: 'speed', kmh: 61});
  await shows('61');
  assert.equal(await slider.inputValue(), '61');
  await kmh.fill('44');
  await bench.post('action', {name: 'speed', kmh: 62});
  await bench.post('action', {name: 'gps', state: 'searching'});
  await until(async () => await page.locator('form[data-action=gps] [name=state]').inputValue() === 'searching', 'the GPS');
  assert.equal(await kmh.inputValue(), '44');
  await slider.focus();
  await page.keyboard.press('ArrowRight');  // a slider is sent when it is let go
  await until(async () => (await bench.state()).recorder.speed === 45, 'the speed');
  await bench.post('action', {name: 'speed', kmh: 0});
  await shows('0');
  await bench.post('action', {name: 'gps', state: 'fix'});
});

test('what is looked for is found in any tab', async () => {
  const shown = () => page.locator('#controls form:visible').evaluateAll((forms) => forms.map((form) => form.dataset.action));
  await page.keyboard.press('/');
  await page.keyboard.type('kill');
  await page.locator('#found', {hasText: '1 control'}).waitFor();
  assert.deepEqual(await shown(), ['interfaceKill']);
  await page.locator('#find').fill('gps km/h');
  assert.deepEqual(await shown(), ['speed']);
  await page.locator('#find').fill('own picture');
  assert.equal(await page.locator('#picture').isVisible(), true);
  await page.locator('#find').fill('no such thing');
  await page.locator('#found', {hasText: 'No control has these words.'}).waitFor();
  await page.locator('#find').press('Escape');
  assert.ok((await shown()).includes('parkIn') && !(await shown()).includes('interfaceKill'));
});

test('the tab and the folded groups are remembered', async () => {
  await openTab(page, 'Media');
  const group = () => page.locator('details[data-group="SD card"]');
  await group().locator('summary').click();
  await until(async () => !await group().evaluate(({open}) => open), 'the folded group');
  await page.reload();
  await group().waitFor();
  assert.equal(await group().evaluate(({open}) => open), false);
  assert.ok(await page.locator('form[data-action=rearPlug]').isVisible());
  await page.locator('#find').fill('format');  // what is looked for is shown in a folded group, too
  await page.locator('form[data-action=sdFormatFails] button').waitFor();
  await page.locator('#find').fill('');
  await until(async () => !await group().evaluate(({open}) => open), 'the folded group');
});

test('a dark LCD is woken for whoever opens the page, and says how it wakes', async () => {
  await page.locator('#power').click();
  await page.locator('#hint', {hasText: 'The LCD sleeps. A click wakes it.'}).waitFor();
  assert.equal((await bench.state()).lcd.backlight, 0);
  await tap(300, 200);
  await page.locator('#hint', {hasText: /^$/}).waitFor({state: 'attached'});
  await page.locator('#power').click();
  await page.locator('#hint', {hasText: 'The LCD sleeps'}).waitFor();
  await page.reload();
  await until(async () => (await bench.state()).lcd.backlight > 0, 'the light');
  await page.locator('#seen', {hasText: /^PREVIEW$/}).waitFor();
});

test('hidden keys say how they come back', async () => {
  await page.locator('#hint', {hasText: 'The keys are hidden. A click brings them back.'}).waitFor();  // 5 s without a touch
  await tap(300, 200);
  await page.locator('#hint', {hasText: /^$/}).waitFor({state: 'attached'});
});

test('the timeline goes through what has happened, entry by entry', async () => {
  await bench.post('action', {name: 'speed', kmh: 31});
  await bench.post('action', {name: 'speed', kmh: 32});
  await logged('kmh 32');
  await logged('value 32');
  const moment = () => page.locator('#moment').textContent();
  const goTo = async (text) => {
    for (let left = 30; left > 0 && !(await moment()).includes(text); --left) await page.locator('#before').click();
    assert.ok((await moment()).includes(text), text);
  };
  await goTo('event RECV_ZEL_STATUS_SPEED 32');
  await goTo('event RECV_ZEL_STATUS_SPEED 31');
  assert.match(await page.locator('#log li[aria-current]').textContent(), /RECV_ZEL_STATUS_SPEED .*value 31/);
  await page.locator('#scrub').focus();
  await page.keyboard.press('End');
  assert.equal(await page.locator('#log li[aria-current]').count(), 0);
  await bench.post('action', {name: 'speed', kmh: 33});  // from the end on it follows
  await page.locator('#moment', {hasText: /action speed 33|event RECV_ZEL_STATUS_SPEED 33/}).waitFor();
  await bench.post('action', {name: 'speed', kmh: 0});
});

for (const [width, height] of [[1440, 900], [390, 844]]) {
  test(`hardly anything moves while the page loads: ${width} pixels`, async () => {
    const context = await browser.newContext({viewport: {width, height}});
    await context.addInitScript(() => {
      window.shift = 0;
      new PerformanceObserver((list) => { for (const entry of list.getEntries()) window.shift += entry.value; })
        .observe({type: 'layout-shift', buffered: true});
    });
    const loaded = await openPage(context, bench);
    await loaded.locator('#log li').first().waitFor({state: 'attached'});
    await loaded.waitForTimeout(500);
    const shift = await loaded.evaluate(() => window.shift);
    assert.ok(shift < 0.05, `a shift of ${shift}`);
    await context.close();
  });
}

test('the page is light, and its icons are there', async () => {
  const context = await browser.newContext({viewport: {width: 1440, height: 900}});
  const loaded = await context.newPage();
  const sizes = [];
  loaded.on('requestfinished', (request) => sizes.push(request.sizes()));
  await loaded.goto(bench.url);
  await loaded.locator('#controls form').first().waitFor({state: 'attached'});
  const weight = (await Promise.all(sizes)).reduce((sum, {responseBodySize, responseHeadersSize}) => sum + responseBodySize + responseHeadersSize, 0);
  assert.ok(sizes.length > 20 && weight < 80_000, `${weight} bytes`);
  const lost = await loaded.evaluate(() => [...document.querySelectorAll('use')].map((use) => use.getAttribute('href'))
    .filter((href) => !document.querySelector(href)));
  assert.deepEqual(lost, []);
  await context.close();
});

for (const [width, height, lcdWidth] of [[1280, 800, 480], [1440, 900, 600], [1920, 1080, 960]]) {
  test(`all is on one screen of ${width} × ${height}, the LCD ${lcdWidth} wide`, async () => {
    await page.setViewportSize({width, height});
    assert.ok(await page.evaluate(() => document.documentElement.scrollHeight <= innerHeight));
    for (const part of ['.led', '.body', '#power', '.tools', '.timeline', '#tabs', '#controls form', '#log']) {
      const box = await page.locator(part).first().boundingBox();
      assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= width && box.y + box.height <= height, part);
    }
    assert.equal((await page.locator('#lcd').boundingBox()).width, lcdWidth);
  });
}

for (const [width, height] of [[844, 390], [667, 375]]) {
  test(`a phone on its side shows the whole LCD: ${width} × ${height}`, async () => {
    await page.setViewportSize({width, height});
    await page.evaluate(() => scrollTo(0, 0));
    const box = await page.locator('#lcd').boundingBox();
    assert.ok(box.y >= 0 && box.y + box.height <= height && box.x >= 0 && box.x + box.width <= width);
    assert.ok(box.height > height * 0.7);
  });
}

test('every action and every status event of the bench is there, with its inputs', async () => {
  const {actions, events} = await (await fetch(`${bench.url}api/actions`)).json();
  assert.ok(actions.length > 40 && events.length === 38);
  const own = ['powerKey', 'language'];  // these have a place of their own on the page
  for (const name of own) assert.equal(await page.locator(`[data-own=${name}]`).count(), 1);
  const shown = await page.evaluate(() => [...document.querySelectorAll('#controls form[data-action]')].map((form) => ({
    name: form.dataset.action,
    group: form.closest('details').querySelector('summary').textContent,
    label: form.querySelector('button').textContent,
    arguments: [...form.querySelectorAll('[name]')].map((field) => field.localName === 'select'
      ? {name: field.name, choices: [...field.options].map((option) => option.value),
         ...(field.querySelector('[selected]') && {default: field.querySelector('[selected]').value})}
      : {name: field.name, min: Number(field.min), max: Number(field.max), default: Number(field.defaultValue),
         ...(field.step === 'any' && {fraction: true}), ...(!field.required && {optional: true})}),
  })));
  const sorted = (list) => list.toSorted((a, b) => a.name < b.name ? -1 : 1);
  const WITH_WORDS = ['event event', 'hwError code', 'notice number'];  // whole numbers that are lists of their words
  const asShown = (action) => ({...action, arguments: action.arguments.map((argument) => {
    if (!WITH_WORDS.includes(`${action.name} ${argument.name}`)) return argument;
    const {name, min, max} = argument;
    return {name, choices: Array.from({length: max - min + 1}, (_, i) => String(min + i)), default: String(argument.default)};
  })});
  assert.deepEqual(sorted(shown), sorted(actions.filter(({name}) => !own.includes(name)).map(asShown)));
  const options = await page.locator('form[data-action=event] [name=event] option').allTextContents();
  assert.deepEqual(options, events.map(({event, name}) => `${event}: ${name.replace('RECV_ZEL_STATUS_', '')}`));
});

test('a number beyond its range and a fraction where it is wanted', async () => {
  const speed = page.locator('form[data-action=speed]');
  const before = (await bench.state()).log;
  await speed.locator('[name=kmh]').fill('301');
  await speed.locator('button').click();
  assert.ok(await speed.locator('[name=kmh]:invalid').count());  // the browser says why, nothing is sent
  await openTab(page, 'Power');
  const battery = page.locator('form[data-action=battery]');
  await battery.locator('[name=volts]').fill('11.96');
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
  assert.equal(await page.evaluate(() => window.played), 1);  // so one hears that it can be heard
  await tap(40, 96);
  await page.waitForFunction(() => window.played === 2);
  await page.locator('#sound').click();
  assert.equal(await page.evaluate(() => window.played), 2);
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
  await openTab(page, 'Device');
  await openTab(page, 'State');
  await page.locator('form[data-action=interfaceRestart] button').click();
  await page.locator('#state dd', {hasText: `runs, starts: ${starts + 1}`}).waitFor();
  await page.locator('#seen', {hasText: 'PREVIEW'}).waitFor();
});

test('the setup block is shown as the recorder took it', async () => {
  await openTab(page, 'Settings');
  await page.locator('#settings th', {hasText: 'lcdsetting'}).waitFor();
  await page.locator('#settings tr', {hasText: 'lcd_bright'}).locator('td', {hasText: /^[0-9]$/}).waitFor();
  await openTab(page, 'Setup block');
  await page.locator('#setup td').first().waitFor();
});

for (const width of [360, 700, 940, 1220, 1280, 1920]) {
  test(`nothing is wider than a screen of ${width} pixels`, async () => {
    await page.setViewportSize({width, height: 740});
    await openTab(page, 'All');
    for (const view of ['State', 'Setup block', 'Settings', 'Log']) {
      await openTab(page, view);
      const wide = await page.evaluate(() => [document.documentElement, ...document.querySelectorAll('main, section, [role=tabpanel]')]
        .filter((element) => element.scrollWidth > element.clientWidth + 1).map((element) => element.id || element.className));
      assert.deepEqual(wide, []);
    }
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= width);
    const lcd = await page.locator('#lcd').boundingBox();
    assert.ok(Math.abs(lcd.width / lcd.height - 1.5) < 0.02, 'the LCD keeps its shape');
  });
}

for (const width of [360, 940, 1280]) {
  test(`no choice of a list is cut: ${width} pixels`, async () => {
    await page.setViewportSize({width, height: 800});
    await openTab(page, 'All');
    const cut = await page.evaluate(() => {
      const context = document.createElement('canvas').getContext('2d');
      return [...document.querySelectorAll('#controls select')].flatMap((select) => {
        const style = getComputedStyle(select);
        context.font = style.font;
        const room = select.clientWidth - parseFloat(style.paddingLeft) - parseFloat(style.paddingRight) - 16;  // the arrow
        return [...select.options].map(({text}) => text).filter((text) => context.measureText(text).width > room);
      });
    });
    assert.deepEqual(cut, []);
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
    await openTab(page, 'All');
    await page.locator('form[data-action=motion] button').click({force: true});
    await page.locator('form[data-action=motion] .refusal', {hasText: '.'}).waitFor();
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
  await openTab(page, 'All');
  await page.reload();
  await page.locator('form[data-action=parkIn]').waitFor();
  await page.locator('#offer button').first().waitFor();
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
    const touch = foreign.waitForEvent('requestfailed', {predicate: (request) => request.url().endsWith('/api/touch'), timeout: 10000});
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
    // Not even that it was refused is told.
    assert.match((await touch).failure().errorText, /BLOCKED_BY_RESPONSE/);
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
