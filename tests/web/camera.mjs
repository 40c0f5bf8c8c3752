// A simulated camera and its page in headless Chromium, for the tests.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {once} from 'node:events';
import {existsSync} from 'node:fs';
import {delimiter, join} from 'node:path';
import {createInterface} from 'node:readline';
import {after, afterEach, before, beforeEach} from 'node:test';
import {chromium} from 'playwright-core';

const BENCH = process.env.DASHCAM_BENCH;
const FLAGS = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
               '--disable-component-update', '--disable-sync'];

export async function startBench(port = 0) {
  if (!BENCH) throw new Error('DASHCAM_BENCH names no dashcam-bench');
  const process = spawn(BENCH, ['--port', String(port)], {stdio: ['ignore', 'pipe', 'inherit']});
  for await (const line of createInterface({input: process.stdout})) {
    const address = line.match(/http:\S+/);
    if (address) return new Bench(process, address[0]);
  }
  throw new Error('the bench ended before it was up');
}

class Bench {
  constructor(process, url) {
    this.process = process;
    this.url = url;
  }

  get port() { return Number(new URL(this.url).port); }

  async state() { return (await fetch(`${this.url}api/state`)).json(); }
  async log() { return (await (await fetch(`${this.url}api/log`)).json()).entries; }

  async post(path, body) {
    const answer = await fetch(`${this.url}api/${path}`, {method: 'POST', body: JSON.stringify(body)});
    if (!answer.ok) throw new Error(`${path}: ${(await answer.json()).error}`);
  }

  // When it was touched, in milliseconds.
  async touches() { return (await this.log()).filter(({kind, name}) => kind === 'touch' && name === 'press').map(({time}) => time); }

  // The keys of the live preview go 5 s after a touch, and its light after half a minute: whoever tests begins with fresh ones. A
  // touch beside them takes them away, the next one brings them back. Five within 3 s would open another screen, and the bench
  // touches for the first who looks, too: at most two of that time are left for the test, which has two more.
  async freshenKeys() {
    const haveKeys = ({areas}) => areas?.some(({name}) => name === 'menu') ?? false;
    await until(async () => {
      const state = await this.state();
      if (state.screen !== 'PREVIEW' || state.boxes.own || state.boxes.event) return true;
      const had = haveKeys(state);
      const touches = await this.touches();
      const recent = touches.filter((time) => Date.now() < time + 3000).length;
      if (recent <= 2 && had && Date.now() < Math.max(0, ...touches) + 2000) return true;
      if (recent > (had ? 0 : 1)) return false;
      await this.post('touch', {action: 'tap', x: 240, y: 160});
      for (let i = 0; i < 20 && haveKeys(await this.state()) === had; ++i) await new Promise((resolve) => setTimeout(resolve, 50));
      return false;
    }, 'fresh keys', 30000);
  }

  async end() {
    if (this.process.exitCode !== null) return;
    this.process.kill('SIGTERM');
    await once(this.process, 'exit');
  }
}

// The first of these names that PATH has.
export function findBrowser() {
  const folders = (process.env.PATH ?? '').split(delimiter).filter(Boolean);
  for (const name of ['chromium-headless-shell', 'chromium', 'chromium-browser', 'google-chrome'])
    for (const folder of folders)
      if (existsSync(join(folder, name))) return join(folder, name);
  throw new Error('PATH has no chromium-headless-shell, chromium, chromium-browser or google-chrome');
}

export const startBrowser = () => chromium.launch({executablePath: findBrowser(), args: FLAGS});

// One camera for all tests of a file, and for each of them a page, which must have nothing to complain about.
export let bench, browser, page;
export function useCamera() {
  before(async () => { [bench, browser] = await Promise.all([startBench(), startBrowser()]); });
  after(async () => {
    await browser?.close();
    await bench?.end();
  });
  beforeEach(async () => { page = await openPage(browser, bench, {viewport: {width: 1440, height: 900}}); });
  afterEach(async () => {
    await page.close();
    assert.deepEqual(page.complaints, []);
  });
}

// Opens the page and waits for its picture. What it complains about on the console is gathered in `complaints`.
export async function openPage(browser, bench, options = {}) {
  const page = await browser.newPage({viewport: {width: 1280, height: 800}, ...options});
  page.setDefaultTimeout(10000);
  page.complaints = [];
  page.on('console', (message) => { if (message.type() === 'error') page.complaints.push(message.text()); });
  page.on('pageerror', (error) => page.complaints.push(error.message));
  await page.goto(bench.url);
  await page.locator('#controls form').first().waitFor({state: 'attached'});
  const hasPicture = () => page.evaluate(() => {
    const lcd = document.getElementById('lcd');
    return lcd.getContext('2d').getImageData(0, 0, lcd.width, lcd.height).data.some((value, i) => i % 4 !== 3 && value > 0);
  });
  await until(async () => await hasPicture() || await page.locator('#hint').textContent() !== '', 'a picture on the page');
  await until(async () => (await bench.state()).lcd.backlight > 0, 'the light that the page has switched on');
  await bench.freshenKeys();
  await until(async () => {
    if (await page.locator('#hint').textContent() === '') return hasPicture();
    await bench.freshenKeys();  // they have gone again while the page was slow
    return false;
  }, 'a living picture', 30000);
  return page;
}

// Chooses a tab of the controls ("All") or of what stands beside the device ("State").
export const openTab = (page, name) => page.getByRole('tab', {name, exact: true}).click();

// The pixels of a part of the LCD, as a text to compare.
export const pixelsOf = (page, x, y, width, height) => page.evaluate(([left, top, w, h]) => {
  const data = document.getElementById('lcd').getContext('2d').getImageData(left, top, w, h).data;
  return Array.from(data).join();
}, [x, y, width, height]);

export const waitForOtherPixels = (page, before, x, y, width, height) => page.waitForFunction(
  ([known, left, top, w, h]) =>
    Array.from(document.getElementById('lcd').getContext('2d').getImageData(left, top, w, h).data).join() !== known,
  [before, x, y, width, height]);

// Where a pixel of the LCD is on the page.
export async function placeOf(page, x, y) {
  const box = await page.locator('#lcd').boundingBox();
  return {x: box.x + (x + 0.5) * box.width / 480, y: box.y + (y + 0.5) * box.height / 320};
}

// Clicks there: a finger's tap.
export async function tapOn(page, x, y) {
  const place = await placeOf(page, x, y);
  await page.mouse.click(place.x, place.y);
}

// Waits until `check` gives something, 10 s unless given; it is asked every 50 ms.
export async function until(check, what, patience = 10000) {
  const end = Date.now() + patience;
  for (;;) {
    const value = await check();
    if (value) return value;
    if (Date.now() > end) throw new Error(`never came: ${what}`);
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
}
