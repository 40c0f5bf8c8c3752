import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {openPage, openTab, pixelsOf, startBench, startBrowser, tapOn, until, waitForOtherPixels} from './camera.mjs';

const ROAD = [120, 80, 240, 110];  // of the player: no control stands there

let bench, browser, page;

before(async () => {
  [bench, browser] = await Promise.all([startBench(), startBrowser()]);
  page = await openPage(browser, bench);
});
after(async () => {
  await browser?.close();
  await bench?.end();
});

const tap = (x, y) => tapOn(page, x, y);
const sees = (what) => page.locator('#seen', {hasText: what}).waitFor();

test('a recording is played in the page, and its frames move', async () => {
  await sees('PREVIEW');
  await tap(265, 33);
  await sees('MAINMENU');
  await tap(80, 125);
  await sees('ENTRY_FILELIST');
  await tap(140, 236);
  await sees('RECORDINGLIST');
  await tap(200, 138);
  await sees('PLAYER');
  await until(async () => (await bench.state()).video.playing, 'the playback');
  for (let i = 0; i < 3; ++i) await waitForOtherPixels(page, await pixelsOf(page, ...ROAD), ...ROAD);
  // The rear camera is another picture.
  await tap(440, 290);
  await until(async () => (await bench.log()).filter((entry) => entry.name === 'SFIELD_PLAY_VIDEO').length === 2, 'the other recording');
  for (let i = 0; i < 2; ++i) await waitForOtherPixels(page, await pixelsOf(page, ...ROAD), ...ROAD);
  await tap(360, 290);
  await sees('RECORDINGLIST');
  await tap(40, 30);
  await sees('PREVIEW');
  await until(async () => (await bench.state()).recorder.recording, 'the recording');
  assert.deepEqual(page.complaints, []);
});

test('what a saved setting changes is marked in the setup block', async () => {
  const change = async () => {  // the impact level of driving, and home
    await sees('PREVIEW');
    await tap(300, 200);
    await until(async () => {
      await tap(265, 33);
      return (await bench.state()).screen === 'MAINMENU';
    }, 'the menu');
    await tap(80, 255);
    await sees('DRIVINGSETTING');
    await tap(80, 255);
    await tap(40, 30);
    await until(async () => (await bench.state()).screen === 'PREVIEW', 'the preview', 20000);
  };
  await change();
  await change();
  await openTab(page, 'Setup block');
  const row = page.locator('#setup tr', {hasText: 'gsensor_trg_lvl'});
  await row.locator('mark').waitFor();
  assert.equal(await page.locator('#setup tr', {hasText: 'resolution'}).locator('mark').count(), 0);
  assert.notEqual(await row.locator('td').first().textContent(), await row.locator('mark').textContent());
  assert.deepEqual(page.complaints, []);
});
