// Which browser the tests start.
import assert from 'node:assert/strict';
import {mkdtempSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {delimiter, join} from 'node:path';
import {after, test} from 'node:test';
import {findBrowser} from './camera.mjs';

const path = process.env.PATH;
const first = mkdtempSync(join(tmpdir(), 'browser-'));
const second = mkdtempSync(join(tmpdir(), 'browser-'));
after(() => {
  process.env.PATH = path;
  for (const folder of [first, second]) rmSync(folder, {recursive: true});
});

test('the browser is the one that PATH has, Chromium rather than another', () => {
  process.env.PATH = [first, second].join(delimiter);
  assert.throws(findBrowser, {message: 'PATH has no chromium-headless-shell, chromium, chromium-browser or google-chrome'});
  for (const [folder, name] of [[first, 'google-chrome'], [second, 'chromium-browser'], [second, 'chromium'],
                                [second, 'chromium-headless-shell']]) {
    writeFileSync(join(folder, name), '');
    assert.equal(findBrowser(), join(folder, name));
  }
});
