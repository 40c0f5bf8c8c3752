// A simulated camera and its page in headless Chromium, for the tests.
import {spawn} from 'node:child_process';
import {once} from 'node:events';
import {createInterface} from 'node:readline';
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

  async end() {
    if (this.process.exitCode !== null) return;
    this.process.kill('SIGTERM');
    await once(this.process, 'exit');
  }
}

export const startBrowser = () => chromium.launch({executablePath: '/usr/bin/chromium', args: FLAGS});

// Opens the page and waits for its picture. What it complains about on the console is gathered in `complaints`.
export async function openPage(browser, bench, options = {}) {
  const page = await browser.newPage({viewport: {width: 1280, height: 800}, ...options});
  page.setDefaultTimeout(10000);
  page.complaints = [];
  page.on('console', (message) => { if (message.type() === 'error') page.complaints.push(message.text()); });
  page.on('pageerror', (error) => page.complaints.push(error.message));
  await page.goto(bench.url);
  await page.locator('#controls form').first().waitFor({state: 'attached'});
  await until(async () => {
    // On a slow machine half a minute passes without a touch: the LCD is dark, and a touch only lights it.
    if ((await bench.state()).lcd.backlight === 0) await bench.post('touch', {action: 'tap', x: 240, y: 160});
    return page.evaluate(() => {
      const lcd = document.getElementById('lcd');
      return lcd.getContext('2d').getImageData(0, 0, lcd.width, lcd.height).data.some((value, i) => i % 4 !== 3 && value > 0);
    });
  }, 'a picture on the page');
  return page;
}

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
